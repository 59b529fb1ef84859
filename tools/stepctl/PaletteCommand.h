#pragma once

class CommandLine;

/// Adds the subcommand `palette`, which shows what the plug-ins offer.
void addPaletteCommand(CommandLine &commandLine);

/// Adds the subcommand `describe`, which shows one step in full.
void addDescribeCommand(CommandLine &commandLine);
