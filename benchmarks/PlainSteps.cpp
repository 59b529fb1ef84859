#include "PlainSteps.h"

#include <algorithm>

namespace
{
bool equalsAny(const QVariant &candidate, const QVariantList &others)
{
    for (const QVariant &other : others) {
        if (candidate == other)
            return true;
    }
    return false;
}

bool isNumeric(const QVariant &value)
{
    return value.canConvert(QMetaType::Double) && value.type() != QVariant::String;
}

bool isLess(const QVariant &left, const QVariant &right)
{
    if (isNumeric(left) && isNumeric(right))
        return left.toDouble() < right.toDouble();
    return left.toString() < right.toString();
}
} // namespace

void PlainSteps::add(QVariantList &list, const QVariant &item)
{
    list.insert(list.size(), item);
}

void PlainSteps::removeAt(QVariantList &list, int position)
{
    list.removeAt(position);
}

void PlainSteps::removeValue(QVariantList &list, const QVariant &value)
{
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i) == value) {
            list.removeAt(i);
            return;
        }
    }
}

void PlainSteps::sort(QVariantList &list)
{
    std::stable_sort(list.begin(), list.end(), isLess);
}

void PlainSteps::reverse(QVariantList &list)
{
    std::reverse(list.begin(), list.end());
}

QVariantList PlainSteps::dedup(const QVariantList &list)
{
    QVariantList kept;
    kept.reserve(list.size());
    for (const QVariant &element : list) {
        if (!equalsAny(element, kept))
            kept.append(element);
    }
    return kept;
}

QVariantList PlainSteps::merge(const QVariantList &a, const QVariantList &b)
{
    QVariantList all = a;
    for (const QVariant &element : b)
        all.append(element);
    return all;
}

QVariantList PlainSteps::intersect(const QVariantList &a, const QVariantList &b)
{
    QVariantList common;
    for (const QVariant &element : a) {
        if (equalsAny(element, b) && !equalsAny(element, common))
            common.append(element);
    }
    return common;
}

QVariantList PlainSteps::subtract(const QVariantList &a, const QVariantList &b)
{
    QVariantList rest;
    for (const QVariant &element : a) {
        if (!equalsAny(element, b))
            rest.append(element);
    }
    return rest;
}
