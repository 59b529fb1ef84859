#include "Console.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
#include <exception>
#include <iostream>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

int refuse(const QString &reason)
{
    std::cerr << "stepctl: " << reason.toStdString() << std::endl;
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
    if (fileName.isEmpty()) {
        QFile output;
        const bool isWritten = output.open(stdout, QIODevice::WriteOnly)
            && output.write(bytes) == bytes.size() && output.flush();
        if (!isWritten)
            refuse(QStringLiteral("standard output cannot be written: ") + output.errorString());
        return isWritten;
    }
    QSaveFile output(fileName);
    const bool isWritten =
        output.open(QIODevice::WriteOnly) && output.write(bytes) == bytes.size() && output.commit();
    if (!isWritten)
        refuse(fileName + QStringLiteral(" cannot be written: ") + output.errorString());
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
