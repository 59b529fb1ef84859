#include "StepProblems.h"

#include "References.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"
#include "hostapi/Operation.h"

#include <QHash>

namespace StepHost
{
namespace
{
constexpr int maxNameLength = 60;

QString shownName(const QString &name)
{
    return inOneLine(bounded(name, maxNameLength));
}
// The name of the variable that `value` stands for, without the mark, when there is none of that name but could be one.
QString missingVariable(const SettingSchema &setting, const QString &value, const VariableScope &variables)
{
    if (setting.editor == EditorKind::Choice || setting.editor == EditorKind::Default)
        return QString();
    const bool isName = setting.editor == EditorKind::VariableName;
    const QString name = isName ? withoutMark(value) : unknownVariable(value.trimmed(), variables);
    return isVariableName(name) && !variables.contains(referenceTo(name)) ? name : QString();
}

// What the variable that `value` stands for has to be; a text where anything will do.
VarType wantedType(const SettingSchema &setting, const QString &value)
{
    switch (setting.editor) {
    case EditorKind::VariableName:
        return setting.variableKind == VariableKind::List ? VarType::List : VarType::String;
    case EditorKind::IntegerOrVariable:
        return memberOf(value).isEmpty() ? VarType::Int : VarType::List;
    default:
        return memberOf(value).isEmpty() ? VarType::String : VarType::List;
    }
}
} // namespace

QString StepProblems::textOfSetting(const SettingSchema &setting, const QVariant &value,
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

std::optional<StepProblem> StepProblems::ofSetting(const SettingSchema &setting, const QVariant &value,
                                                   const VariableScope &variables)
{
    StepProblem problem;
    problem.text = textOfSetting(setting, value, variables);
    if (problem.text.isEmpty())
        return std::nullopt;
    problem.property = setting.property;
    problem.missing = missingVariable(setting, value.toString(), variables);
    if (!problem.missing.isEmpty())
        problem.missingType = wantedType(setting, value.toString().trimmed());
    return problem;
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
    if (!unknown.isEmpty())
        return tr("There is no variable “%1” yet.").arg(shownName(unknown));
    if (hasUnknownMember(text, variables))
        return tr("The variable has no “%1”, so this is empty.").arg(shownName(memberOf(text)));
    return QString();
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
        std::optional<StepProblem> problem =
            ofSetting(setting, step.property(setting.property.toUtf8().constData()), variables);
        if (!problem)
            continue;
        const QString label = inOneLine(setting.label.isEmpty() ? setting.property : setting.label);
        problem->text = tr("%1: %2").arg(label, problem->text);
        problems.append(*problem);
    }
    return problems;
}

QVector<ScriptProblem> StepProblems::ofScript(const Script &script)
{
    VariableScope variables;
    declareVariables(script, variables);
    QHash<const QMetaObject *, EditorSchema> schemas;
    QVector<ScriptProblem> problems;
    for (int row = 0; row < int(script.steps.size()); ++row) {
        const ScriptStep &step = script.steps[std::size_t(row)];
        if (!step.enabled)
            continue;
        const QMetaObject *type = step.operation->metaObject();
        if (!schemas.contains(type))
            schemas.insert(type, readEditorSchema(*type));
        const QVector<StepProblem> ofStep = StepProblems::ofStep(*step.operation, schemas[type], variables);
        for (const StepProblem &problem : ofStep)
            problems.append({row, problem});
    }
    return problems;
}
} // namespace StepHost
