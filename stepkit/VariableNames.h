#pragma once

/// \file
/// Names of variables with and without the mark "$" of a reference.

#include <QString>

/// How \a name is shown to the user: with the mark "$" in front, unless it is empty or has one.
QString displayVarName(const QString &name);

/// \a name as VariableScope knows it: without the one mark "$" in front that it may have. Two settings name the same
/// variable when these are equal.
QString bareVarName(const QString &name);
