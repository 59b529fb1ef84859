#include "Conversion.h"

#include "ValueTexts.h"

#include <cmath>
#include <limits>

namespace
{
// A number out of int's range, and NaN, give the value that the processor's own conversion gives;
// the cast alone would be undefined.
int truncatedToInt(double number)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    const double whole = std::trunc(number);
    return whole >= lowest && whole <= highest ? static_cast<int>(whole) : lowest;
}

QVariant emptyValue(VarType type)
{
    switch (type) {
    case VarType::Int:
        return 0;
    case VarType::Double:
        return 0.0;
    case VarType::String:
        return QString();
    case VarType::Bool:
        return false;
    case VarType::List:
    case VarType::Table:
        return QVariantList();
    case VarType::Undeclared:
        break;
    }
    return QVariant();
}

bool isEmptyInput(const QVariant &value)
{
    return value.isNull() || (value.type() == QVariant::String && value.toString().isEmpty());
}

QVariant convertToInt(const QVariant &value, bool &accepted)
{
    if (value.type() == QVariant::String) {
        const QString text = value.toString();
        int number = text.toInt(&accepted);
        if (!accepted)
            number = truncatedToInt(text.toDouble(&accepted));
        return accepted ? number : 0;
    }
    accepted = value.canConvert(QMetaType::LongLong);
    return accepted ? value.toInt() : 0;
}

QVariant convertToDouble(const QVariant &value, bool &accepted)
{
    if (value.type() == QVariant::String) {
        const double number = value.toString().toDouble(&accepted);
        return accepted ? number : 0.0;
    }
    accepted = value.canConvert(QMetaType::Double);
    return accepted ? value.toDouble() : 0.0;
}

QVariant convertToString(const QVariant &value, bool &accepted)
{
    accepted = value.type() != QVariant::List;
    return accepted ? value.toString() : QString();
}

QVariant convertToBool(const QVariant &value, bool &accepted)
{
    if (value.type() == QVariant::String) {
        bool truth = false;
        accepted = parseBoolText(value.toString(), &truth);
        return truth;
    }
    accepted = value.canConvert(QMetaType::Double);
    return accepted && value.toDouble() != 0.0;
}

QVariant convertToList(const QVariant &value, bool &accepted)
{
    if (convertsToList(value))
        return value;
    QVariantList list;
    const QString text = value.type() == QVariant::String ? value.toString() : QString();
    accepted = text.startsWith(QLatin1Char('[')) && parseListLiteral(text, &list);
    return list;
}

QVariant convertToTable(const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        if (!list.isEmpty() && list.first().userType() == QMetaType::QVariantList)
            return value;
        return QVariantList{value};
    }
    return value.type() == QVariant::String ? parseTableJson(value.toString()) : QVariantList();
}
} // namespace

QVariant convertToVarType(const QVariant &value, VarType type, bool *ok)
{
    bool accepted = true;
    QVariant result = value;
    if (isEmptyInput(value)) {
        result = emptyValue(type);
    } else {
        switch (type) {
        case VarType::Int:
            result = convertToInt(value, accepted);
            break;
        case VarType::Double:
            result = convertToDouble(value, accepted);
            break;
        case VarType::String:
            result = convertToString(value, accepted);
            break;
        case VarType::Bool:
            result = convertToBool(value, accepted);
            break;
        case VarType::List:
            result = convertToList(value, accepted);
            break;
        case VarType::Table:
            result = convertToTable(value);
            break;
        case VarType::Undeclared:
            break;
        }
    }
    if (ok)
        *ok = accepted;
    return result;
}

bool convertsToList(const QVariant &value)
{
    return value.canConvert(QMetaType::QVariantList);
}

QVariantList toListValue(const QVariant &value)
{
    return convertsToList(value) ? value.value<QVariantList>() : QVariantList();
}
