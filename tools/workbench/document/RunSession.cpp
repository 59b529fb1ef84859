#include "RunSession.h"

#include "LogModel.h"
#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "host/plugins/StepTexts.h"
#include "host/running/RunProcess.h"
#include "host/running/StartedProcesses.h"
#include "host/scripts/StepProblems.h"

#include <QHash>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <optional>

namespace Workbench
{
namespace
{
constexpr int progressIntervalMs = 50;
// So that a long script keeps nobody waiting.
constexpr int reportedAtOnce = 500;

/// What the log calls \a step, which stood in \a row at the run.
QString nameOf(const Operation &step, int row)
{
    return QStringLiteral("%1  %2").arg(QString::number(row + 1),
                                        StepHost::shownStepText(step, &Operation::toString));
}
} // namespace

/// A run that goes on. Its thread alone uses the script, the variables and the result until it has ended.
struct RunSession::Run
{
    StepHost::Script script;
    QVector<const Operation *>
        originals; ///< The document's steps that were copied; just for telling them apart.
    int firstRow = 0; ///< Where the first of them stood.
    VariableScope variables;
    StepHost::RunResult result;
    int reported = 0; ///< Of how many steps the result has been told.
    int left = 0; ///< How many processes the steps have left running.
    std::atomic<int> done{0};
    std::atomic<int> current{-1}; ///< The step that has begun last.
    std::atomic<bool> shouldStop{false};
    std::atomic<bool> shouldEnd{false};
    QElapsedTimer clock;
    std::optional<StepHost::StartedProcesses> started{std::in_place};
    std::unique_ptr<QThread> thread;

    ~Run()
    {
        shouldStop = true;
        shouldEnd = true;
        if (thread)
            thread->wait();
    }

