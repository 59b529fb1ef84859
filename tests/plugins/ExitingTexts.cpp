#include "FixturePlugin.h"

#include <cstdlib>

namespace
{
class ExitingNameStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString typeName() const override
    {
        std::exit(0);
    }
    Operation *clone(QObject *parent) const override
    {
        return new ExitingNameStep(typeId(), parent);
    }
};
} // namespace

class ExitingTexts : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new ExitingNameStep("fixture.name")};
    }
};

#include "ExitingTexts.moc"
