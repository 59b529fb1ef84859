#pragma once

#include <QString>
#include <QStringList>

namespace StepHost
{
/// The plug-ins that a program finds by itself.
struct FoundPlugins
{
    QStringList files; ///< The libraries found, sorted by name; empty when there is none.
    QStringList searched; ///< Where the search looked, in order, to tell the user.
};

/// Finds the plug-ins for a program that lies in \a executableDir.
///
/// When the environment variable `QUILLMAP_PLUGIN_PATH` is set and not empty, only the places that it
/// lists count, separated as in `PATH`. Each is a library or a folder, of which all libraries are taken.
/// Otherwise the first of these folders that holds a library gives all its libraries: the plug-in folder of
/// the install tree, which is the package's own, and the one of the build tree.
FoundPlugins findPlugins(const QString &executableDir);
} // namespace StepHost
