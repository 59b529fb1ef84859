// Checks of the library's file, which run nothing of it.

#include "host/checks/CheckContext.h"
#include "host/plugins/LibraryFile.h"
#include "host/values/QuotedText.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

namespace StepHost
{
namespace
{
LibraryFile libraryOf(const CheckContext &context)
{
    const LibraryFile library = readLibraryFile(context.fileName());
    if (!library.isKnown)
        skip(QStringLiteral("libraries of this format cannot be read"));
    return library;
}

void checkStack(CheckContext &context)
{
    if (libraryOf(context).wantsExecutableStack)
        fail(QStringLiteral("the library asks for a stack that can be executed; link with -z noexecstack"));
}

// Whether others than its owner may put libraries where `path` is, or will be.
bool isOpenToAll(const QString &path)
{
    QFileInfo info(QDir::cleanPath(path));
    while (!info.exists() && !info.isRoot())
        info.setFile(info.path());
    return (info.permissions() & QFile::WriteOther) != 0;
}

void checkSearchPaths(CheckContext &context)
{
    const QStringList paths = libraryOf(context).searchPaths;
    for (const QString &path : paths) {
        const bool isBesideLibrary =
            path.startsWith(QLatin1String("$ORIGIN")) || path.startsWith(QLatin1String("${ORIGIN}"));
        if (!isBesideLibrary && !path.startsWith(QLatin1Char('/')))
            fail(QStringLiteral("the library looks for others in %1, which depends on the current folder; an "
                                "absolute path, or "
                                "one that begins with $ORIGIN, does not")
                     .arg(quoted(path)));
        if (!isBesideLibrary && isOpenToAll(path))
            fail(QStringLiteral("the library looks for others in %1, where everybody may put some")
                     .arg(quoted(path)));
    }
}

void checkNeeded(CheckContext &context)
{
    // What draws windows; a host may have none.
    static const char *const windowing[] = {
        "Qt5Gui", "Qt5Widgets", "Qt5Qml",       "Qt5Quick",      "Qt5PrintSupport",
        "Qt5Svg", "Qt5OpenGL",  "Qt5WebEngine", "X11",           "xcb",
        "GL",     "EGL",        "gtk-3",        "wayland-client"};
    const QStringList needed = libraryOf(context).needed;
    for (const QString &name : needed) {
        for (const char *other : windowing) {
            if (name.startsWith(QLatin1String("lib") + QLatin1String(other) + QLatin1Char('.')))
                fail(QStringLiteral("the library needs %1, which a host without windows does not have")
                         .arg(quoted(name)));
        }
        if (name.startsWith(QLatin1String("libQt")) && !name.startsWith(QLatin1String("libQt5")))
            fail(QStringLiteral("the library needs %1, another Qt than the host's").arg(quoted(name)));
    }
}

void checkDebug(CheckContext &context)
{
#ifdef QT_NO_DEBUG
    if (context.metaData().value(QLatin1String("debug")).toBool())
        warn(QStringLiteral("the library is a debug build; ship one with CMAKE_BUILD_TYPE=Release"));
#else
    Q_UNUSED(context)
#endif
}
} // namespace

QVector<PluginCheck> fileChecks()
{
    return {
        {"file.stack", "The library does not ask for a stack that can be executed.", checkStack},
        {"file.search-paths", "The library looks for others only where nobody else can put some.",
         checkSearchPaths},
        {"file.needed", "The library needs nothing that a host without windows lacks.", checkNeeded},
        {"file.debug", "The library is a release build.", checkDebug},
    };
}
} // namespace StepHost
