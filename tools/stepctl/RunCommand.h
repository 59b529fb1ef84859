#pragma once

class CommandLine;

/// Adds the subcommand `run`, which runs a script.
void addRunCommand(CommandLine &commandLine);
