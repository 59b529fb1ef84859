#include "Lists.h"

#include <QDate>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace
{
constexpr int valuesOfManyEqual = 20;
constexpr int largestSeries = 10000000;

QVariant makeElement(Kind kind, int value, int position)
{
    switch (kind) {
    case Kind::Int:
        return value;
    case Kind::Double:
        return value * 1.25 + 0.1;
    case Kind::Text:
        return QStringLiteral("item %1").arg(value, 8, 10, QLatin1Char('0'));
    case Kind::File:
        return QStringLiteral("row-%1.csv").arg(value, 8, 10, QLatin1Char('0'));
    case Kind::Mixed:
        return makeElement(position % 2 == 0 ? Kind::Int : Kind::Text, value, position);
    case Kind::Nested:
        return QVariantList{value};
    case Kind::Row:
        return QVariantList{value, makeElement(Kind::Text, value, position),
                            makeElement(Kind::Double, value, position)};
    case Kind::Long:
        return Q_INT64_C(4000000000) + value;
    case Kind::Date:
        return QDate::fromJulianDay(2400000 + value);
    case Kind::Invalid:
        break;
    }
    return QVariant();
}
} // namespace

const char *nameOf(Kind kind)
{
    static const char *const names[] = {"int",    "double", "text", "file", "mixed",
                                        "nested", "row",    "long", "date", "invalid"};
    return names[static_cast<int>(kind)];
}

const char *nameOf(Shape shape)
{
    static const char *const names[] = {"random", "sorted", "reversed", "many equal"};
    return names[static_cast<int>(shape)];
}

QVariantList makeList(Kind kind, Shape shape, int size, int series)
{
    std::vector<int> values(static_cast<std::size_t>(size));
    std::iota(values.begin(), values.end(), 0);
    if (shape == Shape::ManyEqual)
        std::transform(values.begin(), values.end(), values.begin(),
                       [](int value) { return value % valuesOfManyEqual; });
    if (shape == Shape::Random || shape == Shape::ManyEqual)
        std::shuffle(values.begin(), values.end(), std::mt19937(1));
    if (shape == Shape::Reversed)
        std::reverse(values.begin(), values.end());

    QVariantList list;
    list.reserve(size);
    for (const int value : values)
        list.append(makeElement(kind, value + series * largestSeries, list.size()));
    return list;
}
