#include "Console.h"

#include "host/files/OutputFile.h"
#include "host/values/QuotedText.h"

#include <QLocale>

#include <exception>
#include <iostream>

void say(const QString &text)
{
    std::cerr << "stepctl: " << StepHost::messageLine(text).toStdString() << std::endl;
}

int refuse(const QString &reason)
{
    say(reason);
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
    const bool isStandardOutput = fileName.isEmpty() || fileName == QLatin1String("-");
    const StepHost::Result<QString> written =
        StepHost::writeOutputFile(isStandardOutput ? QString() : fileName, bytes);
    if (!written) {
        refuse(QStringLiteral("%1 cannot be written: %2")
                   .arg(isStandardOutput ? QStringLiteral("standard output") : fileName, written.error()));
    } else if (!written->isEmpty()) {
        say(fileName + QLatin1String(": ") + *written);
    }
    return bool(written);
}

QString shownSize(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1).remove(QLatin1String(".0"));
}
