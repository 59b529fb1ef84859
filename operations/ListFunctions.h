#pragma once

#include "hostapi/VariableScope.h"

#include <QString>
#include <QVariant>

/// The functions that the list steps share. They keep no state, never throw, and report nothing but
/// through warnSkipped().

/// A value text of a step, taken apart but not looked up.
struct ValueRef
{
    bool isVariable = false; ///< The text refers to a variable.
    QString variableName; ///< The variable's name without the mark "$"; only for a reference.
    QString member; ///< What follows the first "." of a reference; empty when there is none.
    QString literal; ///< The whole text, unchanged; only for a literal.
};

/// Writes one line on Qt's warning log: \a lead, \a text in double quotes and \a trail, separated by
/// blanks. \a lead and \a trail are UTF-8. The line carries no file, line or function.
void warnSkipped(const char *lead, const QString &text, const char *trail = "，已跳过");

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

/// How \a name is shown to the user: with the mark "$" in front, unless it is empty or has one.
QString displayVarName(const QString &name);

/// Takes \a text apart. A text of at least two characters that begins with "$" is a reference, split at
/// the first "." of its rest unless the rest begins with it. Every other text is a literal.
ValueRef parseValueRef(const QString &text);

/// The value of \a ref.
///
/// A literal gives a `double` when it reads as a number, else its text. A reference gives the variable's
/// value as it is, or one of the members Rows, Count, Columns and Items of a list (in any case of
/// letters), or a property of an object. What cannot be found, also for a null \a scope, gives an
/// invalid value.
QVariant resolveValueRef(const ValueRef &ref, VariableScope *scope);

/// \a value as the destination type \a type takes it. \a ok, which may be null, tells whether the type
/// accepts it; a refused value gives the type's empty value.
///
/// A null value and an empty text are always accepted as the type's empty value. A destination type out
/// of the six known ones accepts every other value as it is.
QVariant convertToVarType(const QVariant &value, VarType type, bool *ok);

/// Reads "true", "1", "yes", "是", "y" and "false", "0", "no", "否", "n" or nothing, in any case and with
/// blanks around it. Returns whether \a text was one of them; if not, \a out stays as it was. \a out may
/// be null.
bool parseBoolText(const QString &text, bool *out);

/// Reads the form `[1, a, 2]` with blanks around it: a number for each part that reads as one, else a
/// text; empty parts are dropped. There is no quoting and no nesting. Returns whether \a text has
/// brackets around it; if not, \a out stays as it was. \a out may be null.
bool parseListLiteral(const QString &text, QVariantList *out);

/// The rows of a JSON array of arrays. Every cell becomes a text, and every cell that is not a JSON
/// string an empty one. Text of any other form gives no rows.
QVariantList parseTableJson(const QString &text);

/// Reads a position text: blanks around it are dropped, the rest has to be a decimal 32-bit integer.
/// Returns whether it is; if not, \a out is 0.
bool parseIndexText(const QString &text, int &out);

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
