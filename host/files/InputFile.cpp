#include "InputFile.h"

#include "FileErrors.h"

#include <QFile>
#include <QFileInfo>

namespace StepHost
{
namespace
{
constexpr int chunkSize = 1 << 20;

// Its descriptor: on Windows QFile takes the end of a pipe for an error when it reads from the stream.
constexpr int standardInput = 0;
} // namespace

Result<QByteArray> readInputFile(const QString &fileName)
{
    if (fileName.isEmpty())
        return failure(FileErrors::tr("the file has no name"));
    const bool isStandardInput = fileName == QLatin1String("-");
    const auto refuse = [&](const QString &reason) {
        return failure((isStandardInput ? FileErrors::tr("standard input") : fileName) + QLatin1String(": ")
                       + reason);
    };
    if (!isStandardInput && QFileInfo(fileName).isDir())
        return refuse(FileErrors::tr("this is a folder, not a file"));

    QFile file(fileName);
    if (!(isStandardInput ? file.open(standardInput, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly)))
        return refuse(FileErrors::shown(file.errorString()));
    // The size of a pipe shows only as it is read.
    QByteArray bytes;
    QByteArray chunk;
    bool isTooLarge = file.size() > maxInputSize;
    if (!isTooLarge)
        bytes.reserve(int(file.size()));
    while (!isTooLarge && !(chunk = file.read(chunkSize)).isEmpty()) {
        bytes += chunk;
        isTooLarge = bytes.size() > maxInputSize;
    }
    if (isTooLarge)
        return refuse(FileErrors::tr("the file holds more than 256 MiB"));
    if (file.error() != QFileDevice::NoError)
        return refuse(FileErrors::shown(file.errorString()));
    return bytes;
}
} // namespace StepHost
