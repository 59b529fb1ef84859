#include "FileReplacement.h"

#include "FileErrors.h"

#include "LeftBehind.h"

#include <QCoreApplication>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QSaveFile>
#endif

namespace StepHost
{
bool writeAll(QFileDevice &output, const QByteArray &bytes)
{
    int done = 0;
    while (done < bytes.size()) {
        // Where only some bytes can be written, the reason shows when the rest is tried.
        const qint64 count = output.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            return false;
        done += int(count);
    }
    return output.flush();
}

#ifdef Q_OS_UNIX
namespace
{
class FileReplacement
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::FileReplacement)
};

// Gives the open file `descriptor` what `old` has besides its content. Returns what it cannot have.
QStringList handOn(const struct stat &old, int descriptor)
{
    QStringList lost;
    mode_t mode = old.st_mode & 07777;
    // What was granted to one group or owner is not for another.
    if (fchown(descriptor, uid_t(-1), old.st_gid) != 0) {
        lost << FileReplacement::tr("group");
        mode &= ~mode_t(S_ISGID | S_IRWXG);
    }
    if (fchown(descriptor, old.st_uid, gid_t(-1)) != 0) {
        lost << FileReplacement::tr("owner");
        mode &= ~mode_t(S_ISUID);
    }
    if (fchmod(descriptor, mode) != 0)
        lost << FileReplacement::tr("mode");
    if (old.st_nlink > 1)
        lost << FileReplacement::tr("hard links");
    return lost;
}

// Lets the new name of a file in `folder` outlast a power cut. Where that fails, it may be the old file that does.
void syncFolder(const QByteArray &folder)
{
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

// Opens a new file without a name in `folder`. Where there are no such files, the error is EOPNOTSUPP, or EISDIR.
int openNameless(const QString &folder)
{
#ifdef O_TMPFILE
    if (access("/proc/self/fd", X_OK) == 0) // Else it could never get one.
        return open(QFile::encodeName(folder).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
#else
    Q_UNUSED(folder)
#endif
    errno = EOPNOTSUPP;
    return -1;
}

/// A file that is to take the place of another in its folder. It has a name only when it must, and is gone unless it took
/// that place.
class NewFile
{
public:
    explicit NewFile(const QString &folder) : m_folder(folder), m_descriptor(openNameless(folder))
    {
        if (m_descriptor < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
            findName([this](const QByteArray &name) {
                m_descriptor = open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
                return m_descriptor >= 0;
            });
        }
        if (m_descriptor >= 0)
            m_inUse.emplace(m_name.isEmpty() ? ownPath() : QFile::decodeName(m_name));
    }
    ~NewFile()
    {
        if (!m_name.isEmpty())
            unlink(m_name.constData());
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    int descriptor() const
    {
        return m_descriptor;
    }

    // Returns whether it could take the place of `target`.
    bool replace(const QByteArray &target)
    {
        const QByteArray self = QFile::encodeName(ownPath());
        const bool isNamed = !m_name.isEmpty() || findName([&](const QByteArray &name) {
            return linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0;
        });
        if (!isNamed || rename(m_name.constData(), target.constData()) != 0)
            return false;
        m_name.clear();
        return true;
    }

private:
    Q_DISABLE_COPY(NewFile)

    // Leads to the file when it has no name, too.
    QString ownPath() const
    {
        return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
    }

    // Tries names until `make` could give one to the file.
    template<typename Make>
    bool findName(Make make)
    {
        constexpr int tries = 100;
        for (int i = 0; i < tries; ++i) {
            const QString number = QString::number(QRandomGenerator::global()->generate(), 36);
            const QByteArray name =
                QFile::encodeName(m_folder + QLatin1Char('/') + temporaryPrefix() + number);
            if (make(name)) {
                m_name = name;
                return true;
            }
            if (errno != EEXIST)
                return false;
        }
        return false;
    }

    QString m_folder;
    QByteArray m_name;
    int m_descriptor = -1;
    std::optional<InUse> m_inUse;
};

// The file that `fileName` leads to when it is a symbolic link, else the file itself.
QFileInfo behindLinks(const QString &fileName)
{
    constexpr int mostLinks = 40;
    QFileInfo file(fileName);
    for (int links = 0; links < mostLinks && file.isSymLink(); ++links)
        file.setFile(file.symLinkTarget());
    return file;
}
} // namespace

Result<QString> replaceFile(const QString &fileName, const QByteArray &bytes)
{
    const QFileInfo target = behindLinks(fileName);
    const auto refuse = [](int error) { return failure(FileErrors::shown(qt_error_string(error))); };
    if (target.isSymLink())
        return refuse(ELOOP);
    if (target.isDir())
        return refuse(EISDIR);
    if (target.exists() && !target.isWritable())
        return refuse(EACCES);
    const EndsLater endsLater;
    const QString folder = target.absolutePath();
    removeLeftBehind(folder);
    NewFile next(folder);
    if (next.descriptor() < 0)
        return refuse(errno);
    QFile output;
    if (!output.open(next.descriptor(), QIODevice::WriteOnly | QIODevice::Unbuffered)
        || !writeAll(output, bytes))
        return failure(FileErrors::shown(output.errorString()));
    QStringList lost;
    const QByteArray name = QFile::encodeName(target.absoluteFilePath());
    struct stat old;
    if (stat(name.constData(), &old) == 0)
        lost = handOn(old, next.descriptor());
    if (fsync(next.descriptor()) != 0 || !next.replace(name))
        return refuse(errno);
    syncFolder(QFile::encodeName(folder));
    return lost.isEmpty() ? QString()
                          : FileReplacement::tr("the old file's %1 could not be kept")
                                .arg(lost.join(FileReplacement::tr(" and ")));
}
#else
Result<QString> replaceFile(const QString &fileName, const QByteArray &bytes)
{
    QSaveFile output(fileName);
    if (!output.open(QIODevice::WriteOnly) || !writeAll(output, bytes) || !output.commit())
        return failure(FileErrors::shown(output.errorString()));
    return QString();
}
#endif
} // namespace StepHost
