#pragma once

#include <QString>
#include <QStringList>

namespace StepHost
{
/// The plug-ins that a program finds by itself.
struct FoundPlugins
{
    QStringList
        files; ///< The libraries found, each once, in the order of the search; empty when there is none.
    QStringList searched; ///< Where the search looked, in order, to tell the user.
    QStringList
        remarks; ///< One line for each place that was passed over although it is there, with the reason.
};

/// Finds the plug-ins for a program that lies in \a executableDir.
///
/// A place is a library, or a folder of which all libraries are taken, sorted by name. Looked at are, in this order:
///
/// 1. \a addedPlaces, which the user named beside all others.
/// 2. When the environment variable `QUILLMAP_PLUGIN_PATH` is set and not empty, the places that it lists, separated as
///    in `PATH`. An empty entry stands for the places of 3.
/// 3. Otherwise the program's own: the first that holds a library of the plug-in folder of the install tree, which is
///    the package's, and that of the build tree. Then, but on Windows, the plug-in folder below `/usr/local`. Then the
///    user's, `quillmap/plugins` below the folder for data of one's own, such as `~/.local/share`.
///
/// A plug-in is code, so who may write into a folder matters. What comes first is trusted most: of two plug-ins that
/// clash, the later one is to be passed over. The two last folders are passed over as a whole when they belong to
/// neither the user nor the administrator, or when everybody may write into them.
FoundPlugins findPlugins(const QString &executableDir, const QStringList &addedPlaces = {});

/// The same for \a places alone.
FoundPlugins findPluginsIn(const QStringList &places);
} // namespace StepHost
