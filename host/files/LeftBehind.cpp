#include "LeftBehind.h"

#include <QDir>

#ifdef Q_OS_UNIX
#include <QDirIterator>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#else
#include <QTemporaryDir>
#endif

namespace StepHost
{
QString temporaryPrefix()
{
    return QStringLiteral(".quillmap-unfinished-");
}

namespace
{
struct NewFolder
{
    QString path; // Empty when there is none.
    QString error;
};

// On Unix it has its permissions from the beginning. QTemporaryDir sets them later, and warns of a folder that another
// program has removed by then.
NewFolder makeFolder()
{
    const QString form = QDir::tempPath() + QLatin1Char('/') + temporaryPrefix() + QLatin1String("XXXXXX");
#ifdef Q_OS_UNIX
    QByteArray path = QFile::encodeName(form);
    if (mkdtemp(path.data()))
        return {QFile::decodeName(path), QString()};
    return {QString(), qt_error_string(errno)};
#else
    QTemporaryDir folder(form);
    folder.setAutoRemove(false);
    return {folder.isValid() ? folder.path() : QString(), folder.errorString()};
#endif
}
} // namespace

// Between its making and its use another program may take a folder for one that was left behind.
TemporaryFolder::TemporaryFolder()
{
    constexpr int mostTries = 100;
    for (int i = 0; i < mostTries && !(m_inUse && m_inUse->isCertain()); ++i) {
        const NewFolder folder = makeFolder();
        m_path = folder.path;
        m_error = folder.error;
        if (m_path.isEmpty())
            return;
        m_inUse = std::make_unique<InUse>(m_path);
    }
}

// Removed while it is in use: two programs that remove the same folder are in each other's way.
TemporaryFolder::~TemporaryFolder()
{
    if (isValid())
        QDir(m_path).removeRecursively();
}

bool TemporaryFolder::isValid() const
{
    return !m_path.isEmpty();
}

QString TemporaryFolder::errorString() const
{
    return m_error;
}

QString TemporaryFolder::path() const
{
    return m_path;
}

QString TemporaryFolder::filePath(const QString &name) const
{
    return QDir(m_path).filePath(name);
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
