#include "FixturePlugin.h"

class EmptyTypeId : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep(QString())};
    }
};

#include "EmptyTypeId.moc"
