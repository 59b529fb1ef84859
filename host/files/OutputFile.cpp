#include "OutputFile.h"

#include "FileErrors.h"
#include "FileReplacement.h"

#include <QFileInfo>

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
} // namespace

Result<QString> writeOutputFile(const QString &fileName, const QByteArray &bytes)
{
    if (!fileName.isEmpty() && !isDevice(fileName))
        return replaceFile(fileName, bytes);
    QFile output(fileName);
    const bool isOpen =
        fileName.isEmpty() ? output.open(stdout, QIODevice::WriteOnly) : output.open(QIODevice::WriteOnly);
    if (!isOpen || !writeAll(output, bytes))
        return failure(FileErrors::shown(output.errorString()));
    return QString();
}
} // namespace StepHost
