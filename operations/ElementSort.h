#pragma once

#include <QVariant>

/// The order of elements: numbers and booleans by their numeric value; any other pair by text, code unit
/// by code unit, where a value without a text form counts as an empty text.
///
/// This is no strict weak ordering: with numbers and texts in one list, or a NaN, it can go in circles.
bool elementLess(const QVariant &left, const QVariant &right);

/// Sorts \a list ascending by elementLess(). Elements that compare equal keep their order. Stays within
/// the list and ends after O(n log n) comparisons whatever the relation answers.
///
/// In a list of one kind, `int`, `double` or text, each comparison reads the two stored values in place:
/// the answers are those of elementLess(), without its questions about kinds and its conversions.
void sortList(QVariantList &list);
