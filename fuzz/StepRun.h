#pragma once

#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"

#include <QByteArray>
#include <QVariantList>

#include <memory>

/// A new step of the kind at \a position in the plug-in's order of prototypes; any number does.
std::unique_ptr<Operation> cloneOf(int position);

/// A new step with the type id \a typeId; null when there is none.
std::unique_ptr<Operation> cloneOf(const QByteArray &typeId);

/// A scope with one variable of each type, lists among them that do not hold a list:
/// `a`, `b` and `c` (lists), `i`, `d`, `s`, `t` (int, double, text, bool), `table`, `k` (a list variable
/// that holds a number), `q` (one that holds a string list), `o`, `m` and `n` (an object, a map and an
/// invalid value, undeclared).
VariableScope scopeWith(const QVariantList &a, const QVariantList &b);

/// Runs \a step on a copy of \a scope and requires that it does what the reference does: the same
/// warnings, the same value written, no other variable changed.
void requireRunsLikeReference(Operation &step, const VariableScope &scope);
