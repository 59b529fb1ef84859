#include "FixturePlugin.h"

class OldManifest : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    PluginManifest manifest() const override
    {
        PluginManifest manifest = FixturePlugin::manifest();
        manifest.apiVersion = operationCoreApiVersion - 1;
        return manifest;
    }
};

#include "OldManifest.moc"
