#pragma once

#include "hostapi/PluginManifest.h"

#include <QList>
#include <QVector>

class Operation;

namespace StepHost
{
/// What one plug-in brings to the palette.
struct PaletteSource
{
    PluginManifest manifest;
    QList<Operation *> prototypes; ///< Not owned; no null pointers.
};

/// One step on offer.
struct PaletteEntry
{
    QString category;
    const Operation *prototype = nullptr; ///< Not owned.
    int source = 0; ///< The position of its plug-in among the sources.
};

/// The steps of \a sources in the order in which a host lists them: by the category's weight and text,
/// then by the type's weight and id. Small weights come first; what has no weight comes after all that
/// has one.
///
/// A category that several plug-ins weigh has the smallest of their weights. A type has the weight that
/// its own plug-in's manifest gives it.
QVector<PaletteEntry> paletteOrder(const QVector<PaletteSource> &sources);
} // namespace StepHost
