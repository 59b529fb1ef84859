#pragma once

#include "RunChannel.h"

#include <functional>

class Operation;

/// What a host does with steps beside running them, done where it may go wrong.
namespace StepHost
{
class StepCatalogue;

/// Told what is done next, in words that fit behind "while".
using WorkNote = std::function<void(const QString &work)>;

/// A step as it was handed over; null when its plug-in gives none. Its setters may throw.
std::unique_ptr<Operation> makeSentStep(const SentStep &sent, const StepCatalogue &catalogue);

/// Does with a step of each type of \a catalogue what a host does with it before any run. Returns what is to be said of
/// them.
QStringList probeTypes(const StepCatalogue &catalogue, const WorkNote &note);

/// Does what \a request, a RunRequest::Trial, asks for, and with each of the steps what a window does with it: makes its
/// texts, copies it, and writes it in both forms of scripts. Returns what is to be said of the steps. Refused are steps that
/// throw where a window would not survive that, and a setting with which there is no copy of the step.
Result<QStringList> carryOutTrial(const RunRequest &request, const StepCatalogue &catalogue,
                                  const WorkNote &note);
} // namespace StepHost
