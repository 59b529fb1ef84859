#pragma once

#include "host/running/ScriptRunner.h"
#include "host/running/StartedProcesses.h"
#include "hostapi/VariableScope.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QVector>
#include <QWaitCondition>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace Workbench
{
/// A run that goes on, in a thread of its own, and can wait before a step.
///
/// The members may be called by the thread that the object belongs to. What the run is about, its script, variables and
/// results, the run has for itself unless it waits or has ended.
class ScriptRun : public QObject
{
    Q_OBJECT

public:
    /// Carries out a run as StepHost::runScript() does.
    using Runner = std::function<StepHost::RunResult(const StepHost::Script &script, VariableScope &variables,
                                                     const StepHost::RunObserver &observer)>;

    ScriptRun();

    /// Ends the run.
    ~ScriptRun() override;

    /// Begins. What stands below is set before; finished() tells the end.
    void start(const Runner &runner);

    /// Ends it before its next step.
    void stop();

    /// Ends it at once.
    void end();

    bool isAskedToStop() const;
    bool isFinished() const;

    /// Has it wait before the steps \a indexes.
    void setPauses(const QSet<int> &indexes);

    /// Has it wait before the step \a index, or the next one behind that runs; -1 for none.
    void setPauseFrom(int index);

    /// The index of the step before which it waits; -1 when it does not.
    int waitingBefore() const;

    /// Does with the step before which it waits what \a order says, and goes on.
    void goOn(StepHost::RunOrder order);

    StepHost::Script script;
    QVector<const Operation *>
        originals; ///< The document's steps that were copied; just for telling them apart.
    int firstRow = 0; ///< Where the first of them stood.
    VariableScope variables;
    StepHost::RunResult result; ///< Once it has ended.
    std::vector<StepHost::StepResult> stepResults; ///< Of the steps that had their turn.
    int told = 0; ///< For who reports them: of how many steps the results have been told,
    int tellable = 0; ///< and of how many there are any.
    int left = 0; ///< How many processes the steps have left running.
    std::atomic<int> done{0};
    std::atomic<int> current{-1}; ///< The step that has begun last.
    QElapsedTimer clock;
    std::optional<StepHost::StartedProcesses> started{std::in_place};

signals:
    /// It waits before a step now.
    void paused();
    void finished();

private:
    void execute(const Runner &runner);
    bool hasPauses() const;
    StepHost::RunOrder orderBefore(int index);

    mutable QMutex m_mutex; ///< For what follows, up to the thread.
    QWaitCondition m_hasOrder;
    std::optional<StepHost::RunOrder> m_order;
    QSet<int> m_pauses;
    int m_pauseFrom = -1;
    int m_waitingBefore = -1;
    std::atomic<bool> m_shouldStop{false};
    std::atomic<bool> m_shouldEnd{false};
    std::unique_ptr<QThread> m_thread;
};
} // namespace Workbench
