#pragma once

#include <QVariant>

/// What the elements of a list are.
enum class Kind {
    Int,
    Double,
    Text,
    File, ///< Texts that all begin and end alike.
    Mixed, ///< Integers and texts in turn.
    Nested, ///< Lists of one integer.
    Row, ///< Lists of an integer, a text and a double.
    Long, ///< Integers of 64 bits.
    Date,
    Invalid,
};

/// How the elements of a list differ from each other, and in which order they stand.
enum class Shape {
    Random, ///< All different, in no order.
    Sorted, ///< All different, in ascending order.
    Reversed, ///< All different, in descending order.
    ManyEqual, ///< Only some values, each many times, in no order.
};

const char *nameOf(Kind kind);
const char *nameOf(Shape shape);

/// A list of \a size elements, the same at every call. Lists with different \a series share no value, except
/// those of Kind::Invalid, whose elements are all alike.
QVariantList makeList(Kind kind, Shape shape, int size, int series = 0);
