#include "FixturePlugin.h"

#include "hostapi/VariableScope.h"

#include <cstdio>
#include <stdexcept>

namespace
{
class ThrowingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    void doOperation() const override
    {
        throw std::runtime_error("out of paper");
    }
    void loadOperation(QDataStream &) override
    {
        throw std::runtime_error("out of glasses");
    }
    Operation *clone(QObject *parent) const override
    {
        return new ThrowingStep(typeId(), parent);
    }
};

// Its texts hold what could break a line or command a terminal.
class EscapingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    void doOperation() const override
    {
        qWarning("first\nsecond\x1b[2J");
    }
    QString toString() const override
    {
        return QString("line\nbreak\x1b[31m");
    }
    Operation *clone(QObject *parent) const override
    {
        return new EscapingStep(typeId(), parent);
    }
};

// Leaves values of kinds that scripts do not have in variables that nobody declared.
class WritingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    void doOperation() const override
    {
        m_variableScope->set("texts", QStringList{"a", "b"});
        m_variableScope->set("bytes", QByteArray("\0\xff", 2));
        m_variableScope->set("map", QVariantMap{{"key", 1}});
        m_variableScope->set("surrogate", QString(QChar(0xD800)));
        m_variableScope->set("object", QVariant::fromValue(static_cast<QObject *>(nullptr)));
        m_variableScope->set("nothing", QVariant());
    }
    Operation *clone(QObject *parent) const override
    {
        return new WritingStep(typeId(), parent);
    }
};

class PrintingStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    void doOperation() const override
    {
        std::fputs("printed on standard output", stdout);
    }
    Operation *clone(QObject *parent) const override
    {
        return new PrintingStep(typeId(), parent);
    }
};

class UnclonableStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    Operation *clone(QObject *) const override
    {
        return nullptr;
    }
};
} // namespace

class SettingsStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(qlonglong size MEMBER m_size)
    Q_PROPERTY(QStringList words MEMBER m_words)
    Q_PROPERTY(QVariant anything MEMBER m_anything)
    Q_PROPERTY(Color color MEMBER m_color)
    Q_PROPERTY(int fixed READ fixed)
    Q_PROPERTY(int enabled MEMBER m_enabled)

public:
    enum Color { Red, Green };
    Q_ENUM(Color)

    using FixtureStep::FixtureStep;

    int fixed() const
    {
        return 7;
    }
    Operation *clone(QObject *parent) const override
    {
        auto *copy = new SettingsStep(typeId(), parent);
        copy->m_ratio = m_ratio;
        copy->m_size = m_size;
        copy->m_words = m_words;
        copy->m_anything = m_anything;
        copy->m_color = m_color;
        return copy;
    }

private:
    double m_ratio = 0.5;
    qlonglong m_size = 0;
    QStringList m_words;
    QVariant m_anything;
    Color m_color = Red;
    int m_enabled = 0;
};

// Throws an exception of its own while it is edited.
class BrittleStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(int mood READ mood WRITE setMood)

public:
    using FixtureStep::FixtureStep;

    int mood() const
    {
        return 0;
    }
    void setMood(int)
    {
        throw BadMood();
    }
    Operation *clone(QObject *parent) const override
    {
        return new BrittleStep(typeId(), parent);
    }

private:
    struct BadMood : std::exception
    {
        const char *what() const noexcept override
        {
            return "bad mood";
        }
    };
};

class HostileSteps : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    QList<Operation *> createPrototypes() override
    {
        return {new ThrowingStep("fixture.throw"),        new EscapingStep("fixture.escape"),
                new PrintingStep("fixture.print"),        new WritingStep("fixture.write"),
                new UnclonableStep("fixture.unclonable"), new SettingsStep("fixture.settings"),
                new BrittleStep("fixture.brittle")};
    }
};

#include "HostileSteps.moc"
