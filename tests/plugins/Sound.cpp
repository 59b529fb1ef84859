#include "FixturePlugin.h"

class Sound : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)
};

#include "Sound.moc"
