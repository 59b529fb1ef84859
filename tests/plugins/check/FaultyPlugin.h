#pragma once

#include "tests/plugins/FixturePlugin.h"

/// The root object of a plug-in that keeps the contract except for one fault.
class FaultyPlugin : public FixturePlugin
{
    Q_OBJECT

public:
    FaultyPlugin();

    QList<Operation *> createPrototypes() override;
    QString pluginId() const override;
    QString name() const override;
    QString version() const override;
    int apiVersion() const override;
    PluginManifest manifest() const override;
    QStringList requiredCapabilities() const override;

private:
    QList<Operation *> newPrototypes();
    Operation *newFirstStep();

    QList<Operation *> m_handedOut;
};

/// What the entry point of a module with the fault \a fault is to return.
Q_DECL_EXPORT QObject *faultyInstance(const char *fault);
