#pragma once

#include <QFile>

#ifdef Q_OS_LINUX
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

/// The pipe "daemon" in a folder, which a process that is to be watched holds open as long as it lives. For Linux.
class DaemonPipe
{
public:
    explicit DaemonPipe(const QString &folder)
    {
        const QByteArray name = QFile::encodeName(folder + "/daemon");
        mkfifo(name.constData(), S_IRUSR | S_IWUSR);
        m_end = open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    ~DaemonPipe()
    {
        close(m_end);
    }

    /// Whether a process took it. To be asked once for each.
    bool wasHeld() const
    {
        char mark = 0;
        return read(m_end, &mark, 1) == 1;
    }
    /// The same, of a process that is yet to come.
    bool waitUntilHeld() const
    {
        pollfd end{m_end, POLLIN, 0};
        return poll(&end, 1, 120000) == 1 && wasHeld();
    }
    /// Whether a process that holds it is still there.
    bool isHeld() const
    {
        char marks[10];
        while (read(m_end, marks, sizeof marks) > 0) { }
        return read(m_end, marks, sizeof marks) != 0;
    }

private:
    Q_DISABLE_COPY(DaemonPipe)

    int m_end = -1;
};
#endif
