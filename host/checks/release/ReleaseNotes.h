#pragma once

#include "Release.h"

class Operation;

namespace StepHost
{
class CheckContext;

/// What the class of \a step and a new step of it tell of its settings.
ReleasedStep describedStep(const Operation &step);

/// The settings of \a step by name, without values that only its plug-in knows.
QVariantMap plainSettings(const Operation &step);

/// Gives \a step those of \a settings that it has.
void applyPlainSettings(Operation &step, const QVariantMap &settings);

/// Runs the script \a fileName with the steps of the plug-in of \a context and its companions. An error tells why it is
/// refused.
Result<ReleasedScript> scriptRun(CheckContext &context, const QString &fileName);

/// Writes what the plug-in of \a context gives to the file \a fileName, ever more of it: when the plug-in crashes, what
/// came before is there. Fails the check of \a context when that cannot be done.
void writeReleaseNotes(CheckContext &context, const QString &fileName);
} // namespace StepHost
