#include "FixturePlugin.h"

class RepeatedPrototype : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        auto *step = new FixtureStep("fixture.first");
        return {step, step};
    }
};

#include "RepeatedPrototype.moc"
