#include "FaultyPlugin.h"

#include "FaultySteps.h"
#include "hostapi/VariableScope.h"

#include <QFile>
#include <QLibrary>
#include <QPointer>
#include <QResource>
#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace
{
const char *activeFault = "";

int callCount = 0;

// Keeps the compiler from leaving out an allocation that nobody uses.
char *volatile lostMemory = nullptr;

// None of what stays behind may lie in this library: it will be gone.
void leaveThreadBehind()
{
    auto *thread = new QThread;
    thread->start();
    // A process that ends while a thread of it is starting may hang, so wait until this one handles events.
    auto *object = new QObject;
    object->moveToThread(thread);
    QMetaObject::invokeMethod(object, "deleteLater", Qt::BlockingQueuedConnection);
}
} // namespace

bool has(const char *id)
{
    return std::strcmp(activeFault, id) == 0;
}

QObject *faultyInstance(const char *fault)
{
    static QPointer<QObject> instance;
    static QObject *first = nullptr;
    activeFault = fault;
    if (has("crashes-on-load"))
        std::abort();
    if (has("library.loads"))
        return new QObject;
    if (has("library.instance-again") && first)
        return first;
    if (!instance || has("library.one-instance"))
        instance = first = new FaultyPlugin;
    return instance;
}

FaultyPlugin::FaultyPlugin()
{
    if (has("library.load-time"))
        QThread::msleep(1200);
    if (has("library.unloads"))
        QLibrary(QStringLiteral(SELF_LOADING_PLUGIN)).load();
    if (has("library.reload-memory"))
        std::memset(lostMemory = new char[1024 * 1024], 1, 1024 * 1024);
    if (has("library.reload-handles"))
        (new QFile(QStringLiteral(LEFT_BEHIND_RESOURCE)))->open(QIODevice::ReadOnly);
    if (has("library.reload-threads"))
        leaveThreadBehind();
#ifdef Q_OS_WIN
    HMODULE pinned = nullptr;
    if (has("stays-in-memory"))
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"stays-in-memory.dll", &pinned);
#endif
    if (has("library.reload-resources"))
        QResource::registerResource(QStringLiteral(LEFT_BEHIND_RESOURCE));
}

Operation *FaultyPlugin::newFirstStep()
{
    if (has("prototypes.casts"))
        return new OddCastStep;
    if (has("settings.access"))
        return new ReadOnlyStep;
    if (has("schema.prefixes"))
        return new UnknownPrefixStep;
    if (has("schema.properties"))
        return new UnknownPropertyStep;
    if (has("schema.duplicate-keys"))
        return new DuplicateKeyStep;
    if (has("schema.labels"))
        return new MissingLabelStep;
    if (has("schema.editors"))
        return new UnknownEditorStep;
    if (has("schema.kinds"))
        return new UnknownKindStep;
    if (has("schema.unused-keys"))
        return new UnusedKeyStep;
    if (has("schema.choices"))
        return new MissingChoicesStep;
    if (has("schema.choice-type"))
        return new ChoiceOfTextsStep;
    if (has("schema.rule-form"))
        return new UnreadableRuleStep;
    if (has("schema.rule-property"))
        return new RuleOnNothingStep;
    if (has("schema.rule-value"))
        return new ImpossibleRuleStep;
    if (has("schema.rule-cycle"))
        return new RuleCycleStep;
    return new SampleStep(has("prototypes.no-parent") ? this : nullptr);
}

QList<Operation *> FaultyPlugin::newPrototypes()
{
    Operation *second = has("prototypes.class") ? static_cast<Operation *>(new NamelessStep) : new OtherStep;
    return {newFirstStep(), second};
}

QList<Operation *> FaultyPlugin::createPrototypes()
{
    static VariableScope scope;
    if (has("prototypes.fresh") && !m_handedOut.isEmpty())
        return m_handedOut;
    if (has("prototypes.handed-over"))
        qDeleteAll(m_handedOut);
    QList<Operation *> prototypes = newPrototypes();
    m_handedOut = prototypes;
    if (has("prototypes.not-null"))
        prototypes.append(nullptr);
    if (has("prototypes.same-set") && ++callCount % 2 == 0)
        std::reverse(prototypes.begin(), prototypes.end());
    if (has("prototypes.untouched"))
        prototypes.first()->setVariableScope(&scope);
    return prototypes;
}

QString FaultyPlugin::pluginId() const
{
    if (has("changes-its-id"))
        return QStringLiteral("com.example.Sample%1").arg(++callCount);
    return has("identity.id-form") ? QStringLiteral("sample plug-in") : QStringLiteral("com.example.Sample");
}

QString FaultyPlugin::name() const
{
    if (has("identity.non-empty"))
        return QString();
    if (has("identity.stable"))
        return QStringLiteral("Sample %1").arg(++callCount);
    return QStringLiteral("Sample");
}

QString FaultyPlugin::version() const
{
    return has("identity.version-form") ? QStringLiteral("newest") : QStringLiteral("1.2.3");
}

int FaultyPlugin::apiVersion() const
{
    return operationCoreApiVersion + (has("identity.api-version") ? 1 : 0);
}

QStringList FaultyPlugin::requiredCapabilities() const
{
    return has("identity.capabilities") ? QStringList{QStringLiteral("timeTravel")} : QStringList();
}

PluginManifest FaultyPlugin::manifest() const
{
    const SampleStep first;
    const OtherStep second;
    PluginManifest manifest = FixturePlugin::manifest();
    if (has("identity.manifest-agrees"))
        manifest.version = QStringLiteral("1.2.4");
    manifest.typeIdPrefix = has("identity.prefix") ? QStringLiteral("samples.") : QStringLiteral("sample.");
    if (!has("identity.category-weights-complete"))
        manifest.categoryOrder.insert(first.root(), 100);
    if (has("identity.category-weights-known"))
        manifest.categoryOrder.insert(QStringLiteral("Others"), 200);
    manifest.typeOrder.insert(first.typeId(), 10);
    if (!has("identity.type-weights-complete"))
        manifest.typeOrder.insert(second.typeId(), 0);
    if (has("identity.type-weights-known"))
        manifest.typeOrder.insert(QStringLiteral("sample.third"), 20);
    return manifest;
}
