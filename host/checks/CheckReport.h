#pragma once

#include "CheckRunner.h"

#include <QByteArray>

namespace StepHost
{
/// What a run of checks comes to. A later one outweighs those before it.
enum class CheckVerdict {
    Passed, ///< Nothing failed.
    Failed, ///< A check failed.
    NotLoadable, ///< A plug-in does not load.
    Crashed, ///< A check crashed or did not end.
};

/// How reports are made.
struct CheckReportOptions
{
    bool isOnlyFailed = false; ///< Leave out what passed.
    bool isStrict = false; ///< A warning counts as a failure.
    unsigned seed = 1; ///< What the checks were started with, to be told.
    bool isVerbose = false; ///< For people: a line for each check that passed, too.
    QString programVersion = QString(); ///< Of the program that checked, to be told.
};

/// The verdict on \a reports. If \a isStrict, a warning counts as a failure.
CheckVerdict verdictOf(const QVector<PluginReport> &reports, bool isStrict = false);

/// The verdict in one line, with the numbers of outcomes.
QString verdictLine(const QVector<PluginReport> &reports, bool isStrict = false);

/// \a reports for people: a line for each check that did not pass or was waived, the worst first, a line for each family
/// of those that passed, then the verdict.
QString textReport(const QVector<PluginReport> &reports, const CheckReportOptions &options = {});

/// \a reports as one JSON object.
QByteArray jsonReport(const QVector<PluginReport> &reports, const CheckReportOptions &options = {});

/// \a reports as JUnit XML: a suite for each plug-in, a test case for each check. A crash or time-out is an
/// `error`; a warning is a passed test case with output.
QByteArray junitReport(const QVector<PluginReport> &reports, const CheckReportOptions &options = {});

/// All checks there are, each with what it protects: for people, in a line each.
QString checkList();

/// The same as one JSON object.
QByteArray jsonCheckList();
} // namespace StepHost
