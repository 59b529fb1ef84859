#include "FixturePlugin.h"

class ForeignTypeId : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first"), new FixtureStep("elsewhere.second")};
    }
};

#include "ForeignTypeId.moc"
