#include "OutputWatch.h"

#include <cstdio>

#if defined(Q_OS_LINUX)
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace StepHost
{
#if defined(Q_OS_LINUX)
OutputWatch::OutputWatch() : m_file(memfd_create("output", MFD_CLOEXEC))
{
    if (m_file < 0)
        return;
    std::fflush(nullptr);
    // Far from the numbers that a plug-in may expect to be given.
    constexpr int farAway = 500;
    m_output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, farAway);
    m_errors = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, farAway);
    dup2(m_file, STDOUT_FILENO);
    dup2(m_file, STDERR_FILENO);
}

OutputWatch::~OutputWatch()
{
    if (m_file < 0)
        return;
    std::fflush(nullptr);
    dup2(m_output, STDOUT_FILENO);
    dup2(m_errors, STDERR_FILENO);
    ::close(m_output);
    ::close(m_errors);
    ::close(m_file);
}

qint64 OutputWatch::written() const
{
    std::fflush(nullptr);
    struct stat status
    {
    };
    return fstat(m_file, &status) == 0 ? qint64(status.st_size) : 0;
}
#else
OutputWatch::OutputWatch() = default;

OutputWatch::~OutputWatch() = default;

qint64 OutputWatch::written() const
{
    return 0;
}
#endif
} // namespace StepHost
