#include "FixturePlugin.h"

class UnknownCapability : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QStringList requiredCapabilities() const override
    {
        return {"hasListType", "hasWarpDrive"};
    }
};

#include "UnknownCapability.moc"
