// Checks of what runs come to: the variables that a step writes, and how long it takes.

#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/CheckTrials.h"
#include "host/checks/trial/SettingValues.h"
#include "host/checks/trial/TrialSettings.h"
#include "host/checks/trial/Trials.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"

#include <QElapsedTimer>

#include <algorithm>

namespace StepHost
{
namespace
{
constexpr int allowedTime = 2000;

QString triedText(const Operation &step)
{
    const EditorSchema schema = readEditorSchema(*step.metaObject());
    const QVector<QMetaProperty> settings = settingsOf(step);
    QStringList texts;
    for (int i = 0; i < settings.size(); ++i) {
        QStringList values;
        const QVariantList fitting =
            trialValues(settings.at(i), schema.settings.at(i), settings.at(i).read(&step)).fitting;
        const auto some = fitting.mid(0, 4);
        for (const QVariant &value : some)
            values.append(shownValue(value));
        texts.append(QString::fromUtf8(settings.at(i).name()) + QLatin1String(" = ")
                     + values.join(QLatin1String(" or ")));
    }
    return texts.isEmpty() ? QStringLiteral("it has no settings") : texts.join(QLatin1String(", "));
}

// A step without one cannot be told which variable to write.
bool hasTextSetting(const Operation &step)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    return std::any_of(settings.begin(), settings.end(), [](const QMetaProperty &setting) {
        return setting.userType() == QMetaType::QString || setting.userType() == QMetaType::QStringList;
    });
}

void checkSucceeds(CheckContext &context)
{
    forEachTrials(context, [](Operation &step, const StepTrials &trials) {
        if (trials.writing.isEmpty() && hasTextSetting(step))
            warn(QStringLiteral("no run of %1 wrote a variable, so what a run writes was not looked at; "
                                "tried were, among "
                                "others, %2; --script FILE adds runs of your own")
                     .arg(QString::number(trials.runs), triedText(step)));
    });
}

void checkShape(CheckContext &context)
{
    forEachTrialRun(context, [](const Operation &step, const Trial &trial, const TrialRun &run) {
        const QStringList names = changedNames(run.before, run.after);
        for (const QString &name : names) {
            const ScopeEntry entry = run.after.value(name);
            if (!hasShapeOf(entry.value, entry.type))
                fail(QStringLiteral("with %1 it writes %2 into %3, a variable of the type %4")
                         .arg(trialText(step, trial), shownValue(entry.value), quoted(name),
                              varTypeName(entry.type)));
        }
    });
}

// All texts that `value` is made of.
void collectTexts(const QVariant &value, QStringList &texts)
{
    if (value.userType() == QMetaType::QVariantList || value.userType() == QMetaType::QStringList) {
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            collectTexts(element, texts);
    } else if (value.userType() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it) {
            texts.append(it.key());
            collectTexts(it.value(), texts);
        }
    } else {
        texts.append(value.toString());
    }
}

// A setting may hold more than a name, such as several names or a text with names in it.
bool isNamed(const QString &name, const QVariantList &settings)
{
    QStringList texts;
    collectTexts(settings, texts);
    return std::any_of(texts.begin(), texts.end(),
                       [&name](const QString &text) { return text.contains(name); });
}

void checkNamedVariables(CheckContext &context)
{
    forEachTrialRun(context, [](const Operation &step, const Trial &trial, const TrialRun &run) {
        const QStringList names = changedNames(run.before, run.after);
        for (const QString &name : names) {
            if (!isNamed(name, trial.settings))
                fail(QStringLiteral("with %1 it changes %2, which no setting names")
                         .arg(trialText(step, trial), quoted(name)));
            if (!run.after.contains(name))
                fail(QStringLiteral("with %1 it removes the variable %2")
                         .arg(trialText(step, trial), quoted(name)));
            if (run.before.contains(name) && run.before.value(name).type != run.after.value(name).type)
                fail(QStringLiteral("with %1 it gives the variable %2 the type %3 instead of %4")
                         .arg(trialText(step, trial), quoted(name), varTypeName(run.after.value(name).type),
                              varTypeName(run.before.value(name).type)));
        }
    });
}

