#pragma once

#include "host/Script.h"
#include "host/StepCatalogue.h"

/// The steps of the list plug-in.
const StepHost::StepCatalogue &listSteps();

/// Requires that both scripts have the same variables and the same steps.
void requireSameScript(const StepHost::Script &left, const StepHost::Script &right);

/// Requires that \a script runs and that its run can be reported. The run is stopped when the variables grow
/// large, as they do when a list is merged with itself again and again.
void requireRuns(const StepHost::Script &script);
