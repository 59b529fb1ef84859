#include "FixturePlugin.h"

#include <stdexcept>

namespace
{
class ThrowingNameStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString typeName() const override
    {
        throw std::runtime_error("out of words");
    }
    Operation *clone(QObject *parent) const override
    {
        return new ThrowingNameStep(typeId(), parent);
    }
};
} // namespace

class ThrowingTexts : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new ThrowingNameStep("fixture.name")};
    }
};

#include "ThrowingTexts.moc"
