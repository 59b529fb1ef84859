#include "LeftBehind.h"

#ifdef Q_OS_UNIX
#include <QDir>
#include <QDirIterator>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace StepHost
{
QString temporaryPrefix()
{
    return QStringLiteral(".quillmap-unfinished-");
}

#ifdef Q_OS_UNIX
namespace
{
int openLocked(const QString &path, int flags)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return descriptor;
    if (descriptor >= 0)
        close(descriptor);
    return -1;
}

// What another user made may change while it is being removed.
bool isOwn(int descriptor)
{
    struct stat entry;
    return fstat(descriptor, &entry) == 0 && entry.st_uid == geteuid();
}
} // namespace

InUse::InUse(const QString &path) : m_descriptor(openLocked(path, 0)) { }

InUse::~InUse()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

void removeLeftBehind(const QString &folder)
{
    QDirIterator entries(folder, {temporaryPrefix() + QLatin1Char('*')},
                         QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const int descriptor = openLocked(path, O_NOFOLLOW);
        if (descriptor < 0)
            continue;
        if (isOwn(descriptor) && !QFile::remove(path))
            QDir(path).removeRecursively();
        close(descriptor);
    }
}

EndsLater::EndsLater()
{
    sigset_t ends;
    sigemptyset(&ends);
    for (const int end : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
        sigaddset(&ends, end);
    pthread_sigmask(SIG_BLOCK, &ends, &m_before);
}

EndsLater::~EndsLater()
{
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}
#else
InUse::InUse(const QString &) { }

InUse::~InUse() = default;

void removeLeftBehind(const QString &) { }

EndsLater::EndsLater() = default;

EndsLater::~EndsLater() = default;
#endif
} // namespace StepHost
