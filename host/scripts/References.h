#pragma once

#include "hostapi/VariableScope.h"

#include <QString>
#include <QStringList>

/// References to variables, as they are written into the settings of steps: `$names`, `$names.Count`.
namespace StepHost
{
/// Whether \a text is a reference: a "$" and at least one character more.
bool isReference(const QString &text);

/// The references to what a variable of type \a type has beside its value; \a reference is the one to the variable.
/// Empty for a type that is no list and no table.
QStringList memberReferences(const QString &reference, VarType type);

/// The name of the variable that the reference \a text is about, when \a variables has none of that name; otherwise
/// empty.
QString unknownVariable(const QString &text, const VariableScope &variables);

/// What the reference \a text is about: the name that stands in it, as a scope takes it; empty when it is no reference.
QString variableOf(const QString &text);

/// What the reference \a text names behind the variable, such as `Count`; empty when it is about the variable itself, or
/// no reference.
QString memberOf(const QString &text);

/// Whether the reference \a text is about something that its variable, one of \a variables, does not have, as far as the
/// variable's type tells.
bool hasUnknownMember(const QString &text, const VariableScope &variables);
} // namespace StepHost
