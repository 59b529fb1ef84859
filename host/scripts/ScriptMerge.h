#pragma once

#include "host/scripts/Script.h"
#include "host/values/Result.h"

#include <QStringList>

/// Steps that come into a script from another one, and bring the variables along that they need.
namespace StepHost
{
/// The variables of \a incoming that there are in \a variables with another type or value. What is the same on both
/// sides clashes with nothing.
QStringList clashingVariables(const Script &incoming, const VariableScope &variables);

/// What becomes of a variable that clashes.
enum class Clash {
    UsePresent, ///< The steps use the one that is there.
    BringRenamed, ///< It comes along under another name, which its steps use instead: `names` as `names2`.
};

/// The \a variables with those of \a incoming that are missing behind them. Those that clash are taken as \a clash says,
/// for which the steps of \a incoming are changed. Refused when a step cannot use a variable under its other name; then
/// nothing is changed.
Result<VariableScope> mergeVariables(Script &incoming, const VariableScope &variables, Clash clash);
} // namespace StepHost
