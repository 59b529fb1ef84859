#include "StepProblems.h"

#include "References.h"
#include "host/values/QuotedText.h"
#include "hostapi/Operation.h"

namespace StepHost
{
namespace
{
constexpr int maxNameLength = 60;

QString shownName(const QString &name)
{
    return inOneLine(bounded(name, maxNameLength));
}
} // namespace

QString StepProblems::ofSetting(const SettingSchema &setting, const QVariant &value,
                                const VariableScope &variables)
{
    switch (setting.editor) {
    case EditorKind::VariableName:
        return ofVariableName(value.toString(), setting.variableKind, variables);
    case EditorKind::IntegerOrVariable:
        return ofInteger(value.toString().trimmed(), variables);
    case EditorKind::VariableReference:
        return ofReference(value.toString(), variables);
    case EditorKind::Choice:
        return ofChoice(setting, value.toInt());
    case EditorKind::Default:
        break;
    }
    return QString();
}

QString StepProblems::ofVariableName(const QString &name, VariableKind kind, const VariableScope &variables)
{
    if (name.isEmpty())
        return tr("No variable is chosen.");
    if (!variables.contains(name))
        return tr("There is no variable “%1” yet.").arg(shownName(name));
    const VarType type = variables.typeOf(name);
    // Scalars are what is offered where a value is put; a step may put it into any other variable, too.
    if (kind == VariableKind::List && type != VarType::Undeclared && !isOfKind(type, kind))
        return tr("“%1” is not a list.").arg(shownName(name));
    return QString();
}

QString StepProblems::ofInteger(const QString &text, const VariableScope &variables)
{
    bool isInteger = false;
    text.toInt(&isInteger);
    if (text.isEmpty() || isInteger)
        return QString();
    if (!isReference(text))
        return tr("Not an integer. The step may skip its work.");
    const QString unknown = ofReference(text, variables);
    return unknown.isEmpty() ? tr("A reference. Not every step looks one up here.") : unknown;
}

QString StepProblems::ofReference(const QString &text, const VariableScope &variables)
{
    const QString unknown = unknownVariable(text, variables);
    return unknown.isEmpty() ? QString() : tr("There is no variable “%1” yet.").arg(shownName(unknown));
}

QString StepProblems::ofChoice(const SettingSchema &setting, int index)
{
    return index < 0 || index >= setting.choices.size()
        ? tr("The present value, %1, is none of the choices.").arg(index)
        : QString();
}

QVector<StepProblem> StepProblems::ofStep(const Operation &step, const VariableScope &variables)
{
    return ofStep(step, readEditorSchema(*step.metaObject()), variables);
}

QVector<StepProblem> StepProblems::ofStep(const Operation &step, const EditorSchema &schema,
                                          const VariableScope &variables)
{
    QVector<StepProblem> problems;
    for (const SettingSchema &setting : schema.settings) {
        if (!isVisible(setting, step))
            continue;
        const QString text =
            ofSetting(setting, step.property(setting.property.toUtf8().constData()), variables);
        const QString label = inOneLine(setting.label.isEmpty() ? setting.property : setting.label);
        if (!text.isEmpty())
            problems.append({setting.property, tr("%1: %2").arg(label, text)});
    }
    return problems;
}
} // namespace StepHost
