#pragma once

#include "FaultWatch.h"
#include "PluginOption.h"
#include "console/ExitStatus.h"
#include "host/values/TerminalText.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// Work with plug-ins that makes one result, for a file or for standard output.
struct PluginWork
{
    /// Makes \a result with the steps of \a catalogue. Returns an ExitStatus; with ExitRefused the user has been
    /// told why, and there is no result.
    using Make =
        std::function<int(const StepHost::StepCatalogue &catalogue, FaultWatch &watch, QByteArray &result)>;

    const PluginOption &plugins; ///< The plug-ins to load.
    Make make;
    QString output = QStringLiteral("-"); ///< The file for the result, as in writeResult().
    double timeLimit = 0; ///< In seconds, for all that the plug-ins do; 0 for none.
};

/// Loads the plug-ins, makes the result, unloads the plug-ins, and writes the result only then: whatever a
/// plug-in does, the file is as it was or whole. The user is told about exceptions and, by a FaultWatch, about
/// all else that a plug-in can do to this program; with --isolate a process of its own does the work, so that nothing
/// goes unseen. Returns an ExitStatus.
int doPluginWork(const PluginWork &work);

/// How the result of such work is to look when it goes to \a output: as lookOf() says, but whole and plain in a process of
/// its own, which does not see where it goes.
StepHost::TextLook resultLook(const QString &output, bool isWhole);
