#include "OutputChannel.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace StepHost
{
#ifdef Q_OS_WIN
std::FILE *takeStandardOutput()
{
    _setmode(_fileno(stdin), _O_BINARY);
    const int descriptor = _dup(_fileno(stdout));
    _setmode(descriptor, _O_BINARY);
    _dup2(_fileno(stderr), _fileno(stdout));
    return _fdopen(descriptor, "wb");
}
#else
std::FILE *takeStandardOutput()
{
    const int descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return fdopen(descriptor, "wb");
}
#endif
} // namespace StepHost
