#include "FixturePlugin.h"

#include <stdexcept>

namespace
{
// Throws whatever a host asks it, but for its type id. Only its prototype can be cloned.
class ThrowingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString root() const override
    {
        throw std::runtime_error("out of places");
    }
    QString typeName() const override
    {
        throw std::runtime_error("out of names");
    }
    QString icon() const override
    {
        throw std::runtime_error("out of paint");
    }
    QString toString() const override
    {
        throw std::runtime_error("out of words");
    }
    QString description() const override
    {
        throw 1;
    }
    Operation *clone(QObject *parent) const override
    {
        if (m_isClone)
            throw std::runtime_error("out of copies");
        auto *copy = new ThrowingStep(typeId(), parent);
        copy->m_isClone = true;
        return copy;
    }

private:
    bool m_isClone = false;
};

// Says more than a host takes.
class TalkingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString toString() const override
    {
        return "begin" + QString(20000000, 'x') + "end";
    }
    Operation *clone(QObject *parent) const override
    {
        return new TalkingStep(typeId(), parent);
    }
};

// Its texts are not what they seem.
class DeceivingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString typeName() const override
    {
        return QString::fromUtf8("<b>a\u202eb|c`d");
    }
    QString toString() const override
    {
        return QString::fromUtf8("a\u202eb");
    }
    QString description() const override
    {
        return QString::fromUtf8("a\u2066b\u001b");
    }
    Operation *clone(QObject *parent) const override
    {
        return new DeceivingStep(typeId(), parent);
    }
};
} // namespace

class RudeSteps : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new ThrowingStep("fixture.throw"), new TalkingStep("fixture.talk"),
                new DeceivingStep("fixture.deceive")};
    }
};

#include "RudeSteps.moc"
