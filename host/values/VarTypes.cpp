#include "VarTypes.h"

#include "ErrorTexts.h"

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

constexpr TypeName typeNames[] = {
    {VarType::Int, "int"},
    {VarType::Double, "double"},
    {VarType::String, "string"},
    {VarType::Bool, "bool"},
    {VarType::List, "list"},
    {VarType::Table, "table"},
    {VarType::Undeclared, "undeclared"},
};
} // namespace

QString varTypeName(VarType type)
{
    for (const TypeName &entry : typeNames) {
        if (entry.type == type)
            return QLatin1String(entry.name);
    }
    return QString();
}

std::optional<VarType> varTypeFromName(const QString &name)
{
    for (const TypeName &entry : typeNames) {
        if (name == QLatin1String(entry.name))
            return entry.type;
    }
    return std::nullopt;
}

QVector<VarType> declarableTypes()
{
    QVector<VarType> types;
    for (const TypeName &entry : typeNames) {
        if (entry.type != VarType::Undeclared)
            types.append(entry.type);
    }
    return types;
}

QStringList declarableTypeNames()
{
    QStringList names;
    const QVector<VarType> types = declarableTypes();
    for (const VarType type : types)
        names.append(varTypeName(type));
    return names;
}

QVariant emptyValueOf(VarType type)
{
    VariableScope scope;
    const QString name = QStringLiteral("value");
    scope.declare(name, type);
    return scope.get(name);
}

VarType typeOfValue(const QVariant &value)
{
    VariableScope scope;
    const QString name = QStringLiteral("value");
    scope.set(name, value);
    return scope.typeOf(name);
}

bool hasShapeOf(const QVariant &value, VarType type)
{
    const int valueType = value.userType();
    switch (type) {
    case VarType::Undeclared:
        return true;
    case VarType::Int:
        return valueType == QMetaType::Int || valueType == QMetaType::LongLong
            || valueType == QMetaType::ULongLong;
    case VarType::Double:
        return valueType == QMetaType::Double;
    case VarType::String:
        return valueType == QMetaType::QString;
    case VarType::Bool:
        return valueType == QMetaType::Bool;
    case VarType::List:
        return valueType == QMetaType::QVariantList;
    case VarType::Table:
        break;
    }
    if (valueType != QMetaType::QVariantList)
        return false;
    const QVariantList rows = value.toList();
    return std::all_of(rows.begin(), rows.end(), [](const QVariant &row) {
        return row.userType() == QMetaType::QVariantList || row.userType() == QMetaType::QStringList;
    });
}
QString expectedForm(VarType type)
{
    switch (type) {
    case VarType::Int:
        return ErrorTexts::tr("an integer");
    case VarType::Double:
        return ErrorTexts::tr("a number");
    case VarType::String:
        return ErrorTexts::tr("a string");
    case VarType::Bool:
        return ErrorTexts::tr("true or false");
    case VarType::List:
        return ErrorTexts::tr("an array");
    case VarType::Table:
        return ErrorTexts::tr("an array of arrays");
    case VarType::Undeclared:
        break;
    }
    return ErrorTexts::tr("a value");
}

} // namespace StepHost
