#include "PluginOption.h"

#include "CommandLine.h"
#include "Console.h"
#include "host/plugins/PluginSearch.h"

#include <QCoreApplication>

void PluginOption::addTo(Command &command)
{
    command.addOption({"--plugin", "FILE",
                       "A step plug-in to load; may be given more than once. Without it the plug-ins of\n"
                       "QUILLMAP_PLUGIN_PATH, or of the program's own install or build tree, are loaded."},
                      m_files);
    command.addFlag(
        "--isolate",
        "Work in a process of its own, so that every end of it by a plug-in gives status 2 and a\n"
        "line that tells how and where, _exit() and a kill included",
        m_isIsolated);
    // What the program has before it reads anything.
    constexpr qint64 least = 16 << 20;
    command.addSize(
        {"--memory-limit", "SIZE",
         "End work that takes more memory, as when a list grows without end, with status 2 and a\n"
         "line that tells where. In bytes, or in KiB, MiB, GiB or TiB with K, M, G or T behind the\n"
         "number; half of the machine's memory by default. On Linux"},
        least, m_memoryLimit);
}

bool PluginOption::load(StepHost::StepCatalogue &catalogue) const
{
    QStringList files = m_files;
    if (files.isEmpty()) {
        const StepHost::FoundPlugins found = StepHost::findPlugins(QCoreApplication::applicationDirPath());
        if (found.files.isEmpty()) {
            refuse(QStringLiteral(
                       "no plug-in found in %1; name one with --plugin FILE or in QUILLMAP_PLUGIN_PATH")
                       .arg(found.searched.join(QLatin1String(", "))));
            return false;
        }
        files = found.files;
    }
    for (const QString &file : qAsConst(files)) {
        const auto added = catalogue.addPlugin(file);
        if (!added) {
            refuse(added.error().reason);
            return false;
        }
    }
    return true;
}
