#pragma once

class CommandLine;

/// Adds the subcommand `convert`, which turns a script from one form into another.
void addConvertCommand(CommandLine &commandLine);
