#pragma once

#include "host/checks/trial/Trials.h"
#include "host/plugins/StepCatalogue.h"
#include "host/scripts/Script.h"
#include "host/values/Result.h"

#include <functional>
#include <memory>

namespace StepHost
{
class CheckContext;

/// A script of the plug-in's author, with the plug-ins that its steps come from, which have to outlive it and what it
/// writes.
struct AuthorScript
{
    std::unique_ptr<StepCatalogue> catalogue;
    Script script;
};

/// Reads the script \a fileName, whose steps may be those of the plug-in of \a context and of its companions. An error
/// tells why it is refused.
Result<AuthorScript> readAuthorScript(CheckContext &context, const QString &fileName);

/// Calls \a check with every step of a new set and what it can be made to do: by the trials that are made up for it, and
/// by the scripts of \a context. Scripts that are refused add nothing; `running.scripts` tells of them.
void forEachTrials(CheckContext &context, const std::function<void(Operation &, const StepTrials &)> &check);

/// Calls \a check with every trial of every step, those that write and those that do not, and what comes of it.
void forEachTrialRun(CheckContext &context,
                     const std::function<void(const Operation &, const Trial &, const TrialRun &)> &check);
} // namespace StepHost
