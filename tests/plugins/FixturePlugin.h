#pragma once

#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"

#include <QObject>

/// A step that does nothing.
class FixtureStep : public Operation
{
public:
    explicit FixtureStep(const QString &typeId, QObject *parent = nullptr)
        : Operation(parent), m_typeId(typeId)
    {
    }

    QString root() const override
    {
        return QString("fixtures");
    }
    QString typeId() const override
    {
        return m_typeId;
    }
    QString typeName() const override
    {
        return QString("Fixture");
    }
    QString icon() const override
    {
        return QString();
    }
    void doOperation() const override { }
    QString toString() const override
    {
        return QString("Fixture");
    }
    QString description() const override
    {
        return QString("Does nothing.");
    }
    Operation *clone(QObject *parent) const override
    {
        return new FixtureStep(m_typeId, parent);
    }

private:
    QString m_typeId;
};

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
