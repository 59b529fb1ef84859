#include "FixturePlugin.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace
{
// Does what is `wanted` at `moment`: a moment, a colon and a fault.
void pass(const char *moment, const QByteArray &wanted = qgetenv("FIXTURE_FAULT"))
{
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

} // namespace

// Its faults are those that the environment asks for, and those of its setting.
class MomentStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(QString fault READ fault WRITE setFault)

public:
    using FixtureStep::FixtureStep;

    QString fault() const
    {
        return m_fault;
    }
    void setFault(const QString &fault)
    {
        pass("write", fault.toUtf8());
        m_fault = fault;
    }
    QString toString() const override
    {
        pass("texts");
        pass("texts", m_fault.toUtf8());
        return FixtureStep::toString();
    }
    Operation *clone(QObject *parent) const override
    {
        pass("clone");
        pass("clone", m_fault.toUtf8());
        auto *copy = new MomentStep(typeId(), parent);
        copy->m_fault = m_fault;
        return copy;
    }
    void saveOperation(QDataStream &stream) const override
    {
        pass("save", m_fault.toUtf8());
        FixtureStep::saveOperation(stream);
        stream << m_fault;
    }
    void loadOperation(QDataStream &stream) override
    {
        FixtureStep::loadOperation(stream);
        stream >> m_fault;
        pass("read", m_fault.toUtf8());
    }
    void doOperation() const override
    {
        pass("run");
    }

private:
    QString m_fault;
};

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
