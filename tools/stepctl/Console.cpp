#include "Console.h"

#include "host/values/QuotedText.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
#include <exception>
#include <iostream>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

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

int refuse(const QString &reason)
{
    std::cerr << "stepctl: " << StepHost::inOneLine(reason).toStdString() << std::endl;
    return ExitRefused;
}

int refuseExceptions(const std::function<int()> &work)
{
    const QString lead = QStringLiteral("an unexpected exception ended the work");
    try {
        return work();
    } catch (const std::exception &exception) {
        return refuse(lead + QLatin1String(": ") + QString::fromUtf8(exception.what()));
    } catch (...) {
        return refuse(lead);
    }
}

bool writeResult(const QByteArray &bytes, const QString &fileName)
{
    bool isWritten = false;
    QString error;
    if (fileName.isEmpty() || isDevice(fileName)) {
        QFile output(fileName);
        const bool isOpen = fileName.isEmpty() ? output.open(stdout, QIODevice::WriteOnly)
                                               : output.open(QIODevice::WriteOnly);
        isWritten = isOpen && writeAll(output, bytes);
        error = output.errorString();
    } else {
        QSaveFile output(fileName);
        isWritten = output.open(QIODevice::WriteOnly) && writeAll(output, bytes) && output.commit();
        error = output.errorString();
    }
    if (!isWritten) {
        refuse(QStringLiteral("%1 cannot be written: %2")
                   .arg(fileName.isEmpty() ? QStringLiteral("standard output") : fileName, error));
    }
    return isWritten;
}

bool isErrorTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}
