#include "Script.h"

#include "host/values/QuotedText.h"

#include <algorithm>

namespace StepHost
{
namespace
{
struct TypeName
{
    VarType type;
    const char *name;
};

const TypeName typeNames[] = {
    {VarType::Int, "int"},
    {VarType::Double, "double"},
    {VarType::String, "string"},
    {VarType::Bool, "bool"},
    {VarType::List, "list"},
    {VarType::Table, "table"},
    {VarType::Undeclared, "undeclared"},
};
} // namespace

ScriptVariable *Script::findVariable(const QString &name)
{
    const QString key = withoutMark(name);
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&key](const ScriptVariable &variable) { return variable.name == key; });
    return found == variables.end() ? nullptr : &*found;
}

QString varTypeName(VarType type)
{
    for (const TypeName &entry : typeNames) {
        if (entry.type == type)
            return QLatin1String(entry.name);
    }
    return QString();
}

bool varTypeFromName(const QString &name, VarType &type)
{
    for (const TypeName &entry : typeNames) {
        if (name == QLatin1String(entry.name)) {
            type = entry.type;
            return true;
        }
    }
    return false;
}

QStringList declarableTypeNames()
{
    QStringList names;
    for (const TypeName &entry : typeNames) {
        if (entry.type != VarType::Undeclared)
            names.append(QLatin1String(entry.name));
    }
    return names;
}

QVariant emptyValueOf(VarType type)
{
    VariableScope scope;
    const QString name = QStringLiteral("value");
    scope.declare(name, type);
    return scope.get(name);
}

QString variableNameError(const QString &name)
{
    const QString key = withoutMark(name);
    if (key.isEmpty())
        return QStringLiteral("a variable's name cannot be empty");
    if (key.startsWith(QLatin1Char('$'))) {
        return QStringLiteral("the variable's name %1 has more than one \"$\" in front").arg(quoted(name));
    }
    return QString();
}

QString withoutMark(const QString &name)
{
    return name.startsWith(QLatin1Char('$')) ? name.mid(1) : name;
}

void declareVariables(const Script &script, VariableScope &scope)
{
    for (const ScriptVariable &variable : script.variables) {
        scope.declare(variable.name, variable.type);
        scope.set(variable.name, variable.value);
    }
}
} // namespace StepHost
