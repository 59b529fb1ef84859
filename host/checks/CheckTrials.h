#pragma once

#include "host/checks/trial/Trials.h"

#include <functional>

namespace StepHost
{
class CheckContext;

/// Calls \a check with every step of a new set and what it can be made to do: by the trials that are made up for it, and
/// by the scripts of \a context. A script that is refused fails the check.
void forEachTrials(CheckContext &context, const std::function<void(Operation &, const StepTrials &)> &check);

/// Calls \a check with every trial of every step, those that write and those that do not, and what comes of it.
void forEachTrialRun(CheckContext &context,
                     const std::function<void(const Operation &, const Trial &, const TrialRun &)> &check);
} // namespace StepHost
