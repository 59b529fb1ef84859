#pragma once

#include "Command.h"

/// Adds the subcommand `convert`, which turns a script from one form into another.
void addConvertCommand(CLI::App &app, Action &action);
