#include "PluginSearch.h"

#include "host/values/ErrorTexts.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QSet>
#include <QStandardPaths>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace StepHost
{
namespace
{
QStringList librariesIn(const QString &place)
{
    if (QFileInfo(place).isFile())
        return {place};
    QStringList files;
    const QFileInfoList entries = QDir(place).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (QLibrary::isLibrary(entry.fileName()))
            files.append(entry.absoluteFilePath());
    }
    return files;
}

/// Goes from place to place and takes what is there.
class Search
{
public:
    /// Returns whether there was a library.
    bool lookAt(const QString &place)
    {
        m_found.searched.append(place);
        const QStringList files = librariesIn(place);
        for (const QString &file : files)
            take(file);
        return !files.isEmpty();
    }

    void lookAt(const QStringList &places)
    {
        for (const QString &place : places)
            lookAt(place);
    }

    /// The same for a folder that is searched unasked, and into which others may be able to write.
    void lookAtShared(const QString &folder)
    {
        if (!mayBeWrittenByOthers(folder))
            lookAt(folder);
        else
            m_found.remarks.append(
                ErrorTexts::tr("the plug-in folder \"%1\" is passed over: others than you and the "
                               "administrator may write into it")
                    .arg(folder));
    }

    FoundPlugins found() const
    {
        return m_found;
    }

private:
    static bool mayBeWrittenByOthers(const QString &folder)
    {
#ifdef Q_OS_UNIX
        const QFileInfo info(folder);
        const bool isTrusted = info.ownerId() == 0 || info.ownerId() == geteuid();
        return info.exists() && (!isTrusted || info.permission(QFile::WriteOther));
#else
        Q_UNUSED(folder)
        return false;
#endif
    }

    // Two places may be one folder.
    void take(const QString &file)
    {
        const QString canonical = QFileInfo(file).canonicalFilePath();
        if (m_taken.contains(canonical))
            return;
        m_taken.insert(canonical);
        m_found.files.append(file);
    }

    FoundPlugins m_found;
    QSet<QString> m_taken;
};

void lookAtDefaults(Search &search, const QString &executableDir)
{
    const QDir prefix(QDir::cleanPath(executableDir + QLatin1String("/..")));
    if (!search.lookAt(prefix.filePath(QLatin1String(STEPHOST_PLUGIN_DIR))))
        search.lookAt(prefix.filePath(QLatin1String("plugins")));
#ifdef Q_OS_UNIX
    search.lookAtShared(QLatin1String("/usr/local/" STEPHOST_PLUGIN_DIR));
#endif
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    search.lookAtShared(data + QLatin1String("/quillmap/plugins"));
}
} // namespace

FoundPlugins findPlugins(const QString &executableDir, const QStringList &addedPlaces)
{
    Search search;
    search.lookAt(addedPlaces);
    const QString path = qEnvironmentVariable("QUILLMAP_PLUGIN_PATH");
    const QStringList places = path.split(QDir::listSeparator());
    for (const QString &place : places) {
        if (place.isEmpty())
            lookAtDefaults(search, executableDir);
        else
            search.lookAt(place);
    }
    return search.found();
}

FoundPlugins findPluginsIn(const QStringList &places)
{
    Search search;
    search.lookAt(places);
    return search.found();
}
} // namespace StepHost
