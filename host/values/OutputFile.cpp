#include "OutputFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

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
} // namespace

Result<void> writeOutputFile(const QString &fileName, const QByteArray &bytes)
{
    if (fileName.isEmpty() || isDevice(fileName)) {
        QFile output(fileName);
        const bool isOpen = fileName.isEmpty() ? output.open(stdout, QIODevice::WriteOnly)
                                               : output.open(QIODevice::WriteOnly);
        if (!isOpen || !writeAll(output, bytes))
            return failure(output.errorString());
    } else {
        QSaveFile output(fileName);
        if (!output.open(QIODevice::WriteOnly) || !writeAll(output, bytes) || !output.commit())
            return failure(output.errorString());
    }
    return {};
}
} // namespace StepHost
