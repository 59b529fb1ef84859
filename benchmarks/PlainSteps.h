#pragma once

#include <QVariant>

/// What the steps do to their lists, written as their rules read: `QVariant::operator==` and the sort
/// relation, question by question. The steps are measured against these.
namespace PlainSteps
{
void add(QVariantList &list, const QVariant &item);
void removeAt(QVariantList &list, int position);
void removeValue(QVariantList &list, const QVariant &value);
void sort(QVariantList &list);
void reverse(QVariantList &list);
QVariantList dedup(const QVariantList &list);
QVariantList merge(const QVariantList &a, const QVariantList &b);
QVariantList intersect(const QVariantList &a, const QVariantList &b);
QVariantList subtract(const QVariantList &a, const QVariantList &b);
} // namespace PlainSteps
