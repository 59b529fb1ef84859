#include "OutputFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

namespace StepHost
{
QString replaceFile(const QString &fileName, const QByteArray &content)
{
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return QString();
    return QCoreApplication::translate("StepHost::OutputFile", "%1: %2")
        .arg(QDir::toNativeSeparators(fileName), file.errorString());
}
} // namespace StepHost
