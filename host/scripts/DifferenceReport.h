#pragma once

#include "ScriptDifference.h"
#include "host/values/TerminalText.h"

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// Two scripts and what makes the second of the first, as a user is to see it.
struct DifferenceReport
{
    const Script &before;
    const Script &after;
    const ScriptDifference &difference; ///< Between these.
};

/// \a report as text in UTF-8: a line for each variable and each step that was added, removed, moved or changed, with its
/// place in the first script, in the second, or in both; below it each value that differs, and of a variable that was
/// added or removed all; at the end the numbers of changes, or that there are none.
QByteArray differenceToText(const DifferenceReport &report, const TextLook &look = {});

/// \a report as JSON: "variables" and "steps", each with "change", "before" and "after", the places from 1, the
/// variable's "name" or the step's "type" and "summary", and "values" with "name", "before" and "after". What is not
/// there has no key.
QByteArray differenceToJson(const DifferenceReport &report);
} // namespace StepHost
