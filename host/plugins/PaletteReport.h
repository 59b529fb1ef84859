#pragma once

#include "StepCatalogue.h"

#include <QByteArray>

namespace StepHost
{
/// What the plug-ins of \a catalogue offer: each plug-in with its identity, then each step, in the order of
/// paletteOrder(), with the editors of its settings. In UTF-8.
/// @{
QByteArray paletteToText(const StepCatalogue &catalogue);
QByteArray paletteToJson(const StepCatalogue &catalogue);
QByteArray paletteToMarkdown(const StepCatalogue &catalogue);
/// @}

/// The step \a typeId of \a catalogue, which has to exist, in full: also its texts for the default settings,
/// its class and its plug-in. In UTF-8.
/// @{
QByteArray stepToText(const StepCatalogue &catalogue, const QString &typeId);
QByteArray stepToJson(const StepCatalogue &catalogue, const QString &typeId);
/// @}
} // namespace StepHost
