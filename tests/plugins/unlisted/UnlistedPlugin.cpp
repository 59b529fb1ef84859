// A plug-in that keeps the contract, or breaks it in one way that no check was made for.

#include "ActiveFault.h"
#include "GrowingStep.h"
#include "JoinStep.h"
#include "Manners.h"
#include "StoreStep.h"
#include "UnusualSteps.h"
#include "tests/plugins/FixturePlugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

class UnlistedPlugin : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)
    Q_INTERFACES(IOperationPlugin)

public:
    UnlistedPlugin();
    ~UnlistedPlugin() override;

    QList<Operation *> createPrototypes() override;
    QString pluginId() const override;
    QString name() const override;
    QString version() const override;
    PluginManifest manifest() const override;
    QStringList requiredCapabilities() const override;

private:
    QList<QPointer<Operation>> m_handedOut;
    int m_calls = 0;
};

namespace
{
Operation *newStoreStep()
{
    if (has("schema.blank-label"))
        return new BlankLabelStep;
    if (has("schema.double-label"))
        return new DoubleLabelStep;
    if (has("schema.control-label"))
        return new ControlLabelStep;
    if (has("schema.latin-label"))
        return new LatinLabelStep;
    if (has("schema.double-choice"))
        return new DoubleChoiceStep;
    if (has("schema.blank-choice"))
        return new BlankChoiceStep;
    if (has("schema.name-on-int"))
        return new NameOnIntStep;
    if (has("schema.number-on-bool"))
        return new NumberOnBoolStep;
    if (has("schema.value-on-date"))
        return new ValueOnDateStep;
    if (has("schema.own-rule"))
        return new OwnRuleStep;
    if (has("schema.rule-on-text"))
        return new RuleOnTextStep;
    if (has("schema.kind-case"))
        return new KindCaseStep;
    if (has("sound.odd-choices"))
        return new OddChoicesStep;
    if (has("sound.note"))
        return new NoteStep;
    if (has("sound.watch"))
        return new WatchStep;
    if (has("sound.fill"))
        return new FillStep;
    if (has("sound.range"))
        return new RangeStep;
    if (has("sound.tail") || has("persistence.tail-zero") || has("persistence.tail-half")
        || has("persistence.tail-kept"))
        return new GrowingStep;
    return new StoreStep;
}

// Ends the process while the library is unloaded.
struct LastBreath
{
    ~LastBreath()
    {
        if (isFatal)
            std::abort();
    }

    const bool isFatal = has("library.dies-at-unloading");
} lastBreath;

void dieAtExit()
{
    std::abort();
}
} // namespace

UnlistedPlugin::UnlistedPlugin()
{
    misbehave(Call::Construct);
    if (has("library.dies-at-exit"))
        std::atexit(dieAtExit);
    if (has("library.root-timer"))
        startTimer(1000);
}

UnlistedPlugin::~UnlistedPlugin()
{
    if (has("prototypes.die-with-root")) {
        for (const QPointer<Operation> &step : qAsConst(m_handedOut))
            delete step.data();
    }
}

QList<Operation *> UnlistedPlugin::createPrototypes()
{
    misbehave(Call::Prototypes);
    QList<Operation *> prototypes{new JoinStep, new GlueStep, newStoreStep()};
    if (has("prototypes.order-by-folder") && QDir::tempPath().contains(QLatin1String("everywhere-1")))
        std::reverse(prototypes.begin(), prototypes.end());
    if (has("prototypes.shuffled"))
        std::rotate(prototypes.begin(), prototypes.begin() + ++m_calls % prototypes.size(), prototypes.end());
    if (has("prototypes.named"))
        prototypes.first()->setObjectName(QStringLiteral("first"));
    if (has("prototypes.later-set") && ++m_calls > 5)
        delete prototypes.takeLast();
    if (has("prototypes.adopts-later") && ++m_calls > 1)
        prototypes.first()->setParent(this);
    if (has("prototypes.shared-child"))
        prototypes.first()->children().append(prototypes.last());
    for (Operation *step : qAsConst(prototypes))
        m_handedOut.append(step);
    return prototypes;
}

QString UnlistedPlugin::pluginId() const
{
    if (has("identity.translated-id"))
        return QObject::tr("com.example.Unlisted");
    if (has("identity.id-per-process"))
        return QString("com.example.Unlisted%1").arg(getpid());
    return QString("com.example.Unlisted");
}

QString UnlistedPlugin::name() const
{
    if (has("identity.name-control"))
        return QString("Unlisted\x1b[31m");
    if (has("identity.name-lines"))
        return QString("Unlisted\nplug-in");
    if (has("identity.name-replacement"))
        return QString("Unlisted ") + QChar(0xfffd);
    if (has("identity.name-in-library"))
        return QStringLiteral("Unlisted");
    if (has("sound.names"))
        return QString::fromUtf8("مرحبا \u200f👩‍💻 列表 ™");
    return QString("Unlisted");
}

QString UnlistedPlugin::version() const
{
    misbehave(Call::Identity);
    if (has("identity.version-digits"))
        return QString::fromUtf8("１.0.0");
    return has("identity.version-blank") ? QString("1.0.0 \n") : QString("1.0.0");
}

PluginManifest UnlistedPlugin::manifest() const
{
    const JoinStep join;
    const GlueStep glue;
    PluginManifest manifest = FixturePlugin::manifest();
    manifest.typeIdPrefix = QString("join.");
    manifest.categoryOrder = {{QString("Joining"), 10}, {QString("Storing"), 20}};
    if (has("identity.manifest-api"))
        --manifest.apiVersion;
    manifest.typeOrder = {{join.typeId(), 1}, {glue.typeId(), 2}, {QString("join.store"), 3}};
    if (has("identity.weights-drift"))
        manifest.typeOrder[join.typeId()] += m_handedOut.size();
    return manifest;
}

QStringList UnlistedPlugin::requiredCapabilities() const
{
    if (has("identity.double-capability"))
        return {QString("hasListType"), QString("hasListType")};
    if (has("identity.capability-blank"))
        return {QString(" hasListType")};
    return {QString("hasListType")};
}

#include "UnlistedPlugin.moc"
