#pragma once

#include "Command.h"

/// Adds the subcommand `palette`, which shows what the plug-ins offer.
void addPaletteCommand(CLI::App &app, Action &action);

/// Adds the subcommand `describe`, which shows one step in full.
void addDescribeCommand(CLI::App &app, Action &action);
