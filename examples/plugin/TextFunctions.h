#pragma once

#include <hostapi/VariableScope.h>

#include <QString>

#include <optional>

/// Writes one line on Qt's warning log: \a lead, \a text in double quotes and \a trail.
void warnSkipped(const char *lead, const QString &text, const char *trail);

/// How the variable \a name is shown to the user: with the mark "$" in front.
QString displayName(const QString &name);

/// What the value text \a text stands for: the value of a variable when it is "$" and the variable's name,
/// otherwise \a text itself. Nothing when there is no such variable in \a scope, or its value has no text
/// form.
std::optional<QString> resolveText(const QString &text, const VariableScope &scope);
