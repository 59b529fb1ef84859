#pragma once

#include "host/values/TerminalText.h"

#include <QString>

/// Whether standard error is a terminal that a user may be looking at.
bool isErrorTerminal();

/// How many columns a line of that terminal, or of the one that is standard output, has; 80 where that is unknown.
int terminalColumns();

/// How a report is to look that is written to \a output, a file's name or - for standard output: whole and plain unless
/// that is a terminal. There values are cut to its width, unless \a isWhole, and colours are shown, unless the environment
/// has NO_COLOR or a TERM that is dumb.
StepHost::TextLook lookOf(const QString &output, bool isWhole);