// Fails when `second` came to something else than `first`.
void expectSameRun(const Operation &step, const Trial &trial, const TrialRun &first, const TrialRun &second,
                   const char *when)
{
    const QStringList names = changedNames(first.after, second.after);
    if (!names.isEmpty())
        fail(QStringLiteral("with %1 the variable %2 becomes %3, and %4 it becomes %5")
                 .arg(trialText(step, trial), quoted(names.first()),
                      shownValue(first.after.value(names.first()).value), QLatin1String(when),
                      shownValue(second.after.value(names.first()).value)));
    if (first.hasWritten != second.hasWritten || first.warnings != second.warnings)
        fail(QStringLiteral("with %1 the step %2, and %3 it %4")
                 .arg(trialText(step, trial),
                      first.hasWritten ? QStringLiteral("writes") : QStringLiteral("does not write"),
                      QLatin1String(when),
                      second.hasWritten ? QStringLiteral("writes")
                                        : QStringLiteral("does not write, or warns otherwise")));
}

void checkCarriesNothingOver(CheckContext &context)
{
    forEachTrials(context, [&context](Operation &step, const StepTrials &trials) {
        const QVector<Trial> all = trials.writing + trials.skipping;
        QVector<TrialRun> firstRuns;
        for (const Trial &trial : all) {
            Operation &fresh = context.cloneOf(step);
            firstRuns.append(run(fresh, trial));
            expectSameRun(step, trial, firstRuns.constLast(), run(fresh, trial), "in the second run");
        }
        for (int i = all.size() - 1; i >= 0; --i)
            expectSameRun(step, all.at(i), firstRuns.at(i), run(step, all.at(i)), "after other runs");
    });
}

void checkLastScope(CheckContext &context)
{
    forEachTrials(context, [](Operation &step, const StepTrials &trials) {
        for (const Trial &trial : trials.writing) {
            applySettings(step, trial.settings);
            VariableScope first = scopeFor(trial);
            const TrialRun alone = runOn(step, first);
            VariableScope left;
            fillTrialScope(left, ScopeContent::Short);
            const quint64 writes = left.writeCount();
            step.setVariableScope(&left);
            VariableScope last = scopeFor(trial);
            const TrialRun run = runOn(step, last);
            if (left.writeCount() != writes)
                fail(
                    QStringLiteral("with %1 the step writes to a scope that was attached before the last one")
                        .arg(trialText(step, trial)));
            expectSameRun(step, trial, alone, run, "with another scope attached before");
        }
    });
}

// How long `step` takes with `trial` on the variables of `filled`, in milliseconds.
qint64 timeOn(Operation &step, const Trial &trial, const VariableScope &filled)
{
    applySettings(step, trial.settings);
    VariableScope scope = filled;
    step.setVariableScope(&scope);
    const WarningCapture log(WarningCapture::AllLevels);
    QElapsedTimer timer;
    timer.start();
    step.doOperation();
    const qint64 elapsed = timer.elapsed();
    step.setVariableScope(nullptr);
    return elapsed;
}

/// Scopes with long lists, each of which takes longer to make than most steps take for a run on it.
class LongScopes
{
public:
    const VariableScope &scope(ScopeContent content, int length)
    {
        const auto key = qMakePair(int(content), length);
        if (!m_scopes.contains(key))
            fillLongScope(m_scopes[key], content, length);
        return m_scopes[key];
    }

private:
    QMap<QPair<int, int>, VariableScope> m_scopes;
};

void checkTime(CheckContext &context)
{
    // Many steps that are just fast enough must not look like one that hangs.
    constexpr int patience = 8000;
    QElapsedTimer whole;
    whole.start();
    LongScopes scopes;
    forEachTrials(context, [&](Operation &step, const StepTrials &trials) {
        const QVector<Trial> some = trials.writing.mid(0, 12);
        for (const Trial &trial : some) {
            if (whole.elapsed() > patience)
                return;
            const qint64 elapsed = timeOn(step, trial, scopes.scope(trial.content, 1000));
            if (elapsed > allowedTime)
                fail(
                    QStringLiteral(
                        "with %1 a run on lists of 1,000 elements takes %2 ms, at most %3 are allowed")
                        .arg(trialText(step, trial), QString::number(elapsed), QString::number(allowedTime)));
        }
    });
}

