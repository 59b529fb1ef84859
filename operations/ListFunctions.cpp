#include "ListFunctions.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageLogger>
#include <QObject>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
const QLatin1Char referenceMark('$');

bool convertsToList(const QVariant &value)
{
    return value.canConvert(QMetaType::QVariantList);
}

QVariantList toListValue(const QVariant &value)
{
    return convertsToList(value) ? value.value<QVariantList>() : QVariantList();
}

bool isMember(const QString &member, const char *name)
{
    return member.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

QVariant literalValue(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? QVariant(number) : QVariant(text);
}

QVariant columnCount(const QVariantList &rows)
{
    if (rows.isEmpty() || !convertsToList(rows.first()))
        return QVariant();
    int columns = 0;
    for (const QVariant &row : rows)
        columns = std::max(columns, toListValue(row).size());
    return columns;
}

QVariant objectProperty(const QVariant &value, const QString &name)
{
    if (!value.canConvert(QMetaType::QObjectStar))
        return QVariant();
    const QObject *object = value.value<QObject *>();
    return object ? object->property(name.toUtf8().constData()) : QVariant();
}

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

void warnSkipped(const char *lead, const QString &text, const char *trail)
{
    // The qWarning() macro would add file, line and function in debug builds.
    QMessageLogger(nullptr, 0, nullptr).warning() << lead << text << trail;
}

bool readListVariable(VariableScope *scope, const QString &name, QVariantList &out)
{
    if (!scope || name.isEmpty())
        return false;
    if (scope->typeOf(name) != VarType::List) {
        warnSkipped("[ListOp] 变量", name, "不是列表类型，已跳过");
        return false;
    }
    out = toListValue(scope->get(name));
    return true;
}

bool readListPair(VariableScope *scope, const QString &nameA, const QString &nameB, const QString &target,
                  const char *targetWarning, ListPair &out)
{
    if (!readListVariable(scope, nameA, out.a))
        return false;
    if (scope->typeOf(target) != VarType::List) {
        warnSkipped(targetWarning, target, "未声明为列表，已跳过");
        return false;
    }
    return readListVariable(scope, nameB, out.b);
}

void writeListVariable(VariableScope *scope, const QString &name, const QVariantList &list)
{
    if (scope)
        scope->set(name, QVariant(list));
}

QString displayVarName(const QString &name)
{
    return name.isEmpty() || name.startsWith(referenceMark) ? name : referenceMark + name;
}

ValueRef parseValueRef(const QString &text)
{
    ValueRef ref;
    if (text.size() < 2 || !text.startsWith(referenceMark)) {
        ref.literal = text;
        return ref;
    }
    ref.isVariable = true;
    ref.variableName = text.mid(1);
    const int dot = ref.variableName.indexOf(QLatin1Char('.'));
    if (dot > 0) {
        ref.member = ref.variableName.mid(dot + 1);
        ref.variableName.truncate(dot);
    }
    return ref;
}

QVariant resolveValueRef(const ValueRef &ref, VariableScope *scope)
{
    if (!ref.isVariable)
        return literalValue(ref.literal);
    const QVariant value = scope ? scope->get(ref.variableName) : QVariant();
    if (ref.member.isEmpty())
        return value;
    if (convertsToList(value)) {
        if (isMember(ref.member, "Items"))
            return value;
        const QVariantList list = toListValue(value);
        if (isMember(ref.member, "Rows") || isMember(ref.member, "Count"))
            return list.size();
        if (isMember(ref.member, "Columns"))
            return columnCount(list);
    }
    return objectProperty(value, ref.member);
}

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

bool parseBoolText(const QString &text, bool *out)
{
    static const char *const trueTexts[] = {"true", "1", "yes", "是", "y"};
    static const char *const falseTexts[] = {"false", "0", "no", "否", "n", ""};

    const QString word = text.trimmed().toLower();
    const auto isWord = [&word](const char *candidate) { return word == QString::fromUtf8(candidate); };
    const bool isTrue = std::any_of(std::begin(trueTexts), std::end(trueTexts), isWord);
    if (!isTrue && std::none_of(std::begin(falseTexts), std::end(falseTexts), isWord))
        return false;
    if (out)
        *out = isTrue;
    return true;
}

bool parseListLiteral(const QString &text, QVariantList *out)
{
    const QString trimmed = text.trimmed();
    if (!trimmed.startsWith(QLatin1Char('[')) || !trimmed.endsWith(QLatin1Char(']')))
        return false;
    QVariantList list;
    const QString inner = trimmed.mid(1, trimmed.size() - 2);
    const auto parts = inner.splitRef(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QStringRef &part : parts) {
        const QStringRef item = part.trimmed();
        if (!item.isEmpty())
            list.append(literalValue(item.toString()));
    }
    if (out)
        *out = list;
    return true;
}

QVariantList parseTableJson(const QString &text)
{
    QVariantList rows;
    const QJsonArray table = QJsonDocument::fromJson(text.trimmed().toUtf8()).array();
    for (const QJsonValue &line : table) {
        if (!line.isArray())
            return QVariantList();
        QVariantList row;
        const QJsonArray cells = line.toArray();
        for (const QJsonValue &cell : cells)
            row.append(QVariant(cell.toString()));
        rows.append(QVariant(row));
    }
    return rows;
}

bool parseIndexText(const QString &text, int &out)
{
    bool isNumber = false;
    out = text.trimmed().toInt(&isNumber);
    return isNumber;
}

void reverseList(QVariantList &list)
{
    for (int first = 0, last = list.size() - 1; first < last; ++first, --last)
        list.swapItemsAt(first, last);
}
