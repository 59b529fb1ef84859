#include "ElementSort.h"

#include "MergeSort.h"

#include <QString>

#include <algorithm>

namespace
{
bool isNumeric(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::Double:
        return true; // as canConvert() says, for less
    case QMetaType::QString:
        return false;
    default:
        return value.canConvert(QMetaType::Double);
    }
}

bool allOfKind(const QVariantList &list, int kind)
{
    return std::all_of(list.cbegin(), list.cend(),
                       [kind](const QVariant &element) { return element.userType() == kind; });
}

template<typename T>
void sortStored(QVariantList &list)
{
    mergeSort(
        list.begin(), list.end(),
        [](const QVariant &element) { return static_cast<const T *>(element.constData()); },
        [](const T *left, const T *right) { return *left < *right; });
}

void sortAny(QVariantList &list)
{
    mergeSort(
        list.begin(), list.end(), [](const QVariant &element) { return &element; },
        [](const QVariant *left, const QVariant *right) { return elementLess(*left, *right); });
}
} // namespace

bool elementLess(const QVariant &left, const QVariant &right)
{
    if (isNumeric(left) && isNumeric(right))
        return left.toDouble() < right.toDouble();
    return left.toString() < right.toString();
}

void sortList(QVariantList &list)
{
    if (allOfKind(list, QMetaType::Int))
        sortStored<int>(list);
    else if (allOfKind(list, QMetaType::Double))
        sortStored<double>(list);
    else if (allOfKind(list, QMetaType::QString))
        sortStored<QString>(list);
    else
        sortAny(list);
}
