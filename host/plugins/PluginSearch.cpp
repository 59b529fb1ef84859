#include "PluginSearch.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>

namespace StepHost
{
namespace
{
QStringList librariesIn(const QString &folder)
{
    QStringList files;
    const QFileInfoList entries = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (QLibrary::isLibrary(entry.fileName()))
            files.append(entry.absoluteFilePath());
    }
    return files;
}

FoundPlugins findOnPath(const QString &path)
{
    FoundPlugins found;
    found.searched = path.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    for (const QString &place : qAsConst(found.searched))
        found.files += QFileInfo(place).isFile() ? QStringList{place} : librariesIn(place);
    return found;
}
} // namespace

FoundPlugins findPlugins(const QString &executableDir)
{
    const QString path = qEnvironmentVariable("QUILLMAP_PLUGIN_PATH");
    if (!path.isEmpty())
        return findOnPath(path);

    FoundPlugins found;
    const QDir prefix(QDir::cleanPath(executableDir + QLatin1String("/..")));
    for (const char *folder : {STEPHOST_PLUGIN_DIR, "plugins"}) {
        const QString place = prefix.filePath(QLatin1String(folder));
        found.searched.append(place);
        found.files = librariesIn(place);
        if (!found.files.isEmpty())
            break;
    }
    return found;
}
} // namespace StepHost
