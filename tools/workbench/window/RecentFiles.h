#pragma once

#include <QStringList>

class QSettings;

namespace Workbench
{
/// The files that were opened or saved last, the latest first, kept in the program's settings.
class RecentFiles
{
public:
    /// Keeps the list in \a settings, which has to outlive this object.
    explicit RecentFiles(QSettings &settings);

    /// The absolute paths, ten at most.
    QStringList paths() const;

    /// Puts \a path on top.
    void add(const QString &path);

    /// Takes \a path off the list.
    void remove(const QString &path);

private:
    void store(const QStringList &paths);

    QSettings &m_settings;
};
} // namespace Workbench
