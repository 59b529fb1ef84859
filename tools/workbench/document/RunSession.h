#pragma once

#include "host/running/ScriptRunner.h"
#include "hostapi/VariableScope.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace Workbench
{
class LogModel;
class ScriptDocument;

/// Runs the steps of a document and keeps the variables as the runs leave them.
///
/// A run works in a process of its own on copies of the steps and variables, so whatever a step does to its process, the
/// window and the script stay, and the document can be edited meanwhile. It never changes the variables that the script
/// starts with. The whole script, and the script up to a step, run on those; a single step runs on what the run before it
/// left, until restore().
class RunSession : public QObject
{
    Q_OBJECT

public:
    /// Carries out a run, in a thread of its own, as StepHost::runScript() does.
    using Runner = std::function<StepHost::RunResult(const StepHost::Script &script, VariableScope &variables,
                                                     const StepHost::RunObserver &observer)>;

    /// Runs the steps of \a document and writes to \a log; both have to outlive the session. \a runner takes the place
    /// of StepHost::RunProcess.
    RunSession(ScriptDocument &document, LogModel &log, const Runner &runner = Runner(),
               QObject *parent = nullptr);

    /// Ends the run that goes on.
    ~RunSession() override;

    bool isRunning() const;

    /// Whether a run has left variables behind.
    bool hasResult() const;

    /// The variables when the last run began.
    const VariableScope &before() const;

    /// The variables as the last run left them.
    const VariableScope &after() const;

    /// The members that start a run do nothing while one goes on.
    void runAll();
    void runTo(int row);
    void runStep(int row);

    /// Ends the run before its next step; when it was asked to before, at once.
    void stop();

    /// Puts the variables back to what the script starts with and forgets what became of the steps.
    void restore();

signals:
    /// A run began or ended, or its variables were forgotten.
    void changed();
    /// \a done of \a total steps had their turn.
    void progressed(int done, int total);

private:
    struct Run;

    void start(int firstRow, int lastRow, const VariableScope &variables);
    void showProgress();
    void finish();
    static QStringList reasonsOfSilence(const Operation &step, const VariableScope &variables);
    void report();
    void endRun();
    void reportEnd(const Run &run);
    void abandon();

    ScriptDocument &m_document;
    LogModel &m_log;
    Runner m_runner;
    std::unique_ptr<Run> m_run; ///< The run that goes on; null when there is none.
    std::vector<std::unique_ptr<Run>> m_abandoned; ///< Runs that nobody waits for, until they have ended.
    QTimer m_progressTimer;
    QTimer m_reportTimer; ///< For the rest of the result of a run that is over.
    bool m_hasResult = false;
    VariableScope m_before;
    VariableScope m_after;
};
} // namespace Workbench