    void execute(const Runner &runner)
    {
        StepHost::RunObserver observer;
        observer.starting = [this](int index) { current = index; };
        observer.progress = [this](int count, int) { done = count; };
        observer.shouldStop = [this] { return shouldStop.load(); };
        observer.shouldEnd = [this] { return shouldEnd.load(); };
        result = runner(script, variables, observer);
    }
};

RunSession::RunSession(ScriptDocument &document, LogModel &log, const Runner &runner, QObject *parent)
    : QObject(parent), m_document(document), m_log(log), m_runner(runner)
{
    if (!m_runner) {
        m_runner = [&document](const StepHost::Script &script, VariableScope &variables,
                               const StepHost::RunObserver &observer) {
            return StepHost::RunProcess::run(script, variables, document.catalogue(), observer);
        };
    }
    m_progressTimer.setInterval(progressIntervalMs);
    m_reportTimer.setInterval(0);
    m_reportTimer.setSingleShot(true);
    connect(&m_reportTimer, &QTimer::timeout, this, &RunSession::report);
    connect(&m_progressTimer, &QTimer::timeout, this, &RunSession::showProgress);
    connect(&document, &ScriptDocument::replaced, this, &RunSession::abandon);
}

RunSession::~RunSession() = default;

bool RunSession::isRunning() const
{
    return m_run != nullptr;
}

bool RunSession::hasResult() const
{
    return m_hasResult;
}

const VariableScope &RunSession::before() const
{
    return m_before;
}

const VariableScope &RunSession::after() const
{
    return m_after;
}

void RunSession::runAll()
{
    runTo(m_document.model().rowCount() - 1);
}

void RunSession::runTo(int row)
{
    if (m_run)
        return;
    m_document.model().clearResults();
    start(0, row, m_document.variables());
}

void RunSession::runStep(int row)
{
    start(row, row, m_hasResult ? m_after : m_document.variables());
}

void RunSession::start(int firstRow, int lastRow, const VariableScope &variables)
{
    ScriptModel &model = m_document.model();
    if (m_run || firstRow < 0 || lastRow < firstRow || lastRow >= model.rowCount())
        return;
    auto next = std::make_unique<Run>();
    next->firstRow = firstRow;
    for (int row = firstRow; row <= lastRow; ++row) {
        const Operation &step = model.step(row);
        next->originals.append(&step);
        next->script.steps.push_back(m_document.copyStep(row));
        if (!next->script.steps.back().operation) {
            m_log.appendWarning(ScriptDocument::noCopy(row), &step, nameOf(step, row));
            return;
        }
    }
    m_run = std::move(next);
    m_run->variables = variables;
    m_before = variables;
    m_run->clock.start();
    m_run->thread.reset(QThread::create([this, run = m_run.get()] { run->execute(m_runner); }));
    connect(m_run->thread.get(), &QThread::finished, this, &RunSession::finish);
    m_progressTimer.start();
    m_run->thread->start();
    emit changed();
}

void RunSession::showProgress()
{
    const int done = m_run->done;
    const int total = m_run->originals.size();
    const int current = m_run->current;
    if (current >= 0)
        m_document.model().setRunningRow(m_document.model().rowOf(m_run->originals.at(current)));
    emit progressed(done, total);
}

void RunSession::finish()
{
    const auto isOver = [](const std::unique_ptr<Run> &run) { return run->thread->isFinished(); };
    m_abandoned.erase(std::remove_if(m_abandoned.begin(), m_abandoned.end(), isOver), m_abandoned.end());
    if (!m_run || !isOver(m_run) || m_reportTimer.isActive())
        return;
    m_progressTimer.stop();
    m_run->left = StepHost::StartedProcesses::end();
    m_run->started.reset();
    m_document.model().setRunningRow(-1);
    report();
}

QStringList RunSession::reasonsOfSilence(const Operation &step, const VariableScope &variables)
{
    QStringList reasons;
    const QVector<StepHost::StepProblem> problems = StepHost::StepProblems::ofStep(step, variables);
    for (const StepHost::StepProblem &problem : problems)
        reasons.append(problem.text);
    if (reasons.isEmpty())
        reasons.append(tr("The step wrote nothing and gave no reason."));
    return reasons;
}

void RunSession::report()
{
    ScriptModel &model = m_document.model();
    QHash<const Operation *, int> rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.insert(&model.step(row), row);
    QVector<ScriptModel::Result> results;
    QVector<LogModel::Warning> warnings;
    const int end = qMin(m_run->reported + reportedAtOnce, m_run->originals.size());
    for (int &i = m_run->reported; i < end; ++i) {
        const StepHost::ScriptStep &step = m_run->script.steps.at(size_t(i));
        StepHost::StepResult result = m_run->result.steps.at(size_t(i));
        if (result.outcome == StepHost::StepOutcome::Skipped && result.warnings.isEmpty())
            result.warnings = reasonsOfSilence(*step.operation, m_run->variables);
        const int row = rows.value(m_run->originals.at(i), -1);
        if (row >= 0 && result.outcome != StepHost::StepOutcome::NotRun)
            results.append({row, result, &step});
        const bool isFailed = result.outcome == StepHost::StepOutcome::Failed;
        if (result.warnings.isEmpty() && !isFailed)
            continue;
        const Operation *original = row >= 0 ? m_run->originals.at(i) : nullptr;
        const QString name = nameOf(*step.operation, m_run->firstRow + i);
        for (const QString &warning : qAsConst(result.warnings))
            warnings.append({warning, original, name});
        if (isFailed)
            warnings.append({tr("The step failed: %1").arg(result.failure), original, name});
    }
    model.setResults(results);
    m_log.appendWarnings(warnings);
    if (m_run->reported < m_run->originals.size())
        m_reportTimer.start();
    else
        endRun();
}

void RunSession::endRun()
{
    const std::unique_ptr<Run> run = std::move(m_run);
    m_after = run->variables;
    m_hasResult = true;
    if (!run->result.printed.isEmpty())
        m_log.append(tr("The plug-ins printed: %1").arg(QString::fromUtf8(run->result.printed).trimmed()));
    reportEnd(*run);
    if (run->left > 0)
        m_log.appendWarning(tr("%n process(es) that the steps left running were ended", nullptr, run->left));
    emit changed();
}

void RunSession::reportEnd(const Run &run)
{
    using StepHost::StepOutcome;
    QString counts = tr("%1 wrote, %2 skipped, %3 disabled, in %4 ms")
                         .arg(run.result.count(StepOutcome::Wrote))
                         .arg(run.result.count(StepOutcome::Skipped))
                         .arg(run.result.count(StepOutcome::Disabled))
                         .arg(run.clock.elapsed());
    if (!run.result.error.isEmpty())
        counts = tr("%1; %2").arg(run.result.error, counts);
    switch (run.result.end) {
    case StepHost::RunEnd::Completed:
        m_log.append(tr("Run completed: %1").arg(counts));
        break;
    case StepHost::RunEnd::Stopped:
        m_log.append(tr("Run stopped: %1").arg(counts));
        break;
    case StepHost::RunEnd::StepFailed:
        m_log.appendWarning(tr("Run ended by a step that failed: %1").arg(counts));
        break;
    case StepHost::RunEnd::NotRun:
        m_log.appendWarning(tr("The run could not begin: %1").arg(run.result.error));
        break;
    }
}

void RunSession::stop()
{
    if (m_run && m_run->shouldStop.exchange(true))
        m_run->shouldEnd = true;
}

void RunSession::restore()
{
    if (m_run)
        return;
    m_hasResult = false;
    m_before = VariableScope();
    m_after = VariableScope();
    m_document.model().clearResults();
    emit changed();
}

void RunSession::abandon()
{
    m_progressTimer.stop();
    m_reportTimer.stop();
    if (m_run) {
        m_run->shouldStop = true;
        m_run->shouldEnd = true;
        // Where the system allows, that ends the run's process, too.
        m_run->started.reset();
        m_abandoned.push_back(std::move(m_run));
    }
    restore();
}
} // namespace Workbench
