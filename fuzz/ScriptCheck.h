#pragma once

#include "host/plugins/StepCatalogue.h"
#include "host/scripts/Script.h"
#include "host/scripts/ScriptJson.h"

/// A form of scripts.
struct ScriptForm
{
    StepHost::Result<StepHost::Script> (*read)(const QByteArray &, const StepHost::StepCatalogue &);
    StepHost::Result<QByteArray> (*write)(const StepHost::Script &);
    QByteArray blanks; ///< What may stand behind a script.
};

/// Reads \a bytes as a script of the list plug-in's steps and, unless they are refused, requires that nothing but blanks
/// may stand behind it, that the script is the same after writing and reading, that it runs, and that its run can be
/// reported. The run is stopped when the variables grow large, as they do when a list is merged with itself again and again.
void requireKeepsAndRuns(const QByteArray &bytes, const ScriptForm &form);
