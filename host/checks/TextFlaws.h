#pragma once

#include <QString>

namespace StepHost
{
/// What is wrong with \a text as a text of one line for people, such as `has the control character U+0007`; empty when
/// nothing is. Control characters, replacement characters, which stand for bytes that could not be read, and halves of
/// surrogate pairs are.
QString flawOf(const QString &text);

/// The same for a text that may have several lines.
QString flawOfLines(const QString &text);
} // namespace StepHost
