#include "VariableUses.h"

#include "References.h"
#include "host/plugins/EditorSchema.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"
#include "hostapi/Operation.h"

#include <QHash>

namespace StepHost
{
namespace
{
// The name of the variable that `value` names as `setting`; empty when it names none.
QString variableIn(const SettingSchema &setting, const QVariant &value)
{
    if (value.userType() != QMetaType::QString)
        return QString();
    switch (setting.editor) {
    case EditorKind::VariableName:
        return withoutMark(value.toString());
    case EditorKind::VariableReference:
    case EditorKind::IntegerOrVariable:
        return withoutMark(variableOf(value.toString()));
    case EditorKind::Choice:
    case EditorKind::Default:
        break;
    }
    return QString();
}

// `text`, which names the variable `from`, with the name `to` in its place.
QString withName(const QString &text, const QString &from, const QString &to)
{
    const int marks = hasMark(text) ? text.indexOf(from, 1) : 0;
    return text.left(marks) + to + text.mid(marks + from.size());
}

QVariant valueOf(const Operation &step, const QString &property)
{
    return step.property(property.toUtf8().constData());
}

/// The editors of classes, each read once.
class Schemas
{
public:
    const EditorSchema &of(const Operation &step)
    {
        const QMetaObject *type = step.metaObject();
        const auto known = m_schemas.constFind(type);
        return known != m_schemas.constEnd() ? *known : *m_schemas.insert(type, readEditorSchema(*type));
    }

private:
    QHash<const QMetaObject *, EditorSchema> m_schemas;
};
} // namespace

QVector<VariableUse> VariableUses::inStep(const Operation &step, const EditorSchema &schema, int row)
{
    QVector<VariableUse> uses;
    for (const SettingSchema &setting : schema.settings) {
        const QString name = variableIn(setting, valueOf(step, setting.property));
        if (!name.isEmpty())
            uses.append({row, setting.property, name, isVisible(setting, step)});
    }
    return uses;
}

QVector<VariableUse> VariableUses::inSteps(const std::vector<const Operation *> &steps)
{
    Schemas schemas;
    QVector<VariableUse> uses;
    for (std::size_t row = 0; row < steps.size(); ++row)
        uses += inStep(*steps[row], schemas.of(*steps[row]), int(row));
    return uses;
}

QVector<VariableUse> VariableUses::ofVariable(const std::vector<const Operation *> &steps,
                                              const QString &name)
{
    QVector<VariableUse> uses;
    const QVector<VariableUse> all = inSteps(steps);
    for (const VariableUse &use : all) {
        if (use.variable == name)
            uses.append(use);
    }
    return uses;
}

QStringList VariableUses::namesIn(const std::vector<const Operation *> &steps)
{
    QStringList names;
    const QVector<VariableUse> uses = inSteps(steps);
    for (const VariableUse &use : uses)
        names.append(use.variable);
    names.removeDuplicates();
    return names;
}

Result<QVector<SettingChange>> VariableUses::renamed(const std::vector<const Operation *> &steps,
                                                     const QString &from, const QString &to)
{
    Schemas schemas;
    QVector<SettingChange> changes;
    const QVector<VariableUse> uses = ofVariable(steps, from);
    for (const VariableUse &use : uses) {
        const Operation &step = *steps[std::size_t(use.row)];
        const QString before = valueOf(step, use.property).toString();
        const QString after = withName(before, from, to);
        const SettingSchema &setting = *schemas.of(step).find(use.property);
        const bool isSameMember =
            setting.editor == EditorKind::VariableName || memberOf(after) == memberOf(before);
        if (variableIn(setting, after) != to || !isSameMember)
            return failure(tr("Step %1 uses the variable as %2, which cannot be said of one called %3.")
                               .arg(QString::number(use.row + 1), quoted(before), quoted(to)));
        changes.append({use.row, use.property, after});
    }
    return changes;
}

std::vector<const Operation *> stepsOf(const Script &script)
{
    std::vector<const Operation *> steps;
    steps.reserve(script.steps.size());
    for (const ScriptStep &step : script.steps)
        steps.push_back(step.operation.get());
    return steps;
}
} // namespace StepHost
