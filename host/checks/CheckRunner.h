#pragma once

#include "PluginCheck.h"

#include <QDateTime>
#include <QStringList>

#include <functional>

namespace StepHost
{
/// The results of checking one plug-in, in the order of the checks.
struct PluginReport
{
    QString fileName;
    QVector<CheckResult> results;
    QString pluginId = QString(); ///< As the plug-in tells; empty when it does not load.
    QString version = QString();
    QDateTime started = QDateTime(); ///< When its first check began.
};

/// How plug-ins are checked.
struct CheckRunOptions
{
    /// The program that does one check, and the arguments that come before the plug-in's file name, the
    /// check's id and the name of the file for the result. It has to call runCheckWorker(). Without a program
    /// the checks are done in this process, one after the other and without a time limit.
    QString program;
    QStringList arguments;

    int jobs = 1; ///< The number of checks that run at the same time.
    int timeLimit = 30000; ///< For one check, in milliseconds.
    IconRenderer renderer; ///< For checks in this process only.
    unsigned seed = 1; ///< Of all that checks choose at random.
    QStringList scripts; ///< Scripts whose steps are run in the checks of running, too.
    QStringList companions; ///< Plug-ins whose steps these scripts may use, too.
    QString
        baseline; ///< An older release to compare with, which only a process of its own loads; empty for none.
    bool isKnownToLoad =
        false; ///< Saves a process where `library.loads` is not asked for; the report has no names then.
    QString releaseFile; ///< Between processes only: the file for what that release gives.

    /// Called after every check with the number of checks that are done, and of all.
    std::function<void(int done, int total)> progress;
};

/// Does \a checks on every plug-in of \a files, each check in a process of its own, or in two when both have to find the
/// same. What a check's process has started is ended with it, and what it leaves in its folders is removed. A process that does not start is tried twice more before its check counts as
/// crashed.
///
/// Whether a plug-in loads is checked first, also when that is not among \a checks. If it does not, its
/// result is part of the report and all others are skipped. In the same way the older release is looked at before the
/// plug-in is compared with it; without one these checks are skipped. A library whose unloading ends the process is told of
/// once, by `library.unloads`, when that is among \a checks.
///
/// Needs a `QCoreApplication`. When that is told to quit meanwhile, the processes that run are ended, and there is
/// no report of the plug-in that was being checked and of those after it. Folders that a killed program left behind are removed by the next call.
QVector<PluginReport> checkPlugins(const QStringList &files, const QVector<PluginCheck> &checks,
                                   const CheckRunOptions &options);

/// The other side: does the check \a id on the plug-in \a fileName in this process and writes the result to
/// \a resultFile. Returns whether there is such a check and the result could be written.
bool runCheckWorker(const QString &fileName, const QString &id, const QString &resultFile,
                    const IconRenderer &renderer);
} // namespace StepHost
