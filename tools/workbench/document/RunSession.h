#pragma once

#include "host/running/ScriptRunner.h"
#include "hostapi/VariableScope.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

namespace Workbench
{
class LogModel;
class ScriptDocument;

/// Runs the steps of a document and keeps the variables as the runs leave them.
///
/// A run works in a thread of its own on copies of the steps and variables, so the document can be edited
/// meanwhile. It never changes the variables that the script starts with. The whole script, and the script
/// up to a step, run on those; a single step runs on what the run before it left, until restore().
class RunSession : public QObject
{
    Q_OBJECT

public:
    /// Runs the steps of \a document and writes to \a log; both have to outlive the session.
    RunSession(ScriptDocument &document, LogModel &log, QObject *parent = nullptr);

    /// Stops the run that goes on, and waits for its present step to end.
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

    /// Ends the run before its next step.
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
    void report(const Run &run);
    void abandon();

    ScriptDocument &m_document;
    LogModel &m_log;
    std::unique_ptr<Run> m_run; ///< The run that goes on; null when there is none.
    QTimer m_progressTimer;
    bool m_hasResult = false;
    VariableScope m_before;
    VariableScope m_after;
};
} // namespace Workbench
