#include "PluginStart.h"

#include "host/running/RunProcess.h"

namespace Workbench
{
QStringList PluginStart::load(StepHost::StepCatalogue &catalogue, const StepHost::PluginChoice &choice,
                              int timeLimit)
{
    QStringList remarks;
    const auto probe = [&remarks, timeLimit](const QString &file) -> StepHost::Result<void> {
        const StepHost::Result<QStringList> probed = StepHost::RunProcess::probe(file, timeLimit);
        if (!probed)
            return StepHost::failure(probed.error());
        remarks += *probed;
        return {};
    };
    const StepHost::PluginLoading loading =
        StepHost::loadPlugins(catalogue, choice, QCoreApplication::applicationDirPath(), probe);
    remarks += loading.refusals + loading.remarks;
    if (!loading.searched.isEmpty())
        remarks.append(tr("There is no plug-in in %1.").arg(loading.searched.join(QLatin1String(", "))));
    return remarks;
}
} // namespace Workbench
