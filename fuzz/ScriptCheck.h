#pragma once

#include "host/plugins/StepCatalogue.h"
#include "host/scripts/Script.h"
#include "host/scripts/ScriptJson.h"

/// Reads \a bytes as a script of the list plug-in's steps and, unless they are refused, requires that
/// the script is the same after writing and reading, that it runs, and that its run can be reported. The
/// run is stopped when the variables grow large, as they do when a list is merged with itself again and again.
void requireKeepsAndRuns(const QByteArray &bytes,
                         StepHost::Result<StepHost::Script> (*read)(const QByteArray &,
                                                                    const StepHost::StepCatalogue &),
                         StepHost::Result<QByteArray> (*write)(const StepHost::Script &));
