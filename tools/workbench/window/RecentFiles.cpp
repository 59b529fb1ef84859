#include "RecentFiles.h"

#include <QFileInfo>
#include <QSettings>

namespace Workbench
{
namespace
{
constexpr int maxFiles = 10;

QString settingsKey()
{
    return QStringLiteral("recentFiles");
}
} // namespace

RecentFiles::RecentFiles(QSettings &settings) : m_settings(settings) { }

QStringList RecentFiles::paths() const
{
    return m_settings.value(settingsKey()).toStringList();
}

void RecentFiles::add(const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList files = paths();
    files.removeAll(absolute);
    files.prepend(absolute);
    store(files.mid(0, maxFiles));
}

void RecentFiles::remove(const QString &path)
{
    QStringList files = paths();
    files.removeAll(QFileInfo(path).absoluteFilePath());
    store(files);
}

void RecentFiles::store(const QStringList &paths)
{
    m_settings.setValue(settingsKey(), paths);
}
} // namespace Workbench
