#include "VariableEdits.h"

#include "host/values/ItemValue.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

namespace StepHost
{
namespace
{
/// The value of \a name in \a scope under another name or type, in a scope that is being built anew.
void putVariable(VariableScope &scope, const QString &name, VarType type, const QVariant &value)
{
    const QString address = referenceTo(name);
    if (type != VarType::Undeclared)
        scope.declare(address, type);
    scope.set(address, value);
}

ItemKind itemKind(VarType type)
{
    switch (type) {
    case VarType::Int:
        return ItemKind::Int;
    case VarType::Double:
        return ItemKind::Double;
    case VarType::String:
        return ItemKind::Text;
    case VarType::Bool:
        return ItemKind::Bool;
    default:
        return ItemKind::Other;
    }
}
} // namespace

QString VariableEdits::freeName(const VariableScope &scope, const QString &pattern)
{
    QString name;
    int number = 1;
    do {
        name = pattern.arg(number++);
    } while (scope.contains(name));
    return name;
}

// The name of a new variable that `text` stands for.
Result<QString> VariableEdits::newName(const VariableScope &scope, const QString &text)
{
    const QString name = withoutMark(text.trimmed());
    if (name.isEmpty())
        return failure(tr("A variable needs a name."));
    if (!isVariableName(name))
        return failure(tr("The name of a variable cannot begin with “$”."));
    if (scope.contains(referenceTo(name)))
        return failure(tr("There is a variable “%1” already.").arg(name));
    return name;
}

Result<VariableScope> VariableEdits::add(const VariableScope &scope, const QString &name, VarType type)
{
    return newName(scope, name).map([&](const QString &added) {
        VariableScope more = scope;
        more.declare(referenceTo(added), type);
        return more;
    });
}

Result<VariableScope> VariableEdits::rename(const VariableScope &scope, const QString &from,
                                            const QString &to)
{
    if (withoutMark(to.trimmed()) == from)
        return scope;
    return newName(scope, to).map([&](const QString &added) {
        VariableScope renamed;
        const QStringList names = scope.names();
        for (const QString &name : names) {
            const QString address = referenceTo(name);
            putVariable(renamed, name == from ? added : name, scope.typeOf(address), scope.get(address));
        }
        return renamed;
    });
}

VariableScope VariableEdits::retype(VariableScope scope, const QString &name, VarType type)
{
    const QString address = referenceTo(name);
    const QVariant old = scope.get(address);
    const bool isList = ItemValue::kind(old) == ItemKind::List;
    scope.declare(address, type);
    if (type == VarType::List || type == VarType::Table) {
        if (isList && (type == VarType::List || hasShapeOf(old.toList(), type)))
            scope.set(address, old);
    } else if (!isList) {
        if (const Result<QVariant> value = ItemValue::convert(old, itemKind(type)))
            scope.set(address, *value);
    }
    return scope;
}

Result<VariableScope> VariableEdits::setText(VariableScope scope, const QString &name, const QString &text)
{
    const QString address = referenceTo(name);
    return ItemValue::parse(text, itemKind(scope.typeOf(address))).map([&](const QVariant &value) {
        scope.set(address, value);
        return scope;
    });
}
} // namespace StepHost
