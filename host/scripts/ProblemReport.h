#pragma once

#include "StepProblems.h"
#include "host/values/TerminalText.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace StepHost
{
/// What a user is told of the steps of a script before it runs.
struct ProblemReport
{
    QString file; ///< What the script is called.
    const Script &script;
    QVector<ScriptProblem> problems; ///< Those of the script.
};

/// \a report as text in UTF-8: a line for each problem with the file, the step and the setting, and one with the number of
/// problems. Where a variable is missing that is called much like one that is there, the line asks for that one.
QByteArray problemsToText(const ProblemReport &report, const TextLook &look = {});

/// The same as JSON: "file", "steps", the number of steps, and "problems" with "step", from 1, "type", "property", "text"
/// and, where a variable is missing, "missing", "missingType" and, when there is one, "suggestion".
QByteArray problemsToJson(const ProblemReport &report);
} // namespace StepHost
