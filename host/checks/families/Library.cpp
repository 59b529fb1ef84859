#include "host/checks/CheckContext.h"
#include "host/checks/snapshot/MemoryUse.h"
#include "host/plugins/ExportedSymbols.h"
#include "host/plugins/LibraryFile.h"
#include "host/plugins/PluginLoader.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessProbe.h"
#include "host/values/QuotedText.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QSet>

#include <algorithm>
#include <memory>
#include <new>

namespace StepHost
{
namespace
{
constexpr int allowedLoadTime = 1000;
constexpr int reloads = 20;
constexpr qint64 allowedReloadGrowth = qint64(8) * 1024 * 1024;

// Before any code of a library for something else is run.
void expectInterface(const CheckContext &context)
{
    const QString id = context.metaData().value(QLatin1String("IID")).toString();
    if (!id.isEmpty() && id != QLatin1String(IOperationPlugin_iid))
        fail(QStringLiteral("the metadata names the interface %1 instead of %2; nothing of it was run")
                 .arg(quoted(id), quoted(QLatin1String(IOperationPlugin_iid))));
}

void checkLoads(CheckContext &context)
{
    if (!QFileInfo(context.fileName()).isFile())
        fail(QStringLiteral("there is no file %1").arg(inOneLine(context.fileName())));
    const QString platform = foreignPlatformOf(context.fileName());
    if (!platform.isEmpty())
        fail(QStringLiteral("the library is for %1, not for this system and processor").arg(platform));
    expectInterface(context);
    context.plugin();
}

void introduce(CheckContext &context)
{
    constexpr int shown = 200;
    context.tell(QLatin1String(pluginIdFact), bounded(context.plugin().pluginId(), shown));
    context.tell(QLatin1String(versionFact), bounded(context.plugin().version(), shown));
}

void checkMetaData(CheckContext &context)
{
    const QString className = context.metaData().value(QLatin1String("className")).toString();
    if (className.isEmpty())
        fail(QStringLiteral("the metadata names no class"));
    if (context.isLoaded())
        skip(QStringLiteral("the library was loaded before"));
    const QString actual = QString::fromUtf8(context.instance().metaObject()->className());
    if (actual != className)
        fail(QStringLiteral("the metadata names the class %1, the root object is a %2")
                 .arg(quoted(className), quoted(actual)));
}

void checkLoadTime(CheckContext &context)
{
    QElapsedTimer timer;
    timer.start();
    context.newSteps();
    if (timer.elapsed() > allowedLoadTime)
        fail(QStringLiteral("loading and making the prototypes takes %1 ms, at most %2 are allowed")
                 .arg(timer.elapsed())
                 .arg(allowedLoadTime));
}

/// Loads the library, uses it as a host does, and unloads it again.
void reload(const CheckContext &context)
{
    QPluginLoader loader(context.fileName());
    loader.setLoadHints({});
    IOperationPlugin *plugin = qobject_cast<IOperationPlugin *>(loader.instance());
    if (!plugin)
        fail(QStringLiteral("the library does not load: %1").arg(loader.errorString()));
    {
        const PluginManifest manifest = plugin->manifest();
        const QList<Operation *> steps = plugin->createPrototypes();
        qDeleteAll(steps);
    }
    noteCall(unloadingCall);
    if (!loader.unload())
        fail(QStringLiteral("the library does not unload: %1").arg(loader.errorString()));
}

void checkUnloads(CheckContext &context)
{
    reload(context);
    if (isMapped(context.fileName()).value_or(false))
        warn(QStringLiteral("the library stays in memory after it was unloaded"));
}

void checkReloadMemory(CheckContext &context)
{
    // The first rounds fill caches of Qt and of the system.
    for (int i = 0; i < 3; ++i)
        reload(context);
    const std::optional<qint64> before = residentMemory();
    if (!before)
        skip(QStringLiteral("this system does not tell how much memory a process uses"));
    for (int i = 0; i < reloads; ++i)
        reload(context);
    const qint64 growth = residentMemory().value_or(*before) - *before;
    if (growth > allowedReloadGrowth)
        fail(QStringLiteral(
                 "the process grows by %1 KiB while the library is loaded and unloaded %2 times, at "
                 "most %3 are allowed")
                 .arg(growth >> 10)
                 .arg(reloads)
                 .arg(allowedReloadGrowth >> 10));
}

void checkReloadAllocations(CheckContext &context)
{
    constexpr qint64 allowed = 2048;
    const qint64 bytes = bytesLeftByEach([&context] { reload(context); });
    if (bytes > allowed)
        fail(QStringLiteral("each loading and unloading leaves %1 bytes allocated").arg(bytes));
}

// Fails when `count` is larger after loading and unloading than before.
void expectNoMore(CheckContext &context, std::optional<int> (*count)(), const char *what)
{
    reload(context);
    const std::optional<int> before = count();
    if (!before)
        skip(QStringLiteral("this system does not tell the number of %1").arg(QLatin1String(what)));
    for (int i = 0; i < reloads; ++i)
        reload(context);
    const int after = count().value_or(*before);
    if (after > *before)
        fail(QStringLiteral("loading and unloading the library %1 times leaves %2 %3 behind")
                 .arg(reloads)
                 .arg(after - *before)
                 .arg(QLatin1String(what)));
}

void checkReloadHandles(CheckContext &context)
{
    expectNoMore(context, openHandles, "open files");
}

void checkReloadThreads(CheckContext &context)
{
    expectNoMore(context, runningThreads, "threads");
}

QSet<QString> registeredResources()
{
    QSet<QString> paths;
    QDirIterator it(QStringLiteral(":/"), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        paths.insert(it.next());
    return paths;
}

void checkReloadResources(CheckContext &context)
{
    const QSet<QString> before = registeredResources();
    for (int i = 0; i < reloads; ++i)
        reload(context);
    if (isMapped(context.fileName()).value_or(false))
        skip(QStringLiteral("the library stays in memory after it was unloaded, and its resources with it"));
    const QSet<QString> left = registeredResources() - before;
    if (!left.isEmpty())
        fail(QStringLiteral("resources stay registered after unloading, such as %1")
                 .arg(quoted(*std::min_element(left.begin(), left.end()))));
}

using EntryPoint = QObject *(*)();

// The library's entry point, past Qt's own loader, which keeps the object that it got first.
EntryPoint entryPointOf(QLibrary &library)
{
    const auto entry = reinterpret_cast<EntryPoint>(library.resolve("qt_plugin_instance"));
    if (!entry)
        fail(QStringLiteral("the library has no entry point qt_plugin_instance"));
    return entry;
}

void checkOneInstance(CheckContext &context)
{
    QLibrary library(context.fileName());
    const EntryPoint entry = entryPointOf(library);
    QObject *first = entry();
    if (!first)
        fail(QStringLiteral("qt_plugin_instance() gives null"));
    for (int i = 0; i < 2; ++i) {
        if (entry() != first)
            fail(QStringLiteral("two calls of qt_plugin_instance() give different objects"));
    }
    delete first;
}

void checkInstanceAgain(CheckContext &context)
{
    QLibrary library(context.fileName());
    const EntryPoint entry = entryPointOf(library);
    QObject *first = entry();
    if (!first)
        fail(QStringLiteral("qt_plugin_instance() gives null"));
    // Destroyed, but its memory kept: what is at its address afterwards can only be the deleted object.
    const std::unique_ptr<void, void (*)(void *)> memory(dynamic_cast<void *>(first),
                                                         [](void *address) { ::operator delete(address); });
    first->~QObject();
    QObject *second = entry();
    if (!second)
        fail(QStringLiteral("qt_plugin_instance() gives null after its object was deleted"));
    if (second == first)
        fail(QStringLiteral(
            "qt_plugin_instance() gives the object that was deleted; it has to make a new one"));
    if (!qobject_cast<IOperationPlugin *>(second))
        fail(
            QStringLiteral("the object that is made after the first one was deleted is no IOperationPlugin"));
    delete second;
}

// "A::B" as it stands in mangled names: "1A1B".
QByteArray mangledPart(const char *className)
{
    QByteArray mangled;
    const QList<QByteArray> parts = QByteArray(className).replace("::", ":").split(':');
    for (const QByteArray &part : parts)
        mangled += QByteArray::number(part.size()) + part;
    return mangled;
}

QVector<QByteArray> exportedNames(const CheckContext &context)
{
    const ExportedSymbols symbols = readExportedSymbols(context.fileName());
    if (!symbols.isKnown)
        skip(QStringLiteral("symbols cannot be read from libraries of this format"));
    return symbols.names;
}

void expectNone(const QVector<QByteArray> &names, const QString &what)
{
    constexpr int shown = 5;
    QStringList texts;
    for (int i = 0; i < qMin(shown, names.size()); ++i)
        texts.append(QString::fromLatin1(names.at(i)));
    if (names.size() > shown)
        texts.append(QStringLiteral("and %1 more").arg(names.size() - shown));
    if (!names.isEmpty())
        fail(what.arg(texts.join(QLatin1String(", "))));
}

void checkSymbols(CheckContext &context)
{
    QVector<QByteArray> own{mangledPart(context.instance().metaObject()->className())};
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        own.append(mangledPart(step->metaObject()->className()));
    QVector<QByteArray> leaked;
    const QVector<QByteArray> names = exportedNames(context);
    for (const QByteArray &name : names) {
        const bool isEntryPoint = name == "qt_plugin_instance" || name == "qt_plugin_query_metadata";
        // Names that begin so are the compiler's and the linker's.
        const bool isReserved =
            name.startsWith("__") || name == "_init" || name == "_fini" || name == "_end" || name == "_edata";
        const bool isOwn = std::any_of(own.begin(), own.end(),
                                       [&name](const QByteArray &part) { return name.contains(part); });
        if (!isEntryPoint && !isReserved && !isOwn)
            leaked.append(name);
    }
    expectNone(leaked,
               QStringLiteral("the library exports what is neither an entry point nor part of its root "
                              "object and steps: %1; compile with hidden visibility"));
}

void checkHostSymbols(CheckContext &context)
{
    static const QVector<QByteArray> hostClasses{mangledPart("Operation"), mangledPart("VariableScope"),
                                                 mangledPart("IOperationPlugin"),
                                                 mangledPart("IEditorRegistry")};
    QVector<QByteArray> doubled;
    const QVector<QByteArray> names = exportedNames(context);
    for (const QByteArray &name : names) {
        for (const QByteArray &part : hostClasses) {
            if (name.startsWith("_ZN" + part) || name.startsWith("_ZNK" + part)
                || name.startsWith("_ZTV" + part))
                doubled.append(name);
        }
    }
    expectNone(doubled,
               QStringLiteral("the library has a copy of the host's own code: %1; link OperationCore "
                              "as a shared library"));
}
} // namespace

QVector<PluginCheck> libraryChecks()
{
    return {
        {"library.loads", "The library loads, and its root object implements the contract.", checkLoads,
         CheckWorlds::One, introduce},
        {"library.metadata", "The metadata can be read without loading, and names the root object's class.",
         checkMetaData},
        {"library.load-time", "Loading and making the prototypes takes at most 1000 ms.", checkLoadTime},
        {"library.unloads", "The library can be unloaded.", checkUnloads},
        {"library.reload-memory", "Loading and unloading 20 times does not make the process grow.",
         checkReloadMemory},
        {"library.reload-allocations", "Loading and unloading leaves no memory allocated each time.",
         checkReloadAllocations},
        {"library.reload-handles", "Loading and unloading 20 times leaves no file open.", checkReloadHandles},
        {"library.reload-threads", "Loading and unloading 20 times leaves no thread running.",
         checkReloadThreads},
        {"library.reload-resources", "Loading and unloading 20 times leaves no resource registered.",
         checkReloadResources},
        {"library.one-instance", "The entry point gives the same root object each time.", checkOneInstance},
        {"library.instance-again", "The entry point makes a new root object when the old one was deleted.",
         checkInstanceAgain},
        {"library.symbols", "The library exports nothing that could collide with another library.",
         checkSymbols},
        {"library.host-symbols", "The library has no copy of the host's own code.", checkHostSymbols},
    };
}
} // namespace StepHost
