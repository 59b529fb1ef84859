#include "ProcessFacts.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>

namespace StepHost
{
namespace
{
// All files below the folder that this process has for itself. The runner has made it.
QStringList files()
{
    const QString folder = qEnvironmentVariable(checkFolderVariable);
    QStringList facts;
    if (folder.isEmpty())
        return facts;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        const QString path = it.filePath().mid(folder.size() + 1);
        if (path.startsWith(QLatin1String("result"))) // The check's own.
            continue;
        facts.append(info.isDir() ? path + QLatin1Char('/')
                                  : QStringLiteral("%1 of %2 bytes, changed %3")
                                        .arg(path)
                                        .arg(info.size())
                                        .arg(info.lastModified().toString(Qt::ISODateWithMs)));
    }
    return facts;
}
} // namespace

QVector<ProcessFacet> fileFacets()
{
    return {{QStringLiteral("files"),
             QStringLiteral("No file is written to the home, temporary or current folder."), files}};
}
} // namespace StepHost
