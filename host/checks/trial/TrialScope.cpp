#include "TrialScope.h"

#include "SettingValues.h"
#include "host/values/VariableName.h"

#include <QStringList>

#include <limits>

namespace StepHost
{
namespace
{
struct Values
{
    QVariantList items;
    QVariantList more;
    QVariantList others;
    int number = 2;
    double real = 2.5;
    QString text;
    bool flag = true;
};

QVariantList deepList(int depth)
{
    QVariantList list{1};
    for (int i = 0; i < depth; ++i)
        list = QVariantList{QVariant(list)};
    return list;
}

Values valuesOf(ScopeContent content)
{
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    switch (content) {
    case ScopeContent::Mixed:
        return {{3, 1.5, b, true, QVariantList{1, 2}, QVariant(), 3},
                {b, 3, 7},
                {7, b},
                2,
                2.5,
                QStringLiteral("some text"),
                true};
    case ScopeContent::Numbers:
        return {{3, 1, 2, 3, 10}, {2, 3, 4}, {5, 3}, 1, 0.5, QStringLiteral("12"), true};
    case ScopeContent::Texts:
        return {{QStringLiteral("pear"), a, b, QStringLiteral("a b")},
                {b, QStringLiteral("c")},
                {a},
                1,
                1.0,
                a,
                false};
    case ScopeContent::Rows:
        return {{QVariantList{1, a}, QVariantList{2, b}},
                {QVariant(QVariantList{2, b})},
                {QVariant(QVariantList{3, a})},
                1,
                1.0,
                QStringLiteral("[1, 2]"),
                true};
    case ScopeContent::Empty:
        return {{}, {}, {}, 0, 0.0, QString(QLatin1String("")), false};
    case ScopeContent::Short:
        return {{1}, {a}, {b}, 1, 1.0, a, true};
    case ScopeContent::Odd:
        return {
            {QVariant(), QVariantMap{{a, 1}}, deepList(50), QVariantList{}, QByteArray("bytes"), QString()},
            {std::numeric_limits<double>::quiet_NaN(), QVariant(), QVariantList{QVariant()}},
            {QVariant()},
            -1,
            std::numeric_limits<double>::quiet_NaN(),
            QString(QChar(0xd800)) + QChar(0) + QStringLiteral("\r\n$x %1"),
            true};
    case ScopeContent::Extreme:
        break;
    }
    return {{std::numeric_limits<int>::max(), std::numeric_limits<int>::min(),
             std::numeric_limits<qlonglong>::min(), std::numeric_limits<double>::infinity(), -1e308,
             QString(10000, QLatin1Char('x'))},
            {std::numeric_limits<int>::min(), std::numeric_limits<qulonglong>::max()},
            {-1},
            std::numeric_limits<int>::min(),
            -1e308,
            QString(10000, QLatin1Char('9')),
            true};
}

QVariant longListElement(ScopeContent content, int position)
{
    const QVariant number = position / 3;
    const QVariant text = QString::number(position);
    switch (content) {
    case ScopeContent::Numbers:
        return number;
    case ScopeContent::Texts:
        return text;
    case ScopeContent::Rows:
        return QVariantList{number, text};
    default:
        return position % 2 == 0 ? number : text;
    }
}

void declare(VariableScope &scope, const char *name, VarType type, const QVariant &value)
{
    scope.declare(QLatin1String(name), type);
    scope.set(QLatin1String(name), value);
}

void fill(VariableScope &scope, const Values &values)
{
    declare(scope, "items", VarType::List, values.items);
    declare(scope, "more", VarType::List, values.more);
    declare(scope, "others", VarType::List, values.others);
    declare(scope, "table", VarType::Table, QVariantList{QVariant(values.items), QVariant(values.more)});
    declare(scope, "number", VarType::Int, values.number);
    declare(scope, "counter", VarType::Int, 0);
    declare(scope, "real", VarType::Double, values.real);
    declare(scope, "share", VarType::Double, 0.25);
    declare(scope, "text", VarType::String, values.text);
    declare(scope, "word", VarType::String, QStringLiteral("word"));
    declare(scope, "flag", VarType::Bool, values.flag);
    declare(scope, "state", VarType::Bool, false);
    declare(scope, "odd", VarType::List, QStringLiteral("not a list"));
}
} // namespace

const QVector<ScopeContent> &scopeContents()
{
    static const QVector<ScopeContent> contents{
        ScopeContent::Mixed, ScopeContent::Numbers, ScopeContent::Texts, ScopeContent::Rows,
        ScopeContent::Short, ScopeContent::Empty,   ScopeContent::Odd,   ScopeContent::Extreme};
    return contents;
}

QString contentName(ScopeContent content)
{
    static const char *const names[] = {"lists of mixed elements",
                                        "lists of numbers",
                                        "lists of texts",
                                        "lists of lists",
                                        "empty lists and zeros",
                                        "lists of one element",
                                        "lists of unusual elements",
                                        "extreme values"};
    return QLatin1String(names[int(content)]);
}

void fillTrialScope(VariableScope &scope, ScopeContent content)
{
    fill(scope, valuesOf(content));
}

void fillLongScope(VariableScope &scope, ScopeContent content, int length)
{
    Values values = valuesOf(content);
    values.items.clear();
    for (int i = 0; i < length; ++i)
        values.items.append(longListElement(content, i));
    values.more = values.items;
    values.others = values.items;
    fill(scope, values);
}

QMap<QString, ScopeEntry> entriesOf(const VariableScope &scope)
{
    QMap<QString, ScopeEntry> entries;
    const QStringList names = scope.names();
    for (const QString &name : names)
        entries.insert(name, {scope.typeOf(referenceTo(name)), scope.get(referenceTo(name))});
    return entries;
}

QStringList changedNames(const QMap<QString, ScopeEntry> &before, const QMap<QString, ScopeEntry> &after)
{
    QStringList names;
    for (auto it = before.begin(); it != before.end(); ++it) {
        const auto other = after.constFind(it.key());
        if (other == after.constEnd() || other->type != it->type || !isSameValue(other->value, it->value))
            names.append(it.key());
    }
    for (auto it = after.begin(); it != after.end(); ++it) {
        if (!before.contains(it.key()))
            names.append(it.key());
    }
    return names;
}
} // namespace StepHost
