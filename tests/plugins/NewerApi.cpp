#include "FixturePlugin.h"

class NewerApi : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    int apiVersion() const override
    {
        return operationCoreApiVersion + 1;
    }
};

#include "NewerApi.moc"
