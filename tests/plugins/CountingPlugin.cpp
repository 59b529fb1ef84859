#include "FixturePlugin.h"

namespace
{
// Starts at 0 again only when the library was really unloaded in between.
int instanceCount = 0;
} // namespace

// A sound plug-in whose version is the number of root objects made since the library was loaded.
class CountingPlugin : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    CountingPlugin()
    {
        ++instanceCount;
    }

    QString version() const override
    {
        return QString::number(instanceCount);
    }
};

#include "CountingPlugin.moc"
