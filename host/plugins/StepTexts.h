#pragma once

#include "hostapi/Operation.h"

namespace StepHost
{
/// \a text, which comes from a plug-in, as far as a host takes it: of more than 10,000,000 characters both ends, with
/// the length between them.
QString takenText(const QString &text);

/// A text of \a step, such as `stepText(step, &Operation::toString)`, as takenText() takes it. When its making throws,
/// the text says what was thrown.
QString stepText(const Operation &step, QString (Operation::*text)() const);

/// The same for a window, which shows characters that deceive as inLines() writes them.
QString shownStepText(const Operation &step, QString (Operation::*text)() const);

/// A clone of \a step that belongs to \a parent or, without one, to the caller; null when the step gives none or
/// throws.
Operation *cloneStep(const Operation &step, QObject *parent);
} // namespace StepHost
