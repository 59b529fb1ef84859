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

template<typename T>
struct StoredLess
{
    bool operator()(const QVariant &left, const QVariant &right) const
    {
        return *static_cast<const T *>(left.constData()) < *static_cast<const T *>(right.constData());
    }
};

bool allOfKind(const QVariantList &list, int kind)
{
    return std::all_of(list.cbegin(), list.cend(),
                       [kind](const QVariant &element) { return element.userType() == kind; });
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
        mergeSort(list.begin(), list.end(), StoredLess<int>());
    else if (allOfKind(list, QMetaType::Double))
        mergeSort(list.begin(), list.end(), StoredLess<double>());
    else if (allOfKind(list, QMetaType::QString))
        mergeSort(list.begin(), list.end(), StoredLess<QString>());
    else
        mergeSort(list.begin(), list.end(), elementLess);
}
