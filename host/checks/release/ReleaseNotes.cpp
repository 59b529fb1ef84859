#include "ReleaseNotes.h"

#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/CheckTrials.h"
#include "host/checks/trial/SettingValues.h"
#include "host/plugins/EditorSchema.h"
#include "host/running/Breadcrumb.h"
#include "host/running/RunChannel.h"
#include "host/values/QuotedText.h"

#include <QMetaEnum>

namespace StepHost
{
namespace
{
QVariant plainValue(const QMetaProperty &setting, const Operation &step)
{
    const QVariant value = setting.read(&step);
    if (setting.isEnumType())
        return value.toInt();
    return isSendable(value) ? value : QVariant();
}

QMap<int, QString> choicesOf(const QMetaProperty &setting, const SettingSchema &schema)
{
    QMap<int, QString> choices;
    if (setting.isEnumType()) {
        const QMetaEnum values = setting.enumerator();
        for (int i = 0; i < values.keyCount(); ++i)
            choices.insert(values.value(i), QString::fromUtf8(values.key(i)));
    } else if (schema.editor == EditorKind::Choice) {
        for (int i = 0; i < schema.choices.size(); ++i)
            choices.insert(i, schema.choices.at(i));
    }
    return choices;
}

ReleasedRecord releasedRecord(const Operation &step)
{
    return {recordOf(step), plainSettings(step)};
}

void addRecords(Operation &step, ReleasedStep &released)
{
    const QVariantMap byDefault = plainSettings(step);
    released.records.append(releasedRecord(step));
    changeSettings(step);
    released.records.append(releasedRecord(step));
    applyPlainSettings(step, byDefault);
}

// Runs that come out otherwise the second time are nothing that a later release could keep.
void addRuns(CheckContext &context, Operation &step, ReleasedStep &released)
{
    const StepTrials trials = findTrials(step, context.seed());
    for (const Trial &trial : trials.writing) {
        const QString result = resultText(run(step, trial));
        if (resultText(run(step, trial)) != result)
            continue;
        released.runs.append({trialText(step, trial), plainSettings(step), trial.content, result});
        released.records.append(releasedRecord(step));
    }
}
} // namespace

QVariantMap plainSettings(const Operation &step)
{
    QVariantMap values;
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings) {
        const QVariant value = plainValue(setting, step);
        if (value.isValid())
            values.insert(QString::fromUtf8(setting.name()), value);
    }
    return values;
}

void applyPlainSettings(Operation &step, const QVariantMap &settings)
{
    const QVector<QMetaProperty> own = settingsOf(step);
    for (const QMetaProperty &setting : own) {
        const QVariant value = settings.value(QString::fromUtf8(setting.name()));
        if (value.isValid())
            setting.write(&step, value);
    }
}

ReleasedStep describedStep(const Operation &step)
{
    ReleasedStep released{step.typeId(), {}, {}, {}};
    const EditorSchema schema = readEditorSchema(*step.metaObject());
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (int i = 0; i < settings.size(); ++i) {
        const QMetaProperty &setting = settings.at(i);
        released.settings.append({QString::fromUtf8(setting.name()), QString::fromUtf8(setting.typeName()),
                                  plainValue(setting, step), choicesOf(setting, schema.settings.at(i))});
    }
    return released;
}

Result<ReleasedScript> scriptRun(CheckContext &context, const QString &fileName)
{
    const Result<AuthorScript> author = readAuthorScript(context, fileName);
    if (!author)
        return failure(author.error());
    ReleasedScript released{fileName, {}, {}};
    VariableScope scope;
    declareVariables(author->script, scope);
    int number = 0;
    for (const ScriptStep &step : author->script.steps) {
        ++number;
        if (!step.enabled)
            continue;
        released.steps.append(
            QStringLiteral("step %1 (%2)").arg(QString::number(number), inOneLine(step.operation->typeId())));
        released.results.append(resultText(runOn(*step.operation, scope)));
    }
    return released;
}

void writeReleaseNotes(CheckContext &context, const QString &fileName)
{
    Release release;
    const auto write = [&] {
        if (!writeRelease(fileName, release))
            fail(QStringLiteral("what it tells cannot be written to %1").arg(quoted(fileName)));
    };
    release.pluginId = context.plugin().pluginId();
    release.version = context.plugin().version();
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        release.steps.append(describedStep(*step));
    write();
    for (int i = 0; i < steps.size(); ++i) {
        noteCall("saveOperation()", steps.at(i));
        addRecords(*steps.at(i), release.steps[i]);
        write();
    }
    for (int i = 0; i < steps.size(); ++i) {
        addRuns(context, *steps.at(i), release.steps[i]);
        write();
    }
    for (const QString &script : context.setup().scripts) {
        // One that it refuses is made for the newer release.
        if (const Result<ReleasedScript> ran = scriptRun(context, script)) {
            release.scripts.append(*ran);
            write();
        }
    }
}
} // namespace StepHost
