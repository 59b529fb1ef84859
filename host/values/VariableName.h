#pragma once

#include <QString>

/// What variables are called. One "$" in front of a name is the mark of a reference and no part of the name;
/// scopes and steps take it off once. So a variable whose own name begins with "$" is reached through
/// referenceTo() only. A step may make one; scripts and users may not.
namespace StepHost
{
/// What a scope knows the variable \a name by, whatever the name begins with.
QString referenceTo(const QString &name);

/// Whether \a text has the mark in front.
bool hasMark(const QString &text);

/// The name that \a text, a name or a reference, stands for: \a text without the mark.
QString withoutMark(const QString &text);

/// Whether a script may have a variable called \a name, which is a name without the mark: it is not empty and
/// does not begin with "$".
bool isVariableName(const QString &name);

/// What is wrong with \a text as a name or a reference that a script or a user gives a variable; empty when
/// nothing is.
QString variableNameError(const QString &text);
} // namespace StepHost
