#include "FixturePlugin.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace
{
// Does what the environment asks for at `moment`: `FIXTURE_FAULT` is a moment, a colon and a fault.
void pass(const char *moment)
{
    const QByteArray wanted = qgetenv("FIXTURE_FAULT");
    if (!wanted.startsWith(QByteArray(moment) + ':'))
        return;
    const QByteArray fault = wanted.mid(int(std::strlen(moment)) + 1);
    if (fault == "crash")
        std::abort();
    if (fault == "exit")
        std::_Exit(3);
    if (fault == "throw")
        throw std::runtime_error("out of paper");
    if (fault == "print") {
        std::puts("printed on standard output");
        std::fflush(stdout);
    }
    if (fault == "leak")
        static_cast<void>(new char[1 << 20]);
    for (volatile bool isIdle = fault == "hang"; isIdle;) { }
}

class MomentStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString toString() const override
    {
        pass("texts");
        return FixtureStep::toString();
    }
    Operation *clone(QObject *parent) const override
    {
        pass("clone");
        return new MomentStep(typeId(), parent);
    }
    void doOperation() const override
    {
        pass("run");
    }
};
} // namespace

class FaultyMoments : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        pass("load");
        return {new MomentStep("fixture.moment")};
    }
};

#include "FaultyMoments.moc"
