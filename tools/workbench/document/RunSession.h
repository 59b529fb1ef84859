#pragma once

#include "Breakpoints.h"
#include "ScriptRun.h"

#include <QTimer>

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
///
/// A run waits before steps that have a breakpoint, and where it was told to. While it waits, what became of the steps
/// before is shown, the variables can be changed, and the step can be passed over.
class RunSession : public QObject
{
    Q_OBJECT

public:
    /// Carries out a run, in a thread of its own, as StepHost::runScript() does.
    using Runner = ScriptRun::Runner;

    /// Runs the steps of \a document and writes to \a log; both have to outlive the session. \a runner takes the place
    /// of StepHost::RunProcess.
    RunSession(ScriptDocument &document, LogModel &log, const Runner &runner = Runner(),
               QObject *parent = nullptr);

    /// Ends the run that goes on.
    ~RunSession() override;

    /// The steps before which runs wait.
    Breakpoints &breakpoints();

    /// Whether a run goes on, also one that waits.
    bool isRunning() const;

    /// Whether the run waits before a step.
    bool isPaused() const;

    /// Whether a run has left variables behind, or waits with some.
    bool hasResult() const;

    /// The variables when the last run began.
    const VariableScope &before() const;

    /// The variables as the last run left them, or as they are while it waits.
    const VariableScope &after() const;

    /// The members that start a run do nothing while one goes on that does not wait. Runs the whole script, or goes on
    /// with the run that waits.
    void runAll();

    /// Runs the script up to the step in \a row. A run that waits goes on, and waits again behind that step.
    void runTo(int row);

    /// Runs the step in \a row alone. Does nothing while a run waits.
    void runStep(int row);

    /// Begins a run that waits before the first step, or runs the step before which one waits and waits before the next.
    void step();

    /// Has the run that waits leave its next step out this once, and wait before the one behind.
    void skip();

    /// Gives the run up, if there is one, and begins one that waits before the first step.
    void startOver();

    /// Changes the variables of the run that waits to \a variables; \a action tells the log what was done.
    void changeVariables(const VariableScope &variables, const QString &action);

    /// Ends the run before its next step; when it was asked to before, at once.
    void stop();

    /// Puts the variables back to what the script starts with and forgets what became of the steps.
    void restore();

signals:
    /// A run began or ended, waits or goes on, or its variables were changed or forgotten.
    void changed();
    /// \a done of \a total steps had their turn.
    void progressed(int done, int total);

private:
    void start(int firstRow, int lastRow, const VariableScope &variables, int pauseFrom = -1);
    void goOn(StepHost::RunOrder order, int pauseFrom);
    void pause();
    void showPauses();
    void showProgress();
    void finish();
    static QStringList reasonsOfSilence(const Operation &step, const VariableScope &variables);
    void report();
    void endRun();
    void reportEnd(const ScriptRun &run);
    void giveUp();
    void abandon();

    ScriptDocument &m_document;
    Breakpoints m_breakpoints;
    LogModel &m_log;
    Runner m_runner;
    std::unique_ptr<ScriptRun> m_run; ///< The run that goes on; null when there is none.
    std::vector<std::unique_ptr<ScriptRun>>
        m_abandoned; ///< Runs that nobody waits for, until they have ended.
    QTimer m_progressTimer;
    QTimer m_reportTimer; ///< For the rest of what there is to tell of a run.
    bool m_hasResult = false;
    VariableScope m_before;
    VariableScope m_after;
};
} // namespace Workbench
