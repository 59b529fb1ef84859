#pragma once

#include <QProcess>

#include <cstdlib>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// A process whose standard streams are a terminal of its own. Not on Windows.
class TerminalProcess : public QProcess
{
public:
    /// The terminal has \a columns, and as many lines as there are.
    explicit TerminalProcess(int columns) : m_master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0)
            qFatal("there is no terminal");
        m_slave = ::open(ptsname(m_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
        winsize size{};
        size.ws_col = static_cast<unsigned short>(columns);
        size.ws_row = size.ws_col;
        if (m_slave < 0 || ioctl(m_slave, TIOCSWINSZ, &size) != 0)
            qFatal("the terminal has no size");
    }

    ~TerminalProcess() override
    {
        kill();
        waitForFinished(-1);
        closeSlave();
        ::close(m_master);
    }

    /// Waits until the started process has shown \a text or, without one, has ended. Returns all that it showed since it
    /// was started; the line ends are line feeds.
    QByteArray shown(const QByteArray &text = QByteArray())
    {
        closeSlave(); // So that the end of the process is the end of what is there to read.
        char bytes[4096];
        while (text.isEmpty() || !m_shown.contains(text)) {
            const auto size = ::read(m_master, bytes, sizeof bytes);
            if (size <= 0)
                break;
            m_shown.append(bytes, int(size));
        }
        return QByteArray(m_shown).replace("\r\n", "\n");
    }

protected:
    void setupChildProcess() override
    {
        setsid();
        ioctl(m_slave, TIOCSCTTY, 0);
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            dup2(m_slave, descriptor);
    }

private:
    Q_DISABLE_COPY(TerminalProcess)

    void closeSlave()
    {
        if (m_slave >= 0)
            ::close(m_slave);
        m_slave = -1;
    }

    int m_master;
    int m_slave = -1;
    QByteArray m_shown;
};
