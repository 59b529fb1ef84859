#include "RunSession.h"

#include "LogModel.h"
#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "host/plugins/StepTexts.h"
#include "host/running/RunProcess.h"
#include "host/scripts/StepProblems.h"

#include <QHash>

#include <algorithm>

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

RunSession::RunSession(ScriptDocument &document, LogModel &log, const Runner &runner, QObject *parent)
    : QObject(parent), m_document(document), m_breakpoints(document), m_log(log), m_runner(runner)
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
    connect(&m_breakpoints, &Breakpoints::changed, this, &RunSession::showPauses);
}

RunSession::~RunSession() = default;

Breakpoints &RunSession::breakpoints()
{
    return m_breakpoints;
}

bool RunSession::isRunning() const
{
    return m_run != nullptr;
}

bool RunSession::isPaused() const
{
    return m_run && m_run->waitingBefore() >= 0;
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
    if (isPaused())
        goOn(StepHost::RunOrder::GoOn, -1);
    else
        runTo(m_document.model().rowCount() - 1);
}

void RunSession::runTo(int row)
{
    if (isPaused()) {
        const int behind = m_run->originals.indexOf(&m_document.model().step(row)) + 1;
        if (behind > m_run->waitingBefore())
            goOn(StepHost::RunOrder::GoOn, behind);
        return;
    }
    if (m_run)
        return;
    m_document.model().clearResults();
    start(0, row, m_document.variables());
}

void RunSession::runStep(int row)
{
    start(row, row, m_hasResult ? m_after : m_document.variables());
}

void RunSession::step()
{
    if (isPaused()) {
        goOn(StepHost::RunOrder::GoOn, 0);
    } else if (!m_run) {
        m_document.model().clearResults();
        start(0, m_document.model().rowCount() - 1, m_document.variables(), 0);
    }
}

void RunSession::skip()
{
    if (!isPaused())
        return;
    const int index = m_run->waitingBefore();
    m_log.append(tr("Passed over this once"), m_run->originals.at(index),
                 nameOf(*m_run->script.steps.at(size_t(index)).operation, m_run->firstRow + index));
    goOn(StepHost::RunOrder::PassOver, 0);
}

void RunSession::startOver()
{
    giveUp();
    step();
}

void RunSession::changeVariables(const VariableScope &variables, const QString &action)
{
    if (!isPaused())
        return;
    m_run->variables = variables;
    m_after = variables;
    m_log.append(tr("While paused: %1").arg(action));
    emit changed();
}

void RunSession::start(int firstRow, int lastRow, const VariableScope &variables, int pauseFrom)
{
    ScriptModel &model = m_document.model();
    if (m_run || firstRow < 0 || lastRow < firstRow || lastRow >= model.rowCount())
        return;
    auto next = std::make_unique<ScriptRun>();
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
    m_after = variables;
    connect(m_run.get(), &ScriptRun::finished, this, &RunSession::finish);
    connect(m_run.get(), &ScriptRun::paused, this, &RunSession::pause, Qt::QueuedConnection);
    // A single step is run because it is wanted.
    if (firstRow != lastRow || pauseFrom >= 0)
        showPauses();
    m_run->setPauseFrom(pauseFrom);
    m_progressTimer.start();
    m_run->start(m_runner);
    emit changed();
}

void RunSession::showPauses()
{
    if (!m_run)
        return;
    QSet<int> indexes;
    for (int i = 0; i < m_run->originals.size(); ++i) {
        if (m_breakpoints.contains(m_run->originals.at(i)))
            indexes.insert(i);
    }
    m_run->setPauses(indexes);
}

void RunSession::pause()
{
    // The run that waited may have been given up since.
    if (!isPaused())
        return;
    const int index = m_run->waitingBefore();
    m_run->tellable = index;
    m_after = m_run->variables;
    m_hasResult = true;
    const Operation *next = m_run->originals.at(index);
    ScriptModel &model = m_document.model();
    const int row = model.rowOf(next);
    model.setRunningRow(-1);
    model.setNextRow(row);
    m_log.append(tr("Paused before this step"), row >= 0 ? next : nullptr,
                 nameOf(*m_run->script.steps.at(size_t(index)).operation, m_run->firstRow + index));
    m_progressTimer.stop();
    emit progressed(index, m_run->originals.size());
    emit changed();
    if (!m_reportTimer.isActive())
        report();
}

void RunSession::goOn(StepHost::RunOrder order, int pauseFrom)
{
    m_document.model().setNextRow(-1);
    m_run->setPauseFrom(pauseFrom);
    m_run->goOn(order);
    m_progressTimer.start();
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
    const auto isOver = [](const std::unique_ptr<ScriptRun> &run) { return run->isFinished(); };
    m_abandoned.erase(std::remove_if(m_abandoned.begin(), m_abandoned.end(), isOver), m_abandoned.end());
    if (!m_run || !isOver(m_run))
        return;
    m_progressTimer.stop();
    m_run->left = StepHost::StartedProcesses::end();
    m_run->started.reset();
    m_run->stepResults = m_run->result.steps;
    m_run->tellable = m_run->originals.size();
    m_after = m_run->variables;
    m_document.model().setRunningRow(-1);
    m_document.model().setNextRow(-1);
    if (!m_reportTimer.isActive())
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
    if (!m_run)
        return;
    ScriptModel &model = m_document.model();
    QHash<const Operation *, int> rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.insert(&model.step(row), row);
    QVector<ScriptModel::Result> results;
    QVector<LogModel::Warning> warnings;
    const int end = qMin(m_run->told + reportedAtOnce, m_run->tellable);
    for (int &i = m_run->told; i < end; ++i) {
        const StepHost::ScriptStep &step = m_run->script.steps.at(size_t(i));
        StepHost::StepResult result = m_run->stepResults.at(size_t(i));
        if (result.outcome == StepHost::StepOutcome::Skipped && result.warnings.isEmpty())
            result.warnings = reasonsOfSilence(*step.operation, m_after);
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
    if (m_run->told < m_run->tellable)
        m_reportTimer.start();
    else if (m_run->isFinished())
        endRun();
}

void RunSession::endRun()
{
    const std::unique_ptr<ScriptRun> run = std::move(m_run);
    m_hasResult = true;
    if (!run->result.printed.isEmpty())
        m_log.append(tr("The plug-ins printed: %1").arg(QString::fromUtf8(run->result.printed).trimmed()));
    reportEnd(*run);
    if (run->left > 0)
        m_log.appendWarning(tr("%n process(es) that the steps left running were ended", nullptr, run->left));
    emit changed();
}

void RunSession::reportEnd(const ScriptRun &run)
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
    if (!m_run)
        return;
    if (m_run->isAskedToStop())
        m_run->end();
    else
        m_run->stop();
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

void RunSession::giveUp()
{
    m_progressTimer.stop();
    m_reportTimer.stop();
    if (m_run) {
        m_run->end();
        // Where the system allows, that ends the run's process, too.
        m_run->started.reset();
        m_abandoned.push_back(std::move(m_run));
    }
    m_document.model().setRunningRow(-1);
    m_document.model().setNextRow(-1);
}

void RunSession::abandon()
{
    giveUp();
    restore();
}
} // namespace Workbench
