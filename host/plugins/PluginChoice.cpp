#include "PluginChoice.h"

#include "PluginSearch.h"
#include "host/values/ErrorTexts.h"

#include <QFileInfo>

#include <algorithm>

namespace StepHost
{
namespace
{
Result<void, PluginError> addPlugin(StepCatalogue &catalogue, const QString &file, const PluginProbe &probe)
{
    if (probe) {
        const Result<void> probed = probe(file);
        if (!probed)
            return tl::unexpected<PluginError>({PluginRefusal::LoadFailed, probed.error(), file});
    }
    return catalogue.addPlugin(file);
}

bool isAmong(const QStringList &files, const QString &file)
{
    return std::any_of(files.begin(), files.end(),
                       [info = QFileInfo(file)](const QString &other) { return info == QFileInfo(other); });
}

FoundPlugins search(const PluginChoice &choice, const QString &executableDir)
{
    if (choice.files.isEmpty())
        return findPlugins(executableDir, choice.places);
    return choice.places.isEmpty() ? FoundPlugins() : findPluginsIn(choice.places);
}
} // namespace

PluginLoading loadPlugins(StepCatalogue &catalogue, const PluginChoice &choice, const QString &executableDir,
                          const PluginProbe &probe)
{
    PluginLoading loading;
    for (const QString &file : choice.files) {
        if (const auto added = addPlugin(catalogue, file, probe); !added)
            loading.refusals.append(added.error().reason);
    }
    const FoundPlugins found = search(choice, executableDir);
    loading.remarks = found.remarks;
    if (found.files.isEmpty())
        loading.searched = found.searched;
    for (const QString &file : found.files) {
        if (isAmong(choice.files, file))
            continue;
        const auto added = addPlugin(catalogue, file, probe);
        if (added)
            continue;
        loading.remarks.append(ErrorTexts::tr("%1; it is passed over").arg(added.error().reason));
        catalogue.passOver(added.error());
    }
    loading.remarks += catalogue.sharedIcons();
    return loading;
}
} // namespace StepHost
