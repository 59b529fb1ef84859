#include "OutputFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace StepHost
{
namespace
{
// Neither a file nor a folder, such as a pipe.
bool isDevice(const QString &fileName)
{
    const QFileInfo info(fileName);
    return info.exists() && !info.isFile() && !info.isDir();
}

// Writes `bytes` to `output` and empties its buffer. Returns whether it could.
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
// Gives the open file `descriptor` what `old` has besides its content. Returns what it cannot have.
QStringList handOn(const struct stat &old, int descriptor)
{
    QStringList lost;
    mode_t mode = old.st_mode & 07777;
    // What was granted to one group or owner is not for another.
    if (fchown(descriptor, uid_t(-1), old.st_gid) != 0) {
        lost << QStringLiteral("group");
        mode &= ~mode_t(S_ISGID | S_IRWXG);
    }
    if (fchown(descriptor, old.st_uid, gid_t(-1)) != 0) {
        lost << QStringLiteral("owner");
        mode &= ~mode_t(S_ISUID);
    }
    if (fchmod(descriptor, mode) != 0)
        lost << QStringLiteral("mode");
    if (old.st_nlink > 1)
        lost << QStringLiteral("hard links");
    return lost;
}

// Lets the new name of `fileName` outlast a power cut. Where that fails, it may be the old file that does.
void syncFolderOf(const QString &fileName)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(fileName).canonicalPath());
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}
#endif

Result<QString> replaceFile(const QString &fileName, const QByteArray &bytes)
{
    QSaveFile output(fileName);
    if (!output.open(QIODevice::WriteOnly) || !writeAll(output, bytes))
        return failure(output.errorString());
    QStringList lost;
#ifdef Q_OS_UNIX
    struct stat old;
    if (stat(QFile::encodeName(fileName).constData(), &old) == 0)
        lost = handOn(old, output.handle());
    // QSaveFile does that too, but does not look what comes of it.
    if (fsync(output.handle()) != 0)
        return failure(qt_error_string(errno));
#endif
    if (!output.commit())
        return failure(output.errorString());
#ifdef Q_OS_UNIX
    syncFolderOf(fileName);
#endif
    return lost.isEmpty()
        ? QString()
        : QStringLiteral("the old file's %1 could not be kept").arg(lost.join(QStringLiteral(" and ")));
}
} // namespace

Result<QString> writeOutputFile(const QString &fileName, const QByteArray &bytes)
{
    if (!fileName.isEmpty() && !isDevice(fileName))
        return replaceFile(fileName, bytes);
    QFile output(fileName);
    const bool isOpen =
        fileName.isEmpty() ? output.open(stdout, QIODevice::WriteOnly) : output.open(QIODevice::WriteOnly);
    if (!isOpen || !writeAll(output, bytes))
        return failure(output.errorString());
    return QString();
}
} // namespace StepHost
