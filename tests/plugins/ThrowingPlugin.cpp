#include "FixturePlugin.h"

#include <stdexcept>

class ThrowingPlugin : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        throw std::runtime_error("no steps today");
    }
};

#include "ThrowingPlugin.moc"
