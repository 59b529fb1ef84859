#include "PluginOption.h"

#include "console/CommandLine.h"
#include "console/Console.h"

#include <QCoreApplication>

void PluginOption::addTo(Command &command)
{
    command.addOption(
        {"--plugin", "FILE",
         "A step plug-in to load; may be given more than once. Without it the plug-ins of\n"
         "QUILLMAP_PLUGIN_PATH, or of the program's own install or build tree, /usr/local and the\n"
         "user, are loaded; of these, one that cannot be used is told and passed over."},
        m_choice.files);
    command.addOption(
        {"--plugin-path", "PLACE",
         "A folder with step plug-ins, or one plug-in, to search before all others; may be given\n"
         "more than once"},
        m_choice.places);
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
    const StepHost::PluginLoading loading =
        StepHost::loadPlugins(catalogue, m_choice, QCoreApplication::applicationDirPath());
    const QStringList lines = loading.remarks + loading.refusals;
    for (const QString &line : lines)
        say(line);
    if (!loading.refusals.isEmpty() || !catalogue.plugins().empty())
        return loading.refusals.isEmpty();
    if (loading.searched.isEmpty())
        say(QStringLiteral("none of the plug-ins that were found can be used"));
    else
        say(QStringLiteral("no plug-in found in %1; name one with --plugin FILE or in QUILLMAP_PLUGIN_PATH")
                .arg(loading.searched.join(QLatin1String(", "))));
    return false;
}
