#pragma once

#include "ScriptRunner.h"
#include "host/scripts/Script.h"
#include "host/values/Result.h"
#include "host/values/TerminalText.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace StepHost
{
/// The variables of \a scope as they are now, in their order.
std::vector<ScriptVariable> variablesOf(const VariableScope &scope);

/// A run as the user is to see it.
struct RunReport
{
    const Script &script; ///< Its steps give the summaries.
    const RunResult &result;
    const std::vector<ScriptVariable> &variables; ///< After the run.
    const std::vector<ScriptVariable> *before = nullptr; ///< Before the run; null leaves them out.
    TextLook look = {}; ///< Of the text.
};

/// \a report as JSON: "variables" in the form of a script, "steps" with "type", "summary", "outcome" and
/// "warnings", and "before", in the form of "variables", when the report has it. Refused is a value that is nested too
/// deep or too large.
Result<QByteArray> reportToJson(const RunReport &report);

/// \a report as text in UTF-8: each variable with its type and value, each step with its outcome and
/// summary, each warning, and the numbers of outcomes in a line of its own. Values are in the form of
/// JsonValue.h; other control characters are written as escapes. One that is cut has the number of its elements, rows or
/// characters behind it.
Result<QByteArray> reportToText(const RunReport &report);
} // namespace StepHost
