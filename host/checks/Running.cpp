#include "CheckContext.h"
#include "CheckSteps.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

namespace StepHost
{
namespace
{
void leaveEmpty(VariableScope &) { }

void checkNoScope(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const WarningCapture log;
        step.doOperation();
        changeSettings(step);
        const QVariantList settings = readSettings(step);
        step.doOperation();
        expectSettings(step, settings, QStringLiteral("after a run without a scope"));
    });
}

void checkDetachedScope(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const WarningCapture log;
        VariableScope scope;
        fillScope(scope);
        setTexts(step, QStringLiteral("items"));
        step.setVariableScope(&scope);
        step.setVariableScope(nullptr);
        const QByteArray before = snapshotOf(scope);
        step.doOperation();
        if (snapshotOf(scope) != before)
            fail(QStringLiteral("a run changes a scope that is no longer attached"));
    });
}

void checkEmptyScope(CheckContext &context)
{
    forEachRun(context, leaveEmpty, [](const StepRun &) {});
}

void checkWrongTypes(CheckContext &context)
{
    forEachRun(context, fillScope, [](const StepRun &) {});
}

void checkHostileSettings(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const WarningCapture log;
        const auto run = [&step] {
            VariableScope scope;
            fillScope(scope);
            step.setVariableScope(&scope);
            step.doOperation();
            step.setVariableScope(nullptr);
        };
        for (const QString &text : hostileTexts()) {
            setTexts(step, text);
            run();
        }
        setTexts(step, QStringLiteral("items"));
        for (const int number : edgeIntegers()) {
            setIntegers(step, number);
            run();
        }
    });
}

void checkSkippedWritesNothing(CheckContext &context)
{
    for (const auto &prepare : {leaveEmpty, fillScope}) {
        forEachRun(context, prepare, [](const StepRun &run) {
            if (!run.warnings.isEmpty() && run.after != run.before)
                fail(QStringLiteral("with %1 the step warns %2 and changes variables all the same")
                         .arg(settingsText(run), quoted(run.warnings.first())));
        });
    }
}

void checkOneWarning(CheckContext &context)
{
    for (const auto &prepare : {leaveEmpty, fillScope}) {
        forEachRun(context, prepare, [](const StepRun &run) {
            if (run.warnings.size() > 1)
                fail(QStringLiteral("with %1 one run writes %2 warning lines")
                         .arg(settingsText(run), QString::number(run.warnings.size())));
        });
    }
}

void checkSettingsKept(CheckContext &context)
{
    forEachRun(context, fillScope, [](const StepRun &run) {
        expectSettings(run.step, run.settings, QStringLiteral("after a run"));
    });
}

void checkTwice(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const WarningCapture log;
        setTexts(step, QStringLiteral("items"));
        const QByteArray record = recordOf(step);
        VariableScope scope;
        fillScope(scope);
        step.setVariableScope(&scope);
        step.doOperation();
        step.doOperation();
        step.setVariableScope(nullptr);
        if (recordOf(step) != record)
            fail(QStringLiteral("after two runs the step saves another record"));
    });
}

void checkHeldValues(CheckContext &context)
{
    VariableScope held;
    QByteArray before;
    const auto prepare = [&](VariableScope &scope) {
        fillScope(scope);
        held = scope; // Shares the values with the scope that the step works on.
        before = snapshotOf(held);
    };
    forEachRun(context, prepare, [&](const StepRun &run) {
        if (snapshotOf(held) != before)
            fail(QStringLiteral("with %1 the step changes a value that is held elsewhere")
                     .arg(settingsText(run)));
    });
}
} // namespace

QVector<PluginCheck> runningChecks()
{
    return {
        {"running.no-scope", "A step without a scope can be run.", checkNoScope},
        {"running.detached-scope", "A step does not touch a scope that was taken away.", checkDetachedScope},
        {"running.empty-scope", "A step can be run where none of its variables exists.", checkEmptyScope},
        {"running.wrong-types", "A step can be run on variables of every type.", checkWrongTypes},
        {"running.hostile-settings", "A step can be run with whatever its settings hold.",
         checkHostileSettings},
        {"running.skipped-writes-nothing", "A step that warns leaves every variable as it was.",
         checkSkippedWritesNothing},
        {"running.one-warning", "A run writes at most one warning line.", checkOneWarning},
        {"running.settings-kept", "Running a step changes none of its settings.", checkSettingsKept},
        {"running.twice", "A step can be run again, and is what it was before.", checkTwice},
        {"running.held-values", "A value that is held elsewhere does not change.", checkHeldValues},
    };
}
} // namespace StepHost
