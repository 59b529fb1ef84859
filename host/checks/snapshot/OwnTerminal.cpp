#include "OwnTerminal.h"

#if defined(Q_OS_LINUX)
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace StepHost
{
#if defined(Q_OS_LINUX)
OwnTerminal::OwnTerminal()
{
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    const char *name =
        master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0 ? ptsname(master) : nullptr;
    const int slave = name ? open(name, O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
    if (slave < 0) {
        if (master >= 0)
            close(master);
        return;
    }
    m_master = master;
    m_input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    dup2(slave, STDIN_FILENO);
    close(slave);
}

OwnTerminal::~OwnTerminal()
{
    if (!isThere())
        return;
    dup2(m_input, STDIN_FILENO);
    close(m_input);
    close(m_master);
}
#else
OwnTerminal::OwnTerminal() = default;

OwnTerminal::~OwnTerminal() = default;
#endif
} // namespace StepHost
