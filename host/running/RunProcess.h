#pragma once

#include "ScriptRunner.h"
#include "host/values/Result.h"

#include <QCoreApplication>

namespace StepHost
{
class StepCatalogue;

/// Runs in a process of their own, which is this program started again: what a step does to its process is done to none
/// of the caller's. The program's main() has to ask isRunWorker() first.
class RunProcess
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::RunProcess)

public:
    /// Runs \a script on \a scope as runScript() does, with steps that the process makes of the plug-ins of
    /// \a catalogue: each with its record and its settings; what a step keeps beside these, it does not have there.
    /// Blocks until the run is over, while \a observer is told of it and asked, all in the thread of the caller.
    ///
    /// A step that crashes, hangs until RunObserver::shouldEnd, or ends its process is StepOutcome::Failed with a text
    /// that says how. The results of the steps before it, and their variables, are there all the same. A value that
    /// cannot be handed over is left out, and the step has a warning that says so.
    static RunResult run(const Script &script, VariableScope &scope, const StepCatalogue &catalogue,
                         const RunObserver &observer = RunObserver());

    /// Whether the plug-in \a fileName can be loaded, a step of each of its types be made, and its texts. Refused is one
    /// that ends the process in that, or takes longer than \a timeLimit milliseconds, with what it was at. What else is
    /// wrong with a plug-in is left to StepCatalogue::addPlugin(). Returns what the user should know of one that is not
    /// refused, such as steps that throw and what was printed.
    static Result<QStringList> probe(const QString &fileName, int timeLimit = 30000);

private:
    class Session;
};
} // namespace StepHost
