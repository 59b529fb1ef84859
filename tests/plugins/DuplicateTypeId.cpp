#include "FixturePlugin.h"

class DuplicateTypeId : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first"), new FixtureStep("fixture.first")};
    }
};

#include "DuplicateTypeId.moc"
