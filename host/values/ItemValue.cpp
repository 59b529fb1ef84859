#include "ItemValue.h"

#include "JsonValue.h"
#include "QuotedText.h"
#include "ValueReader.h"

#include <algorithm>
#include <cmath>

namespace StepHost
{
namespace
{
constexpr int summaryLength = 120;

QString jsonText(const QVariant &value)
{
    return QString::fromUtf8(valueToJson(value).value_or(QByteArray()));
}

QString doubleText(double number)
{
    // As JSON a whole number keeps its ".0": 1 is an integer, 1.0 is not. It has no plain form for these two.
    return std::isfinite(number) ? jsonText(number) : QString::number(number);
}

QString oneLine(const QString &text)
{
    QString line = text.left(summaryLength + 1);
    if (line.size() > summaryLength)
        line.replace(summaryLength - 1, 2, QChar(0x2026));
    line.replace(QLatin1Char('\n'), QChar(0x21b5));
    line.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return inOneLine(line);
}

void appendSummary(QString &line, const QVariant &value);

void appendListSummary(QString &line, const QVariantList &list)
{
    line.append(QLatin1Char('['));
    for (int i = 0; i < list.size(); ++i) {
        if (i > 0)
            line.append(QLatin1String(", "));
        // The bound also holds for lists nested without end: every bracket makes the line longer.
        if (line.size() >= summaryLength) {
            line.append(QChar(0x2026));
            return;
        }
        appendSummary(line, list.at(i));
    }
    line.append(QLatin1Char(']'));
}

void appendSummary(QString &line, const QVariant &value)
{
    switch (ItemValue::kind(value)) {
    case ItemKind::Empty:
        line.append(QLatin1String("null"));
        break;
    case ItemKind::Double:
        line.append(doubleText(value.toDouble()));
        break;
    case ItemKind::Text:
        line.append(oneLine(value.toString()));
        break;
    case ItemKind::List:
        appendListSummary(line, value.toList());
        break;
    default:
        line.append(oneLine(value.toString()));
        break;
    }
}

int kindOrder(ItemKind kind)
{
    switch (kind) {
    case ItemKind::Empty:
        return 0;
    case ItemKind::Bool:
        return 1;
    case ItemKind::Int:
    case ItemKind::Double:
        return 2;
    case ItemKind::Text:
        return 3;
    case ItemKind::List:
        return 4;
    case ItemKind::Other:
        break;
    }
    return 5;
}
} // namespace

ItemOrder::ItemOrder(const QVariant &value) : m_kind(kindOrder(ItemValue::kind(value)))
{
    switch (ItemValue::kind(value)) {
    case ItemKind::Text:
        m_text = value.toString();
        break;
    case ItemKind::List:
        m_number = value.toList().size();
        break;
    default:
        m_number = value.toDouble();
        break;
    }
}

bool ItemOrder::operator<(const ItemOrder &other) const
{
    if (m_kind != other.m_kind)
        return m_kind < other.m_kind;
    if (m_number != other.m_number) {
        const bool isOtherNaN = std::isnan(other.m_number);
        return std::isnan(m_number) ? false : isOtherNaN || m_number < other.m_number;
    }
    return m_text < other.m_text;
}

Result<QVariant> ItemValue::parseList(const QString &text)
{
    const Result<QVariant> value = valueFromJson(text.toUtf8());
    if (!value)
        return failure(
            tr("“%1” is not a list such as [1, \"a\", true]: %2").arg(oneLine(text), value.error()));
    if (kind(*value) != ItemKind::List)
        return failure(tr("“%1” is not a list such as [1, \"a\", true]").arg(oneLine(text)));
    return value;
}

QVector<ItemKind> ItemValue::editableKinds()
{
    return {ItemKind::Text, ItemKind::Int, ItemKind::Double, ItemKind::Bool, ItemKind::List, ItemKind::Empty};
}

ItemKind ItemValue::kind(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return ItemKind::Empty;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return ItemKind::Int;
    case QMetaType::Double:
    case QMetaType::Float:
        return ItemKind::Double;
    case QMetaType::QString:
        return ItemKind::Text;
    case QMetaType::Bool:
        return ItemKind::Bool;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return ItemKind::List;
    default:
        return ItemKind::Other;
    }
}

QString ItemValue::editText(const QVariant &value)
{
    switch (kind(value)) {
    case ItemKind::Double:
        return doubleText(value.toDouble());
    case ItemKind::List:
        return jsonText(value.toList());
    default:
        return value.toString();
    }
}

QString ItemValue::summary(const QVariant &value)
{
    if (kind(value) == ItemKind::Empty)
        return QString();
    QString line;
    appendSummary(line, value);
    return line;
}

Result<QVariant> ItemValue::parse(const QString &text, ItemKind kind)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    switch (kind) {
    case ItemKind::Empty:
        return QVariant();
    case ItemKind::Int: {
        const qlonglong number = trimmed.toLongLong(&ok);
        const int narrow = int(number);
        if (ok)
            return narrow == number ? QVariant(narrow) : QVariant(number);
        return failure(tr("“%1” is not an integer between -9223372036854775808 and 9223372036854775807")
                           .arg(oneLine(text)));
    }
    case ItemKind::Double: {
        const double number = trimmed.toDouble(&ok);
        if (ok)
            return number;
        return failure(tr("“%1” is not a number such as 2.5 or 1e3").arg(oneLine(text)));
    }
    case ItemKind::Text:
        return text;
    case ItemKind::Bool: {
        const QString word = trimmed.toLower();
        const bool yes = word == QLatin1String("true");
        if (yes || word == QLatin1String("false"))
            return yes;
        return failure(tr("“%1” is neither true nor false").arg(oneLine(text)));
    }
    case ItemKind::List:
        return parseList(trimmed);
    case ItemKind::Other:
        break;
    }
    return failure(tr("a value of this type cannot be written as text"));
}

Result<QVariant> ItemValue::convert(const QVariant &from, ItemKind to)
{
    const ItemKind present = kind(from);
    if (present == to)
        return from;
    if (to == ItemKind::Int && present == ItemKind::Double) {
        const double number = from.toDouble();
        if (std::trunc(number) != number || std::abs(number) > 9007199254740992.0)
            return failure(tr("“%1” is not a whole number").arg(doubleText(number)));
        return parse(QString::number(qlonglong(number)), to);
    }
    if (present == ItemKind::Bool && (to == ItemKind::Int || to == ItemKind::Double))
        return parse(QString::number(int(from.toBool())), to);
    if (to == ItemKind::List)
        return QVariantList{from};
    return parse(editText(from), to);
}

bool ItemValue::same(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() == QMetaType::Double) {
        const double x = a.toDouble();
        const double y = b.toDouble();
        return x == y || (std::isnan(x) && std::isnan(y));
    }
    if (a.userType() != QMetaType::QVariantList)
        return a == b;
    const QVariantList x = a.toList();
    const QVariantList y = b.toList();
    return x.isSharedWith(y) || std::equal(x.cbegin(), x.cend(), y.cbegin(), y.cend(), same);
}
} // namespace StepHost
