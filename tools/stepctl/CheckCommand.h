#pragma once

class CommandLine;

/// Adds the subcommand `check`, which checks whether plug-ins keep the contract.
void addCheckCommand(CommandLine &commandLine);

/// Whether this program was started by the subcommand `check`, to do a single check. main() is to return
/// runCheckWorker() then, before it does anything else.
bool isCheckWorker(int argc, char *const argv[]);

/// Does the single check that the arguments name.
int runCheckWorker(int argc, char *argv[]);
