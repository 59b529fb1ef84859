#include "FixturePlugin.h"

class NullPrototype : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first"), nullptr};
    }
};

#include "NullPrototype.moc"
