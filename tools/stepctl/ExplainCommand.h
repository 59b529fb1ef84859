#pragma once

class CommandLine;

/// Adds the subcommand `explain`, which tells what a check of `check` is about.
void addExplainCommand(CommandLine &commandLine);
