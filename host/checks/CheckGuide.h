#pragma once

#include "host/values/Result.h"

namespace StepHost
{
/// What docs/checks.md says about the check \a name, such as `clone.parent`: what it protects, how to mend what it
/// finds, and why its family is, with an example; for the name of a family the same about all of its checks. Markdown.
/// Refused is any other name.
Result<QString> explainCheck(const QString &name);
} // namespace StepHost
