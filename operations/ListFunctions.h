#pragma once

#include "hostapi/VariableScope.h"
#include "stepkit/Conversion.h"
#include "stepkit/ValueRef.h"
#include "stepkit/ValueTexts.h"
#include "stepkit/VariableNames.h"
#include "stepkit/WarningLine.h"

#include <QString>
#include <QVariant>

/// The functions that the list steps share: those of any step, which stepkit has, and here those for lists. They
/// keep no state, never throw, and report nothing but through warnSkipped().

/// Reads the list variable \a name of \a scope into \a out, sharing its data.
///
/// Returns false and leaves \a out alone when \a scope is null or \a name is empty (silently), or when
/// the variable is not declared as a list (with a warning). A list variable whose value does not
/// convert to a list reads as an empty list.
bool readListVariable(VariableScope *scope, const QString &name, QVariantList &out);

/// The two lists that a step combines.
struct ListPair
{
    QVariantList a;
    QVariantList b;
};

/// Reads \a nameA and \a nameB like readListVariable() after making sure that \a target may receive a
/// list: first list A, then the destination test, then list B.
///
/// Returns false at the first that fails. A destination that is not declared as a list is reported with
/// \a targetWarning as the line's lead.
bool readListPair(VariableScope *scope, const QString &nameA, const QString &nameB, const QString &target,
                  const char *targetWarning, ListPair &out);

/// Writes \a list to \a scope as the whole new value of \a name; nothing when \a scope is null.
void writeListVariable(VariableScope *scope, const QString &name, const QVariantList &list);

/// The one rule by which elements count as equal: what `QVariant::operator==` answers when called on
/// \a candidate. The list element being examined is always the candidate: Qt converts the other value to
/// its type, so the order is part of the rule.
inline bool elementsEqual(const QVariant &candidate, const QVariant &other)
{
    return candidate == other;
}

/// Whether \a candidate equals one of \a others, which are tried from the first to the last.
inline bool equalsAny(const QVariant &candidate, const QVariantList &others)
{
    for (const QVariant &other : others) {
        if (elementsEqual(candidate, other))
            return true;
    }
    return false;
}

/// Reverses \a list by exchanging elements from both ends, without copying one.
void reverseList(QVariantList &list);
