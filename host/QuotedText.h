#pragma once

#include <QString>

namespace StepHost
{
/// \a text in double quotes, fit for one line of a message: control characters and lone surrogates are
/// shown as `\uXXXX`, and of a text longer than 60 characters only the beginning is shown, with its length.
QString quoted(const QString &text);
} // namespace StepHost
