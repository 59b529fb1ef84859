#pragma once

#include "CheckRunner.h"
#include "host/values/Result.h"

namespace StepHost
{
/// A finding that a plug-in's author knows of and stands by.
struct Waiver
{
    QString checkId;
    QString part; ///< A part of the reason that it is for; empty for any.
    QString why;
    bool isUsed = false;
};

/// Reads waivers, one in each line: a check's id, in quotes a part of the reason that may be left out, a colon, and why
/// it is waived. Empty lines and lines that begin with "#" are none. An error names the line.
///
///     texts.one-line "JoinOperation": the separator is shown as it is
Result<QVector<Waiver>> readWaivers(const QString &text);

/// Lets what \a waivers are for count as passed: failures and warnings, never a crash or a time-out. The reason then
/// tells why. A waiver whose check was done and found nothing that it is for is a warning of that check.
void applyWaivers(QVector<PluginReport> &reports, QVector<Waiver> &waivers);
} // namespace StepHost
