#include "LeftBehind.h"

#include <QDir>

#ifdef Q_OS_UNIX
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

// Between its making and its use another program may take a folder for one that was left behind.
TemporaryFolder::TemporaryFolder()
{
    constexpr int mostTries = 100;
    for (int i = 0; i < mostTries && !(m_inUse && m_inUse->isCertain()); ++i) {
        m_directory = std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1Char('/') + temporaryPrefix()
                                                      + QLatin1String("XXXXXX"));
        if (!m_directory->isValid())
            return;
        m_inUse = std::make_unique<InUse>(m_directory->path());
    }
}

// Removed while it is in use: two programs that remove the same folder are in each other's way.
TemporaryFolder::~TemporaryFolder()
{
    m_directory.reset();
}

bool TemporaryFolder::isValid() const
{
    return m_directory->isValid();
}

QString TemporaryFolder::errorString() const
{
    return m_directory->errorString();
}

QString TemporaryFolder::path() const
{
    return m_directory->path();
}

QString TemporaryFolder::filePath(const QString &name) const
{
    return m_directory->filePath(name);
}

#ifdef Q_OS_UNIX
namespace
{
int openLocked(const QString &path, int flags, int lock)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0 && flock(descriptor, lock) == 0)
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

// Who has it locked is about to remove it, and is waited for.
InUse::InUse(const QString &path) : m_descriptor(openLocked(path, 0, LOCK_EX)), m_path(path) { }

InUse::~InUse()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool InUse::isCertain() const
{
    struct stat entry;
    struct stat own;
    return m_descriptor >= 0 && fstat(m_descriptor, &own) == 0
        && stat(QFile::encodeName(m_path).constData(), &entry) == 0 && entry.st_ino == own.st_ino
        && entry.st_dev == own.st_dev;
}

void removeLeftBehind(const QString &folder)
{
    QDirIterator entries(folder, {temporaryPrefix() + QLatin1Char('*')},
                         QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const int descriptor = openLocked(path, O_NOFOLLOW, LOCK_EX | LOCK_NB);
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

// Nothing is removed here.
bool InUse::isCertain() const
{
    return true;
}

void removeLeftBehind(const QString &) { }

EndsLater::EndsLater() = default;

EndsLater::~EndsLater() = default;
#endif
} // namespace StepHost
