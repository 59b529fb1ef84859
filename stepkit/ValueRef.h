#pragma once

/// \file
/// Value texts, which users type into settings: literals, and references to variables and their members.

#include "hostapi/VariableScope.h"

#include <QString>
#include <QVariant>

#include <optional>

/// A value text of a step, taken apart but not looked up.
struct ValueRef
{
    bool isVariable = false; ///< The text refers to a variable.
    QString variableName; ///< The variable's name without the mark "$"; only for a reference.
    QString member; ///< What follows the first "." of a reference; empty when there is none.
    QString literal; ///< The whole text, unchanged; only for a literal.
};

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

/// What the value text \a text gives for a destination of \a type: the literal itself or, for a reference, what
/// resolveValueRef() finds, as convertToVarType() makes it. A literal is not read as a number first: for
/// VarType::String the text `007` stays `007`.
///
/// Nothing when there is no such variable or member, or \a type refuses what is there. For the settings that have a
/// `VARREF` editor.
std::optional<QVariant> resolveValueAs(const QString &text, VarType type, VariableScope *scope);

/// The integer that \a text gives, which is a decimal number or a reference to a value whose text is one, in either
/// case with blanks around it; a `double` without a fraction counts, one with a fraction does not.
///
/// Nothing for every other text. For the settings that have a `NUMVAR:INT` editor.
std::optional<int> resolveInteger(const QString &text, VariableScope *scope);
