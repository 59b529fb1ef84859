#pragma once

#include "host/scripts/Script.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace StepHost
{
/// What became of a step.
enum class StepOutcome {
    NotRun, ///< The run ended before it, or passed it over.
    Disabled, ///< It is not enabled.
    Wrote, ///< It wrote a variable.
    Skipped, ///< It ran and wrote nothing.
    Failed, ///< It threw an exception, or its process ended in it. That ended the run.
};

/// The name of \a outcome in reports: "wrote", "skipped", "disabled", "not run", "failed".
QString outcomeName(StepOutcome outcome);

/// What became of a step, and what it said.
struct StepResult
{
    StepOutcome outcome = StepOutcome::NotRun;
    QStringList warnings; ///< The lines that it wrote on Qt's warning log.
    QString failure; ///< What a failed step threw, or how it ended its process.
    bool ranOutOfMemory = false; ///< Whether that was `std::bad_alloc`.
};

/// How a run ended.
enum class RunEnd {
    Completed, ///< All steps had their turn.
    Stopped, ///< The caller asked to stop.
    StepFailed, ///< A step threw an exception, or ended the process of the run.
    NotRun, ///< RunProcess could not begin; RunResult::error says why.
};

/// What became of a run: one result for each step of the script.
struct RunResult
{
    RunEnd end = RunEnd::Completed;
    std::vector<StepResult> steps;
    QString error; ///< Why there was no run.
    QByteArray
        printed; ///< What RunProcess had printed by the plug-ins; of more than 10,000 bytes only the first.

    /// How many steps have \a outcome.
    int count(StepOutcome outcome) const;
};

/// What a run that waited before a step does next.
enum class RunOrder {
    GoOn, ///< Runs the step.
    PassOver, ///< Leaves the step out this time.
    Stop, ///< Ends the run.
};

/// What a run tells its caller, and asks it.
struct RunObserver
{
    /// Called before each enabled step runs, with its index.
    std::function<void(int index)> starting;
    /// Called after each step, also one that is not enabled, with its index and what became of it.
    std::function<void(int index, const StepResult &result)> finished;
    /// Called after each step with the number of steps that had their turn, and of all steps.
    std::function<void(int done, int total)> progress;
    /// Called before each step; true ends the run.
    std::function<bool()> shouldStop;
    /// Called before each enabled step, with its index and the variables as they are then, which it may change. The run
    /// waits until it returns.
    std::function<RunOrder(int index, VariableScope &variables)> before;
    /// Whether `before` is to be called; without this it always is. RunProcess asks again and again until that is so, and
    /// notices it a moment later.
    std::function<bool()> wantsToWait;
    /// True ends the run at once, in the middle of a step. Only RunProcess asks, again and again, from the thread that
    /// called it.
    std::function<bool()> shouldEnd;
};

/// Runs the enabled steps of \a script, one after the other, on \a scope.
///
/// While it runs, lines that this thread writes on Qt's warning log go to the step's result instead of the
/// log; all other messages go where they went before. A step that throws ends the run; the variables stay
/// as they were when it threw. After the run no step has a scope attached. Runs may go on in several threads
/// at once, each on a script and a scope of its own.
RunResult runScript(const Script &script, VariableScope &scope, const RunObserver &observer = RunObserver());
} // namespace StepHost
