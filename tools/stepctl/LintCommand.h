#pragma once

class CommandLine;

/// Adds the subcommand `lint`, which tells what the steps of a script lack.
void addLintCommand(CommandLine &commandLine);
