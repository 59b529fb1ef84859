#pragma once

#include <hostapi/IOperationPlugin.h>

#include <QObject>

/// The root object of the plug-in.
class NoteSteps : public QObject, public IOperationPlugin
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