// A step whose time grows with the square of the length may be sound; one that is slow already is not put to more.
void checkLongLists(CheckContext &context)
{
    constexpr int most = 150; // Milliseconds.
    LongScopes scopes;
    forEachTrials(context, [&scopes](Operation &step, const StepTrials &trials) {
        const QVector<Trial> some = trials.writing.mid(0, 2);
        for (const Trial &trial : some) {
            for (const int length : {1000, 4000, 16000, 100000}) {
                if (timeOn(step, trial, scopes.scope(trial.content, length)) > most)
                    break;
            }
        }
    });
}

void checkIdleCalls(CheckContext &context)
{
    forEachTrials(context, [&context](Operation &step, const StepTrials &trials) {
        const QVariantList settings =
            trials.writing.isEmpty() ? readSettings(step) : trials.writing.first().settings;
        VariableScope scope;
        fillTrialScope(scope, ScopeContent::Mixed);
        const auto untouched = [&, writes = scope.writeCount(), before = entriesOf(scope)](const char *call) {
            if (scope.writeCount() != writes || !changedNames(before, entriesOf(scope)).isEmpty())
                fail(QStringLiteral("%1 with a scope attached changes variables").arg(QLatin1String(call)));
        };
        step.setVariableScope(&scope);
        untouched("setVariableScope()");
        applySettings(step, settings);
        untouched("editing");
        const QByteArray record = recordOf(step);
        untouched("saveOperation()");
        loadRecord(step, record);
        untouched("loadOperation()");
        step.toString();
        step.description();
        step.icon();
        step.typeName();
        untouched("the making of texts");
        Operation &copy = context.cloneOf(step);
        untouched("clone()");
        delete &copy;
        untouched("deleting a clone");
        step.setVariableScope(nullptr);
        untouched("taking the scope away");
    });
}

void tellRun(CheckContext &context, const Operation &step, const QString &with, const TrialRun &run)
{
    context.tell(
        QStringLiteral("what %1 writes with %2").arg(QString::fromUtf8(step.metaObject()->className()), with),
        resultText(run));
}

void checkFreshProcess(CheckContext &context)
{
    // The other process has done other runs before.
    if (context.setup().isElsewhere)
        context.forEachStep([&context](Operation &step) { findTrials(step, context.seed() + 1); });
    forEachTrialRun(context, [&context](const Operation &step, const Trial &trial, const TrialRun &run) {
        tellRun(context, step, trialText(step, trial), run);
    });
    // An order that differs shows in many elements.
    constexpr int manyElements = 50;
    forEachTrials(context, [&context](Operation &step, const StepTrials &trials) {
        for (const Trial &trial : trials.writing) {
            applySettings(step, trial.settings);
            VariableScope scope;
            fillLongScope(scope, trial.content, manyElements);
            const QString with =
                trialText(step, trial) + QStringLiteral(", of %1 elements").arg(manyElements);
            tellRun(context, step, with, runOn(step, scope));
        }
    });
}
} // namespace

QVector<PluginCheck> resultChecks()
{
    return {
        {"running.succeeds", "A step can be made to write a variable, so that runs can be checked.",
         checkSucceeds},
        {"running.result-shape", "What a step writes has the shape of its variable's type.", checkShape},
        {"running.named-variables",
         "A step changes only variables that its settings name, and none of their types.",
         checkNamedVariables},
        {"running.carries-nothing-over",
         "The same settings and variables give the same result, whatever ran before.",
         checkCarriesNothingOver},
        {"running.fresh-process", "The same settings and variables give the same result in every process.",
         checkFreshProcess, CheckWorlds::Elsewhere},
        {"running.last-scope", "A step works on the scope that was attached last.", checkLastScope},
        {"running.time", "A run on lists of 1,000 elements takes at most 2 s.", checkTime},
        {"running.long-lists", "A step can be run on lists of 100,000 elements.", checkLongLists,
         CheckWorlds::One, nullptr, true},
        {"running.idle-calls", "Editing, saving, loading, describing and cloning change no variable.",
         checkIdleCalls},
    };
}
} // namespace StepHost
