#include "FixturePlugin.h"

class ThrowingNumber : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        throw 42;
    }
};

#include "ThrowingNumber.moc"
