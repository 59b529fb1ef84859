#include "ValueRef.h"

#include "Conversion.h"
#include "ValueTexts.h"

#include <QObject>

#include <algorithm>

namespace
{
const QLatin1Char referenceMark('$');

bool isMember(const QString &member, const char *name)
{
    return member.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
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
} // namespace

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

std::optional<QVariant> resolveValueAs(const QString &text, VarType type, VariableScope *scope)
{
    const ValueRef ref = parseValueRef(text);
    const QVariant value = ref.isVariable ? resolveValueRef(ref, scope) : QVariant(ref.literal);
    if (!value.isValid())
        return std::nullopt;
    bool accepted = false;
    const QVariant converted = convertToVarType(value, type, &accepted);
    return accepted ? std::make_optional(converted) : std::nullopt;
}

std::optional<int> resolveInteger(const QString &text, VariableScope *scope)
{
    const std::optional<QVariant> digits = resolveValueAs(text, VarType::String, scope);
    int number = 0;
    return digits && parseIndexText(digits->toString(), number) ? std::make_optional(number) : std::nullopt;
}
