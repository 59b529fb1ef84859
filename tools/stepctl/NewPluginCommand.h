#pragma once

#include "Command.h"

/// Adds the subcommand `new-plugin`, which writes the sources of a new step plug-in.
void addNewPluginCommand(CLI::App &app, Action &action);
