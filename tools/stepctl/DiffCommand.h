#pragma once

class CommandLine;

/// Adds the subcommand `diff`, which compares two scripts.
void addDiffCommand(CommandLine &commandLine);
