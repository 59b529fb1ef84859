#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/CheckTrials.h"
#include "host/checks/trial/TrialSettings.h"
#include "host/running/Breadcrumb.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

#include <QRegularExpression>

namespace StepHost
{
namespace
{
void leaveEmpty(VariableScope &) { }

void checkNoScope(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const WarningCapture log;
        noteCall("doOperation() without a scope", &step);
        step.doOperation();
        changeSettings(step);
        const QVariantList settings = readSettings(step);
        noteCall("doOperation() without a scope", &step);
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
    forEachTrials(context, [](Operation &step, const StepTrials &trials) {
        const WarningCapture log;
        for (const Trial &trial : trials.writing) {
            applySettings(step, trial.settings);
            VariableScope scope = scopeFor(trial);
            step.setVariableScope(&scope);
            step.setVariableScope(nullptr);
            const quint64 writes = scope.writeCount();
            step.doOperation();
            if (scope.writeCount() != writes)
                fail(QStringLiteral("a run changes a scope that is no longer attached"));
        }
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
            noteCall("doOperation()", &step);
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
        if (!run.step.objectName().isEmpty() || run.step.parent())
            fail(QStringLiteral("after a run the step has an object name or a parent"));
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

bool hasTag(const QString &line)
{
    static const QRegularExpression tag(QStringLiteral("\\A\\[[^\\[\\]\\s]+\\]"));
    return tag.match(line).hasMatch();
}

void checkTag(CheckContext &context)
{
    forEachTrialRun(context, [](const Operation &step, const Trial &trial, const TrialRun &run) {
        for (const QString &warning : run.warnings) {
            if (!hasTag(warning))
                fail(QStringLiteral("with %1 the step warns %2, which does not begin with a tag in brackets")
                         .arg(trialText(step, trial), quoted(warning)));
        }
    });
}

void checkSkipIsTold(CheckContext &context)
{
    forEachTrials(context, [](Operation &step, const StepTrials &trials) {
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        for (const Trial &writing : trials.writing) {
            for (int i = 0; i < schema.settings.size(); ++i) {
                if (!namesList(schema.settings.at(i)))
                    continue;
                for (const char *name : {"missing", "number", "text"}) {
                    Trial trial = writing;
                    if (trial.variables) // What is there under these names is the script's.
                        break;
                    trial.settings[i] = QString::fromLatin1(name);
                    const TrialRun skipped = run(step, trial);
                    if (!skipped.hasWritten && skipped.warnings.size() != 1)
                        fail(QStringLiteral(
                                 "with %1 the step neither writes nor says why; one warning line is due")
                                 .arg(trialText(step, trial)));
                }
            }
        }
    });
}

void checkQuiet(CheckContext &context)
{
    forEachTrialRun(context, [](const Operation &step, const Trial &trial, const TrialRun &run) {
        if (!run.others.isEmpty())
            fail(QStringLiteral("with %1 the step writes to the log what is no warning: %2")
                     .arg(trialText(step, trial), quoted(run.others.first())));
    });
}

void checkContents(CheckContext &context)
{
    forEachTrials(context, [](Operation &step, const StepTrials &trials) {
        for (const Trial &trial : trials.writing) {
            for (const ScopeContent content : scopeContents()) {
                const Trial other{trial.settings, content};
                const TrialRun result = run(step, other);
                if (!result.warnings.isEmpty() && !changedNames(result.before, result.after).isEmpty())
                    fail(QStringLiteral("with %1 the step warns %2 and changes variables all the same")
                             .arg(trialText(step, other), quoted(result.warnings.first())));
                if (result.warnings.size() > 1)
                    fail(QStringLiteral("with %1 one run writes %2 warning lines")
                             .arg(trialText(step, other), QString::number(result.warnings.size())));
            }
        }
    });
}
// A script that crashes a step does so here, too.
void checkScripts(CheckContext &context)
{
    for (const QString &fileName : context.setup().scripts) {
        const Result<AuthorScript> author = readAuthorScript(context, fileName);
        if (!author)
            fail(author.error());
        VariableScope scope;
        declareVariables(author->script, scope);
        for (const ScriptStep &step : author->script.steps)
            runOn(*step.operation, scope);
    }
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
        {"running.tag", "A warning line begins with a tag in brackets.", checkTag},
        {"running.skip-told",
         "A step that finds no list where its settings name one says so in one warning line.",
         checkSkipIsTold},
        {"running.quiet", "A run writes nothing to the log but a warning.", checkQuiet},
        {"running.contents", "A step that can write can be run on empty, short, odd and extreme values.",
         checkContents},
        {"running.scripts", "Scripts that come with the plug-in, or are named, can be read and run.",
         checkScripts},
    };
}
} // namespace StepHost
