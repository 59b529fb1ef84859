#pragma once

#include "host/plugins/PluginChoice.h"

#include <QCoreApplication>

namespace Workbench
{
/// Loads the program's plug-ins, each in a process of its own first: one that crashes or hangs in that shall not do so here.
class PluginStart
{
    Q_DECLARE_TR_FUNCTIONS(Workbench::PluginStart)

public:
    /// Adds the plug-ins of \a choice to \a catalogue. One that takes longer than \a timeLimit milliseconds is refused.
    /// Returns what the user has to be told: why plug-ins are refused, and what is odd about others.
    static QStringList load(StepHost::StepCatalogue &catalogue, const StepHost::PluginChoice &choice,
                            int timeLimit = 30000);
};
} // namespace Workbench
