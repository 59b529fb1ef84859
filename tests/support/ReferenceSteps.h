#pragma once

#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"

#include <QStringList>
#include <QVariant>

/// What the steps do to their lists, written as their rules read: `QVariant::operator==` and the sort
/// relation, question by question. The steps are also measured against these.
namespace PlainSteps
{
void add(QVariantList &list, const QVariant &item);
void removeAt(QVariantList &list, int position);
/// Removes the first element that equals \a value, if there is one.
void removeValue(QVariantList &list, const QVariant &value);
void sort(QVariantList &list);
void reverse(QVariantList &list);
QVariantList dedup(const QVariantList &list);
QVariantList merge(const QVariantList &a, const QVariantList &b);
QVariantList intersect(const QVariantList &a, const QVariantList &b);
QVariantList subtract(const QVariantList &a, const QVariantList &b);
} // namespace PlainSteps

/// What a step should do, worked out a second time in the plainest way.
struct ReferenceOutcome
{
    QString written; ///< The name that the step writes to; empty when it writes nothing.
    QVariant value; ///< What it writes there.
    bool anyOrder = false; ///< The elements of the list may stand in any order.
    QStringList warnings; ///< The lines on the warning log.
};

/// What the step \a typeId does on \a scope with \a settings, its properties by name. A step that has no
/// reference yet is said to warn of that.
ReferenceOutcome referenceOutcome(const QString &typeId, const QVariantMap &settings,
                                  const VariableScope &scope);

/// Whether both values have the same type and the same content, however Qt compares them.
bool isSameValue(const QVariant &left, const QVariant &right);

/// Whether both lists hold the same values in any order.
bool isSamePermuted(const QVariantList &left, QVariantList right);

/// Runs \a step on a copy of \a scope. Returns how that differs from what the reference does: in its warnings,
/// the value written, another variable or a setting; empty if it does not.
QString differenceFromReference(Operation &step, const VariableScope &scope);
