#include "ScriptMerge.h"

#include "VariableUses.h"
#include "host/values/ItemValue.h"
#include "host/values/VariableName.h"
#include "hostapi/Operation.h"

#include <QSet>

namespace StepHost
{
namespace
{
bool isPresent(const ScriptVariable &variable, const VariableScope &variables)
{
    const QString reference = referenceTo(variable.name);
    return variables.contains(reference) && variables.typeOf(reference) == variable.type
        && ItemValue::same(variables.get(reference), variable.value);
}

bool clashes(const ScriptVariable &variable, const VariableScope &variables)
{
    return variables.contains(referenceTo(variable.name)) && !isPresent(variable, variables);
}

// `name` with the lowest number from 2 on that makes it one that is not among `taken`, which then has it.
QString newName(const QString &name, QSet<QString> &taken)
{
    QString numbered;
    int number = 2;
    do {
        numbered = name + QString::number(number++);
    } while (taken.contains(numbered));
    taken.insert(numbered);
    return numbered;
}

QSet<QString> namesOf(const Script &incoming, const VariableScope &variables)
{
    QStringList names = variables.names() + VariableUses::namesIn(stepsOf(incoming));
    for (const ScriptVariable &variable : incoming.variables)
        names.append(variable.name);
    return QSet<QString>(names.cbegin(), names.cend());
}
} // namespace

QStringList clashingVariables(const Script &incoming, const VariableScope &variables)
{
    QStringList names;
    for (const ScriptVariable &variable : incoming.variables) {
        if (clashes(variable, variables))
            names.append(variable.name);
    }
    return names;
}

Result<VariableScope> mergeVariables(Script &incoming, const VariableScope &variables, Clash clash)
{
    VariableScope merged = variables;
    QSet<QString> taken = namesOf(incoming, variables);
    QVector<SettingChange> changes;
    for (const ScriptVariable &variable : incoming.variables) {
        QString name = variable.name;
        if (clashes(variable, variables)) {
            if (clash == Clash::UsePresent)
                continue;
            name = newName(variable.name, taken);
            const auto renamed = VariableUses::renamed(stepsOf(incoming), variable.name, name);
            if (!renamed)
                return failure(renamed.error());
            changes += *renamed;
        }
        merged.declare(referenceTo(name), variable.type);
        merged.set(referenceTo(name), variable.value);
    }
    for (const SettingChange &change : qAsConst(changes))
        incoming.steps[std::size_t(change.row)].operation->setProperty(change.property.toUtf8().constData(),
                                                                       change.value);
    return merged;
}
} // namespace StepHost
