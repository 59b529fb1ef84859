#pragma once

#include <hostapi/IOperationPlugin.h>

#include <QObject>

/// The root object of the plug-in: its identity, its manifest and one prototype of each of its steps.
class TextSteps : public QObject, public IOperationPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)
    Q_INTERFACES(IOperationPlugin)

public:
    QList<Operation *> createPrototypes() override;
    QString pluginId() const override;
    QString name() const override;
    QString version() const override;
    int apiVersion() const override;
    PluginManifest manifest() const override;
    QStringList requiredCapabilities() const override;
};
