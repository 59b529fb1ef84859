#pragma once

#include "Command.h"

/// Adds the subcommand `run`, which runs a script.
void addRunCommand(CLI::App &app, Action &action);
