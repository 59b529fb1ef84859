#include "CheckRunner.h"

#include "CheckContext.h"
#include "Company.h"
#include "HashOrder.h"
#include "PluginRun.h"
#include "host/files/LeftBehind.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessProbe.h"
#include "host/running/ProcessTree.h"
#include "host/scripts/ScriptFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace StepHost
{
namespace
{
const QString unloadsId = QStringLiteral("library.unloads");

constexpr QLatin1String olderLoadsId(baselineLoadsId, int(sizeof baselineLoadsId) - 1);

/// Checks, by when they are done.
struct CheckPlan
{
    CheckPlan(const QVector<PluginCheck> &checks, bool isKnownToLoad);

    int size() const
    {
        return loads.size() + plain.size() + olderLoads.size() + compared.size();
    }

    QVector<PluginCheck> loads{pluginChecks().first()}; ///< First of all, unless it is known and nobody asks.
    QVector<PluginCheck> plain;
    QVector<PluginCheck>
        olderLoads; ///< The same for an older release, when the plug-in is compared with one.
    QVector<PluginCheck> compared;
    QStringList unasked; ///< The ids of what nobody asks for.
};

CheckPlan::CheckPlan(const QVector<PluginCheck> &checks, bool isKnownToLoad)
    : unasked{loads.first().id, olderLoadsId}
{
    for (const PluginCheck &check : checks) {
        const bool isOfBaseline = check.id.startsWith(QLatin1String("baseline."));
        if (isOfBaseline && olderLoads.isEmpty())
            olderLoads = {*findPluginCheck(olderLoadsId)};
        if (unasked.removeOne(check.id))
            continue;
        (isOfBaseline ? compared : plain).append(check);
    }
    if (isKnownToLoad && unasked.contains(loads.first().id))
        loads.clear();
}

// The results of `ends`, without those that passed and nobody asks for. A process that dies while the library is
// unloaded dies after each check: that is told once, and of an older release not at all.
QVector<CheckResult> resultsOf(const QVector<CheckProcessEnd> &ends, const QStringList &unasked)
{
    const bool isUnloadingTold = std::any_of(ends.begin(), ends.end(), [](const CheckProcessEnd &end) {
        return end.result.id == unloadsId && end.result.outcome >= CheckOutcome::Failed;
    });
    QVector<CheckResult> results;
    for (const CheckProcessEnd &end : ends) {
        const bool isOther = (isUnloadingTold && end.result.id != unloadsId) || end.result.id == olderLoadsId;
        const CheckResult &result = isOther && end.beforeUnloading ? *end.beforeUnloading : end.result;
        if (result.outcome != CheckOutcome::Passed || !unasked.contains(result.id))
            results.append(result);
    }
    return results;
}

// What `library.loads` told; empty when it could not.
QString factNamed(const CheckProcessEnd &end, const char *name)
{
    const QVector<CheckFact> facts = end.beforeUnloading.value_or(end.result).facts;
    const auto *const it = std::find_if(facts.begin(), facts.end(), [name](const CheckFact &fact) {
        return fact.what == QLatin1String(name);
    });
    return it == facts.end() ? QString() : it->value;
}

bool hasLoaded(const CheckProcessEnd &end)
{
    return end.beforeUnloading.value_or(end.result).outcome == CheckOutcome::Passed;
}

/// Checks plug-ins one after the other.
class PluginsRun
{
public:
    PluginsRun(const QVector<PluginCheck> &checks, const CheckRunOptions &options, int files)
        : m_plan(checks, options.isKnownToLoad), m_options(options), m_total(files * m_plan.size())
    {
    }

    /// Nothing when the program was told to quit meanwhile.
    std::optional<PluginReport> check(const QString &file);

private:
    QVector<CheckProcessEnd> skipAll(const QVector<PluginCheck> &checks, const char *reason);
    QVector<CheckProcessEnd> checkLoaded(PluginRun &run);
    CheckRunOptions optionsFor(const QString &file) const;
    void progress();

    const CheckPlan m_plan;
    const CheckRunOptions &m_options;
    const int m_total;
    int m_done = 0;
    bool m_isInterrupted = false;
};

void PluginsRun::progress()
{
    ++m_done;
    if (m_options.progress)
        m_options.progress(m_done, m_total);
}

QVector<CheckProcessEnd> PluginsRun::skipAll(const QVector<PluginCheck> &checks, const char *reason)
{
    QVector<CheckProcessEnd> ends;
    for (const PluginCheck &check : checks) {
        ends.append({{check.id, CheckOutcome::Skipped, QLatin1String(reason), 0}, std::nullopt});
        progress();
    }
    return ends;
}

// Another copy of the plug-in is no company for it: nobody loads both.
CheckRunOptions PluginsRun::optionsFor(const QString &file) const
{
    CheckRunOptions options = m_options;
    const QStringList names{QFileInfo(file).fileName(), QFileInfo(m_options.baseline).fileName()};
    options.companions.clear();
    for (const QString &companion : m_options.companions) {
        if (!names.contains(QFileInfo(companion).fileName()))
            options.companions.append(companion);
    }
    options.scripts += scriptsBeside(file);
    if (!m_options.baseline.isEmpty())
        options.scripts += scriptsBeside(m_options.baseline);
    return options;
}

// Stops where the program is told to quit.
QVector<CheckProcessEnd> PluginsRun::checkLoaded(PluginRun &run)
{
    QVector<CheckProcessEnd> ends = run.run(m_plan.plain);
    if (m_options.baseline.isEmpty() || m_options.program.isEmpty())
        ends += skipAll(m_plan.olderLoads + m_plan.compared, "no older release is named");
    m_isInterrupted = run.isInterrupted();
    if (m_isInterrupted || ends.size() == m_plan.size() - m_plan.loads.size())
        return ends;
    PluginRun older(QFileInfo(m_options.baseline).absoluteFilePath(), run.options(), [this] { progress(); });
    ends += older.run(m_plan.olderLoads);
    m_isInterrupted = older.isInterrupted();
    if (!m_isInterrupted) {
        ends += run.run(m_plan.compared);
        m_isInterrupted = run.isInterrupted();
    }
    return ends;
}

std::optional<PluginReport> PluginsRun::check(const QString &file)
{
    const QDateTime started = QDateTime::currentDateTimeUtc();
    PluginRun run(QFileInfo(file).absoluteFilePath(), optionsFor(file), [this] { progress(); });
    QVector<CheckProcessEnd> ends = run.run(m_plan.loads);
    if (run.isInterrupted())
        return std::nullopt;
    const CheckProcessEnd loads = ends.isEmpty() ? CheckProcessEnd() : ends.constFirst();
    ends += hasLoaded(loads)
        ? checkLoaded(run)
        : skipAll(m_plan.plain + m_plan.olderLoads + m_plan.compared, "the library does not load");
    if (m_isInterrupted)
        return std::nullopt;
    return PluginReport{file, resultsOf(ends, m_plan.unasked), factNamed(loads, pluginIdFact),
                        factNamed(loads, versionFact), started};
}
} // namespace

QVector<PluginReport> checkPlugins(const QStringList &files, const QVector<PluginCheck> &checks,
                                   const CheckRunOptions &options)
{
    removeLeftBehind(QDir::tempPath());
    PluginsRun run(checks, options, files.size());
    QVector<PluginReport> reports;
    for (const QString &file : files) {
        const std::optional<PluginReport> report = run.check(file);
        if (!report)
            break;
        reports.append(*report);
    }
    compareCompany(reports);
    return reports;
}

bool runCheckWorker(const QString &fileName, const QString &id, const QString &resultFile,
                    const IconRenderer &renderer)
{
    const PluginCheck *check = findPluginCheck(id);
    if (!check)
        return false;
    leadProcessTree();
    adoptOrphans();
    leaveBreadcrumbsIn(breadcrumbFileOf(resultFile));
    const CheckSetup setup = handedCheckSetup(renderer);
    fixHashOrder(setup.isAgain);
    const MemoryLimit limit(memoryOfCheck);
    bool isWritten = false;
    runPluginCheck(*check, fileName, setup,
                   [&](const CheckResult &result) { isWritten = writeCheckResult(resultFile, result); });
    noteCall(endingCall);
    return isWritten;
}
} // namespace StepHost
