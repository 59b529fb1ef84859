#include "VariableEdits.h"

#include "host/values/ItemValue.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

#include <algorithm>

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

bool isTable(const QVariantList &list)
{
    return std::all_of(list.cbegin(), list.cend(),
                       [](const QVariant &row) { return ItemValue::kind(row) == ItemKind::List; });
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

QVector<VarType> VariableEdits::types()
{
    return declarableTypes();
}

QString VariableEdits::freeName(const VariableScope &scope, const QString &pattern)
{
    QString name;
    int number = 1;
    do {
        name = pattern.arg(number++);
    } while (scope.contains(name));
    return name;
}

bool VariableEdits::checkNewName(const VariableScope &scope, const QString &name, QString &error)
{
    if (name.isEmpty()) {
        error = tr("A variable needs a name.");
        return false;
    }
    if (!isVariableName(name)) {
        error = tr("The name of a variable cannot begin with “$”.");
        return false;
    }
    if (scope.contains(referenceTo(name))) {
        error = tr("There is a variable “%1” already.").arg(name);
        return false;
    }
    return true;
}

bool VariableEdits::add(VariableScope &scope, const QString &name, VarType type, QString &error)
{
    const QString bare = withoutMark(name.trimmed());
    if (!checkNewName(scope, bare, error))
        return false;
    return scope.declare(referenceTo(bare), type);
}

bool VariableEdits::rename(VariableScope &scope, const QString &from, const QString &to, QString &error)
{
    const QString bare = withoutMark(to.trimmed());
    if (bare == from)
        return true;
    if (!checkNewName(scope, bare, error))
        return false;
    VariableScope renamed;
    const QStringList names = scope.names();
    for (const QString &name : names) {
        const QString address = referenceTo(name);
        putVariable(renamed, name == from ? bare : name, scope.typeOf(address), scope.get(address));
    }
    scope = renamed;
    return true;
}

void VariableEdits::retype(VariableScope &scope, const QString &name, VarType type)
{
    const QString address = referenceTo(name);
    const QVariant old = scope.get(address);
    scope.declare(address, type);
    QVariant value;
    QString error;
    if (type == VarType::List || type == VarType::Table) {
        if (ItemValue::kind(old) == ItemKind::List && (type == VarType::List || isTable(old.toList())))
            scope.set(address, old);
    } else if (ItemValue::kind(old) != ItemKind::List
               && ItemValue::convert(old, itemKind(type), value, error)) {
        scope.set(address, value);
    }
}

bool VariableEdits::setText(VariableScope &scope, const QString &name, const QString &text, QString &error)
{
    const QString address = referenceTo(name);
    QVariant value;
    if (!ItemValue::parse(text, itemKind(scope.typeOf(address)), value, error))
        return false;
    scope.set(address, value);
    return true;
}
} // namespace StepHost
