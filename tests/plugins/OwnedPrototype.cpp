#include "FixturePlugin.h"

class OwnedPrototype : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first", this)};
    }
};

#include "OwnedPrototype.moc"
