#include "ScriptRunner.h"

#include "WarningCapture.h"
#include "host/plugins/StepTexts.h"
#include "host/values/ErrorTexts.h"

#include <algorithm>
#include <exception>
#include <new>

namespace StepHost
{
namespace
{
void runStep(Operation &operation, VariableScope &scope, StepResult &result)
{
    const quint64 writesBefore = scope.writeCount();
    operation.setVariableScope(&scope);
    try {
        operation.doOperation();
        result.outcome = scope.writeCount() != writesBefore ? StepOutcome::Wrote : StepOutcome::Skipped;
    } catch (const std::exception &exception) {
        result.outcome = StepOutcome::Failed;
        result.failure = takenText(QString::fromUtf8(exception.what()));
        result.ranOutOfMemory = dynamic_cast<const std::bad_alloc *>(&exception) != nullptr;
    } catch (...) {
        result.outcome = StepOutcome::Failed;
        result.failure = ErrorTexts::tr("an exception of unknown type");
    }
    operation.setVariableScope(nullptr);
}
} // namespace

QString outcomeName(StepOutcome outcome)
{
    switch (outcome) {
    case StepOutcome::NotRun:
        return QStringLiteral("not run");
    case StepOutcome::Disabled:
        return QStringLiteral("disabled");
    case StepOutcome::Wrote:
        return QStringLiteral("wrote");
    case StepOutcome::Skipped:
        return QStringLiteral("skipped");
    case StepOutcome::Failed:
        return QStringLiteral("failed");
    }
    return QString();
}

int RunResult::count(StepOutcome outcome) const
{
    return int(std::count_if(steps.begin(), steps.end(),
                             [outcome](const StepResult &step) { return step.outcome == outcome; }));
}

namespace
{
RunOrder orderBefore(int index, VariableScope &scope, const RunObserver &observer)
{
    if (!observer.before || (observer.wantsToWait && !observer.wantsToWait()))
        return RunOrder::GoOn;
    return observer.before(index, scope);
}

// Runs `step`, whose turn it is.
StepResult resultOf(const ScriptStep &step, int index, VariableScope &scope, const RunObserver &observer,
                    WarningCapture &capture)
{
    StepResult result;
    if (observer.starting)
        observer.starting(index);
    runStep(*step.operation, scope, result);
    result.warnings = capture.takeLines();
    return result;
}
} // namespace

RunResult runScript(const Script &script, VariableScope &scope, const RunObserver &observer)
{
    RunResult result;
    result.steps.resize(script.steps.size());
    const int total = int(script.steps.size());
    WarningCapture capture;
    for (int i = 0; i < total; ++i) {
        if (observer.shouldStop && observer.shouldStop()) {
            result.end = RunEnd::Stopped;
            break;
        }
        const ScriptStep &step = script.steps[i];
        StepResult &stepResult = result.steps[i];
        const RunOrder order = step.enabled ? orderBefore(i, scope, observer) : RunOrder::GoOn;
        if (order == RunOrder::Stop) {
            result.end = RunEnd::Stopped;
            break;
        }
        if (!step.enabled)
            stepResult.outcome = StepOutcome::Disabled;
        else if (order == RunOrder::GoOn)
            stepResult = resultOf(step, i, scope, observer, capture);
        if (observer.finished)
            observer.finished(i, stepResult);
        if (observer.progress)
            observer.progress(i + 1, total);
        if (stepResult.outcome == StepOutcome::Failed) {
            result.end = RunEnd::StepFailed;
            break;
        }
    }
    return result;
}
} // namespace StepHost
