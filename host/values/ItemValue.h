#pragma once

#include "Result.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>
#include <QVector>

namespace StepHost
{
/// The kinds of value that an item of a list can have, as a user tells them apart.
enum class ItemKind {
    Empty, ///< An invalid value.
    Int, ///< Any integer type.
    Double, ///< `double` and `float`.
    Text, ///< `QString`
    Bool, ///< `bool`
    List, ///< `QVariantList` and `QStringList`
    Other, ///< Anything else; shown, but not edited.
};

/// What an item is put in order by: its kind, then numbers by value (NaN last), texts by code unit, lists by
/// length. A strict weak order. Made once for each item, since comparing QVariants takes its time.
class ItemOrder
{
public:
    explicit ItemOrder(const QVariant &value);

    bool operator<(const ItemOrder &other) const;

private:
    int m_kind;
    double m_number = 0.0;
    QString m_text;
};

/// Texts for the items of lists and tables, and items from texts.
class ItemValue
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::ItemValue)

public:
    /// The kinds that a user can choose, in the order in which they are offered.
    static QVector<ItemKind> editableKinds();

    /// The kind of \a value.
    static ItemKind kind(const QVariant &value);

    /// The whole of \a value as a text that parse() reads back: numbers in full precision, a list in
    /// brackets as JSON.
    static QString editText(const QVariant &value);

    /// \a value in one short line. Costs no more than the line is long, however large the value is.
    static QString summary(const QVariant &value);

    /// The value of kind \a kind that \a text stands for, or what would be right instead.
    static Result<QVariant> parse(const QString &text, ItemKind kind);

    /// Like parse(), for a value instead of its text: true becomes 1, 2.0 becomes 2, `"7"` becomes 7.
    static Result<QVariant> convert(const QVariant &from, ItemKind to);

    /// Whether \a a and \a b are the same value of the same type: 1 and 1.0 are not, NaN and NaN are. Lists
    /// that share their items are compared in no time.
    static bool same(const QVariant &a, const QVariant &b);

private:
    static Result<QVariant> parseList(const QString &text);
};
} // namespace StepHost
