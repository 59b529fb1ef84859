#include "PluginRun.h"

#include "host/plugins/LibraryFile.h"
#include "host/running/ProcessProbe.h"

#include <QDir>
#include <QHash>
#include <QTimer>

#include <algorithm>

namespace StepHost
{
namespace
{
int worldCount(const PluginCheck &check)
{
    return check.worlds == CheckWorlds::One ? 1 : 2;
}
} // namespace

PluginRun::PluginRun(const QString &fileName, const CheckRunOptions &options,
                     const std::function<void()> &progress)
    : m_fileName(fileName), m_options(options), m_progress(progress),
      m_preload(isSanitized() ? QString() : sanitizerRuntimeOf(fileName))
{
    if (!m_options.baseline.isEmpty() && m_options.releaseFile.isEmpty())
        m_options.releaseFile = m_folder.filePath(QStringLiteral("release"));
}

// What the two processes of a check come to: the worse of both, or the first fact that differs.
CheckProcessEnd PluginRun::togetherOf(const Job &job)
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

QVector<CheckProcessEnd> PluginRun::run(const QVector<PluginCheck> &checks)
{
    if (m_options.program.isEmpty())
        return runHere(checks);
    if (!m_folder.isValid())
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
    // One that takes long must not be left over for one processor at the end.
    std::stable_partition(m_starts.begin(), m_starts.end(),
                          [this](const Start &start) { return m_jobs.at(start.job).check.takesLong; });
    // From within the loop, so that a process that fails at once finds it running.
    QTimer::singleShot(0, &m_loop, [this] { startMore(); });
    if (!m_starts.isEmpty())
        m_loop.exec();
    // Only where the whole program is told to quit are there any left.
    qDeleteAll(m_processes);
    m_processes.clear();
    QVector<CheckProcessEnd> ends;
    for (const Job &job : qAsConst(m_jobs))
        ends.append(togetherOf(job));
    return ends;
}

QVector<CheckProcessEnd> PluginRun::runHere(const QVector<PluginCheck> &checks) const
{
    QVector<CheckProcessEnd> ends;
    for (const PluginCheck &check : checks) {
        const CheckSetup setup{m_options.renderer, m_options.seed,      false, false,
                               m_options.scripts,  m_options.companions};
        ends.append({runPluginCheck(check, m_fileName, setup), std::nullopt});
        m_progress();
    }
    return ends;
}

QVector<CheckProcessEnd> PluginRun::notStarted(const QVector<PluginCheck> &checks) const
{
    QVector<CheckProcessEnd> ends;
    for (const PluginCheck &check : checks) {
        ends.append({{check.id, CheckOutcome::Crashed,
                      QStringLiteral("there is no folder for its result: %1").arg(m_folder.errorString()), 0},
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
    const QString folder = m_folder.filePath(QStringLiteral("%1-%2").arg(check.id).arg(start.world));
    QDir().mkpath(folder);
    const CheckTask task{m_fileName, check.id, folder, m_preload, check.worlds, start.world > 0};
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
    Job &job = m_jobs[start.job];
    job.ends[start.world] = end;
    ++m_ended;
    if (--job.running == 0)
        m_progress();
    if (m_ended == m_starts.size())
        m_loop.quit();
    else
        startMore();
}
} // namespace StepHost
