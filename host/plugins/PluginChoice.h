#pragma once

#include "StepCatalogue.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace StepHost
{
/// The plug-ins that a user wants.
struct PluginChoice
{
    /// Named by the user: each has to load, and nothing else is searched but `places`.
    QStringList files;
    /// Libraries and folders to search, before all others.
    QStringList places;
};

/// What became of a choice.
struct PluginLoading
{
    /// Why plug-ins that were named cannot be used; a line each.
    QStringList refusals;
    /// What was passed over, and what is odd; a line each, to tell the user.
    QStringList remarks;
    /// Where a search looked that found nothing at all.
    QStringList searched;
};

/// Looks at a plug-in from a safe place before it is loaded here, and tells what is wrong with it.
using PluginProbe = std::function<Result<void>(const QString &fileName)>;

/// Loads what \a choice says into \a catalogue or, when it names no files, what findPlugins() finds for a program that
/// lies in \a executableDir.
///
/// A plug-in that was found and cannot be used is passed over: a library that is no plug-in, another version of a
/// plug-in, one with a step that another has. The catalogue remembers it, so that a script that needs it says so.
PluginLoading loadPlugins(StepCatalogue &catalogue, const PluginChoice &choice, const QString &executableDir,
                          const PluginProbe &probe = {});
} // namespace StepHost
