#pragma once

#include <QString>
#include <QStringList>

namespace StepHost
{
/// \a text in double quotes, fit for one line of a message: control characters and lone surrogates are
/// shown as `\uXXXX`, and of a text longer than 60 characters only the beginning is shown, with its length.
QString quoted(const QString &text);

/// Says that there is no \a what called \a name, and which there are instead.
QString notAmong(const char *what, const QString &name, const QStringList &choices);

/// The whole of \a text without anything that would end a line or command a terminal: control characters are
/// written as in JSON.
QString inOneLine(const QString &text);
} // namespace StepHost
