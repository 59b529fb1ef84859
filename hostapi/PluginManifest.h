#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// What a plug-in tells about itself. A plain value: a default-constructed one has empty texts, lists
/// and maps, and api version 0.
struct PluginManifest
{
    /// The plug-in's persistent id; the same as IOperationPlugin::pluginId().
    QString pluginId;
    /// Its display name.
    QString name;
    /// Its own version, such as `1.0.0`.
    QString version;
    /// The version of this contract that it was built for.
    int apiVersion = 0;
    /// With what the type ids of all its steps begin, such as `list.`.
    QString typeIdPrefix;
    /// The host capabilities that it needs.
    QStringList requiredCapabilities;
    /// Read by no host so far; leave it empty.
    QStringList auxiliaryList;
    /// Weight of each category in the palette, by Operation::root(). Small comes first.
    QMap<QString, int> categoryOrder;
    /// Weight of each step within its category, by Operation::typeId(). Small comes first.
    QMap<QString, int> typeOrder;
};
