#include "CheckRunner.h"

#include "CheckContext.h"
#include "CheckProcess.h"
#include "Company.h"
#include "host/files/LeftBehind.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

namespace StepHost
{
namespace
{
const QString unloadsId = QStringLiteral("library.unloads");

/// The processes of one check.
struct CheckJob
{
    PluginCheck check;
    QVector<CheckProcessEnd> ends; ///< One for each world.
    int running = 0;
};

QString folderTemplate()
{
    return QDir::tempPath() + QLatin1Char('/') + temporaryPrefix() + QLatin1String("XXXXXX");
}

int worldCount(const PluginCheck &check)
{
    return check.worlds == CheckWorlds::One ? 1 : 2;
}

// What the two processes of a check come to: the worse of both, or the first fact that differs.
CheckProcessEnd togetherOf(const CheckJob &job)
{
    CheckProcessEnd end = job.ends.first();
    for (const CheckProcessEnd &other : job.ends) {
        if (other.result.outcome > end.result.outcome)
            end = other;
    }
    if (end.result.outcome != CheckOutcome::Passed || job.ends.size() < 2)
        return end;
    const QVector<CheckFact> &here = job.ends.first().result.facts;
    const QVector<CheckFact> &there = job.ends.last().result.facts;
    const QString where = job.check.worlds == CheckWorlds::Elsewhere
        ? QStringLiteral("in another process, with another locale, time zone and day,")
        : QStringLiteral("in another process");
    QHash<QString, QString> values;
    for (const CheckFact &fact : there)
        values.insert(fact.what, fact.value);
    for (const CheckFact &fact : here) {
        // Which facts there are may depend on the time that a process had.
        const QString value = values.value(fact.what, fact.value);
        if (value == fact.value)
            continue;
        end.result.outcome = CheckOutcome::Failed;
        end.result.reason =
            QStringLiteral("%1 is %2, and %3 it is %4").arg(fact.what, fact.value, where, value);
        return end;
    }
    return end;
}

/// Does the checks of one plug-in.
class PluginRun
{
public:
    PluginRun(const QString &fileName, const CheckRunOptions &options, const std::function<void()> &progress)
        : m_fileName(fileName), m_options(options), m_progress(progress)
    {
    }

    /// How `checks` ended, in their order.
    QVector<CheckProcessEnd> run(const QVector<PluginCheck> &checks);

    /// Whether the program was told to quit before all of them had ended.
    bool isInterrupted() const
    {
        return m_ended < m_starts.size();
    }

private:
    struct Start
    {
        int job;
        int world;
    };

    QVector<CheckProcessEnd> runHere(const QVector<PluginCheck> &checks) const;
    QVector<CheckProcessEnd> notStarted(const QVector<PluginCheck> &checks) const;
    void startMore();
    void start(const Start &start);
    void finish(const Start &start, const CheckProcessEnd &end);

