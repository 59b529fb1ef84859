#include "Console.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
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
