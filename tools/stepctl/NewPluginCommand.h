#pragma once

class CommandLine;

/// Adds the subcommand `new-plugin`, which writes the sources of a new step plug-in.
void addNewPluginCommand(CommandLine &commandLine);
