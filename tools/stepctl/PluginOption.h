#pragma once

#include "host/plugins/PluginChoice.h"

#include <optional>

class Command;

/// The options `--plugin`, `--plugin-path`, `--isolate` and `--memory-limit`, which every subcommand that works with plug-ins has.
class PluginOption
{
public:
    /// Adds the options to \a command. This object has to live as long as the command.
    void addTo(Command &command);

    /// Loads the plug-ins that were named or, when none was, those that the program finds by itself, into
    /// \a catalogue. Returns whether there is one, and all that were named could be loaded; tells the user on
    /// standard error if not, and what was passed over in any case.
    bool load(StepHost::StepCatalogue &catalogue) const;

    /// Whether a process of its own is to do the work with the plug-ins.
    bool isIsolated() const
    {
        return m_isIsolated;
    }

    /// The bytes of memory that the work may take; empty when nothing was said.
    std::optional<qint64> memoryLimit() const
    {
        return m_memoryLimit;
    }

private:
    StepHost::PluginChoice m_choice;
    bool m_isIsolated = false;
    std::optional<qint64> m_memoryLimit;
};
