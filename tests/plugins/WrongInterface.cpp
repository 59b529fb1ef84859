#include "FixturePlugin.h"

class WrongInterface : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.example.SomethingElse/1.0")

public:
    WrongInterface()
    {
        qFatal("none of the code of a plug-in for another interface may run");
    }
};

#include "WrongInterface.moc"
