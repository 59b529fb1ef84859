#pragma once

/// \file
/// How a step that cannot do its work says so.

#include <QString>

/// Writes one line on Qt's warning log: \a lead, \a text in double quotes and \a trail, separated by
/// blanks. \a lead and \a trail are UTF-8. The line carries no file, line or function.
void warnSkipped(const char *lead, const QString &text, const char *trail = "，已跳过");
