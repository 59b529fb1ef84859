#pragma once

#include "hostapi/IOperationPlugin.h"
#include "tests/support/FixtureStep.h"

#include <QObject>

/// A sound plug-in with the step `fixture.first`. The plug-ins in this folder override what they do
/// otherwise.
class FixturePlugin : public QObject, public IOperationPlugin
{
    Q_OBJECT
    Q_INTERFACES(IOperationPlugin)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first")};
    }
    QString pluginId() const override
    {
        return QString("com.example.Fixture");
    }
    QString name() const override
    {
        return QString("Fixture");
    }
    QString version() const override
    {
        return QString("1.0.0");
    }
    int apiVersion() const override
    {
        return operationCoreApiVersion;
    }
    PluginManifest manifest() const override
    {
        PluginManifest manifest;
        manifest.pluginId = pluginId();
        manifest.name = name();
        manifest.version = version();
        manifest.apiVersion = apiVersion();
        manifest.typeIdPrefix = QString("fixture.");
        manifest.requiredCapabilities = requiredCapabilities();
        return manifest;
    }
    QStringList requiredCapabilities() const override
    {
        return {};
    }
};
