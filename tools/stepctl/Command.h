#pragma once

#include <CLI/CLI.hpp>

#include <functional>

/// The exit statuses of every subcommand.
enum ExitStatus {
    ExitSuccess = 0, ///< All is well.
    ExitFinding = 1, ///< The work was done, and there is something to tell: a skipped step, a finding.
    ExitRefused = 2, ///< The work was not done: bad usage, bad input, a refused plug-in.
};

/// What the subcommand on the command line does once all arguments are read. Returns an ExitStatus.
using Action = std::function<int()>;