    QString m_fileName;
    CheckRunOptions m_options;
    std::function<void()> m_progress;
    QTemporaryDir m_directory{folderTemplate()};
    InUse m_inUse{m_directory.path()};
    QVector<CheckJob> m_jobs;
    QVector<Start> m_starts;
    QSet<CheckProcess *> m_processes; ///< Those that run.
    int m_started = 0;
    int m_ended = 0;
    QEventLoop m_loop;
};

QVector<CheckProcessEnd> PluginRun::run(const QVector<PluginCheck> &checks)
{
    if (m_options.program.isEmpty())
        return runHere(checks);
    if (!m_directory.isValid())
        return notStarted(checks);
    m_jobs.clear();
    m_starts.clear();
    m_started = 0;
    m_ended = 0;
    for (const PluginCheck &check : checks) {
        const int worlds = worldCount(check);
        for (int world = 0; world < worlds; ++world)
            m_starts.append({m_jobs.size(), world});
        m_jobs.append({check, QVector<CheckProcessEnd>(worlds), worlds});
    }
    // From within the loop, so that a process that fails at once finds it running.
    QTimer::singleShot(0, &m_loop, [this] { startMore(); });
    if (!m_starts.isEmpty())
        m_loop.exec();
    // Only where the whole program is told to quit are there any left.
    qDeleteAll(m_processes);
    m_processes.clear();
    QVector<CheckProcessEnd> ends;
    for (const CheckJob &job : qAsConst(m_jobs))
        ends.append(togetherOf(job));
    return ends;
}

QVector<CheckProcessEnd> PluginRun::runHere(const QVector<PluginCheck> &checks) const
{
    QVector<CheckProcessEnd> ends;
    for (const PluginCheck &check : checks) {
        const CheckSetup setup{m_options.renderer, m_options.seed, false, m_options.scripts,
                               m_options.companions};
        ends.append({runPluginCheck(check, m_fileName, setup), std::nullopt});
        m_progress();
    }
    return ends;
}

QVector<CheckProcessEnd> PluginRun::notStarted(const QVector<PluginCheck> &checks) const
{
    QVector<CheckProcessEnd> ends;
    for (const PluginCheck &check : checks) {
        ends.append(
            {{check.id, CheckOutcome::Crashed,
              QStringLiteral("there is no folder for its result: %1").arg(m_directory.errorString()), 0},
             std::nullopt});
        m_progress();
    }
    return ends;
}

void PluginRun::startMore()
{
    while (m_started < m_starts.size() && m_started - m_ended < qMax(1, m_options.jobs))
        start(m_starts.at(m_started++));
}

void PluginRun::start(const Start &start)
{
    const PluginCheck &check = m_jobs.at(start.job).check;
    const QString folder = m_directory.filePath(QStringLiteral("%1-%2").arg(check.id).arg(start.world));
    QDir().mkpath(folder);
    const CheckTask task{m_fileName, check.id, folder,
                         start.world > 0 && check.worlds == CheckWorlds::Elsewhere};
    auto *process = new CheckProcess(task, m_options);
    m_processes.insert(process);
    process->start([this, start, process](const CheckProcessEnd &end) {
        m_processes.remove(process);
        process->deleteLater();
        finish(start, end);
    });
}

void PluginRun::finish(const Start &start, const CheckProcessEnd &end)
{
    CheckJob &job = m_jobs[start.job];
    job.ends[start.world] = end;
    ++m_ended;
    if (--job.running == 0)
        m_progress();
    if (m_ended == m_starts.size())
        m_loop.quit();
    else
        startMore();
}

// The results of `ends`. A process that dies while the library is unloaded dies after each check: that is told once.
QVector<CheckResult> resultsOf(const QVector<CheckProcessEnd> &ends)
{
    const bool isUnloadingTold = std::any_of(ends.begin(), ends.end(), [](const CheckProcessEnd &end) {
        return end.result.id == unloadsId && end.result.outcome >= CheckOutcome::Failed;
    });
    QVector<CheckResult> results;
    for (const CheckProcessEnd &end : ends) {
        const bool isOther = isUnloadingTold && end.result.id != unloadsId;
        results.append(isOther && end.beforeUnloading ? *end.beforeUnloading : end.result);
    }
    return results;
}

// What `identity.non-empty` told; empty when it was not asked.
QString factNamed(const QVector<CheckResult> &results, const char *name)
{
    for (const CheckResult &result : results) {
        if (result.id != QLatin1String("identity.non-empty"))
            continue;
        for (const CheckFact &fact : result.facts) {
            if (fact.what == QLatin1String(name))
                return fact.value;
        }
    }
    return QString();
}

bool hasLoaded(const CheckProcessEnd &end)
{
    return end.beforeUnloading.value_or(end.result).outcome == CheckOutcome::Passed;
}
} // namespace

QVector<PluginReport> checkPlugins(const QStringList &files, const QVector<PluginCheck> &checks,
                                   const CheckRunOptions &options)
{
    const PluginCheck &loads = pluginChecks().first();
    QVector<PluginCheck> others;
    for (const PluginCheck &check : checks) {
        if (check.id != loads.id)
            others.append(check);
    }
    const bool isLoadsAsked = others.size() < checks.size();
    int done = 0;
    const int total = files.size() * (others.size() + 1);
    const auto progress = [&] {
        ++done;
        if (options.progress)
            options.progress(done, total);
    };
    removeLeftBehind(QDir::tempPath());
    QVector<PluginReport> reports;
    for (const QString &file : files) {
        const QDateTime started = QDateTime::currentDateTimeUtc();
        PluginRun run(QFileInfo(file).absoluteFilePath(), options, progress);
        QVector<CheckProcessEnd> ends = run.run({loads});
        const bool isLoaded = hasLoaded(ends.constFirst());
        if (run.isInterrupted())
            break;
        if (isLoaded) {
            ends += run.run(others);
        } else {
            for (const PluginCheck &check : qAsConst(others)) {
                ends.append(
                    {{check.id, CheckOutcome::Skipped, QStringLiteral("the library does not load"), 0},
                     std::nullopt});
                progress();
            }
        }
        if (run.isInterrupted())
            break;
        QVector<CheckResult> results = resultsOf(ends);
        if (!isLoadsAsked && results.constFirst().outcome == CheckOutcome::Passed)
            results.removeFirst();
        reports.append(
            {file, results, factNamed(results, pluginIdFact), factNamed(results, versionFact), started});
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
    bool isWritten = false;
    runPluginCheck(*check, fileName, handedCheckSetup(renderer),
                   [&](const CheckResult &result) { isWritten = writeCheckResult(resultFile, result); });
    noteCall(endingCall);
    return isWritten;
}
} // namespace StepHost
