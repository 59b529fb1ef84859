#include "PluginWork.h"

#include "Isolation.h"
#include "console/Console.h"
#include "console/Terminal.h"

#include <new>

namespace
{
int makeResult(const PluginWork &work, QByteArray &result)
{
    FaultWatch watch(QStringLiteral("while the plug-ins were loaded"));
    if (work.timeLimit > 0 && !Isolation::isWorker())
        watch.limitTime(work.timeLimit);
    if (!watch.limitMemory(work.plugins.memoryLimit()))
        return refuse(QStringLiteral("--memory-limit: the memory of a process is not limited here"));
    StepHost::StepCatalogue catalogue;
    if (!work.plugins.load(catalogue))
        return ExitRefused;
    const int status = refuseExceptions([&] {
        try {
            return work.make(catalogue, watch, result);
        } catch (const std::bad_alloc &) {
            return watch.refuseForMemory();
        }
    });
    watch.setWork(QStringLiteral("while the plug-ins were unloaded"));
    return status;
}
} // namespace

int doPluginWork(const PluginWork &work)
{
    if (work.output.isEmpty())
        return refuse(QStringLiteral("the file for the result has no name"));
    QByteArray result;
    const bool isApart = work.plugins.isIsolated() && !Isolation::isWorker();
    const int status = isApart ? Isolation::runWorker(work.timeLimit, result) : makeResult(work, result);
    if (Isolation::isWorker()) {
        Isolation::handOver(status, result);
        return status;
    }
    if (status == ExitRefused)
        return ExitRefused;
    return writeResult(result, work.output) ? status : int(ExitRefused);
}

StepHost::TextLook resultLook(const QString &output, bool isWhole)
{
    return Isolation::isWorker() ? StepHost::TextLook() : lookOf(output, isWhole);
}
