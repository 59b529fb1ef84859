#include "FixturePlugin.h"

class ListClash : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("list.shuffle"), new FixtureStep("list.sort")};
    }
    PluginManifest manifest() const override
    {
        PluginManifest manifest = FixturePlugin::manifest();
        manifest.typeIdPrefix = QString("list.");
        return manifest;
    }
};

#include "ListClash.moc"
