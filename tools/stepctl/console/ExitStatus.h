#pragma once

/// The exit statuses of every subcommand.
enum ExitStatus {
    ExitSuccess = 0, ///< All is well.
    ExitFinding =
        1, ///< The work was done, and there is something to tell: a skipped step, a finding, a difference.
    ExitRefused = 2, ///< The work was not done: bad usage, bad input, a refused plug-in.
};
