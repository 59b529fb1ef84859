#include "FixturePlugin.h"

#include <QPointer>

#include <cstring>
#include <stdexcept>

namespace
{
const char *activeFault = "";

// Starts at 0 again only when the library was really unloaded in between.
int instanceCount = 0;

bool has(const char *fault)
{
    return std::strcmp(activeFault, fault) == 0;
}

/// Has the icon of a list step.
class SortIconStep : public FixtureStep
{
public:
    SortIconStep() : FixtureStep("fixture.icon") { }

    QString icon() const override
    {
        return ":/images/list_sort.svg";
    }
};

class FaultyFixture : public FixturePlugin
{
public:
    QList<Operation *> createPrototypes() override
    {
        if (has("ThrowingNumber"))
            throw 42;
        if (has("ThrowingPlugin"))
            throw std::runtime_error("no steps today");
        if (has("LongTypeId"))
            return {new FixtureStep("fixture." + QString(992, 'x')),
                    new FixtureStep("fixture." + QString(993, 'x'))};
        if (has("EmptyTypeId"))
            return {new FixtureStep(QString())};
        if (has("ListClash"))
            return {new FixtureStep("list.shuffle"), new FixtureStep("list.sort")};
        if (has("SecondVersion"))
            return {new FixtureStep("fixture.second")};
        if (has("SharedIcon"))
            return {new SortIconStep};
        if (has("OwnedPrototype"))
            return {new FixtureStep("fixture.first", this)};
        QList<Operation *> prototypes = FixturePlugin::createPrototypes();
        if (has("DuplicateTypeId"))
            prototypes.append(new FixtureStep("fixture.first"));
        if (has("ForeignTypeId"))
            prototypes.append(new FixtureStep("elsewhere.second"));
        if (has("NullPrototype"))
            prototypes.append(nullptr);
        if (has("RepeatedPrototype"))
            prototypes.append(prototypes.first());
        return prototypes;
    }
    // The number of root objects made since the library was loaded.
    QString version() const override
    {
        if (has("SecondVersion"))
            return "2.0.0";
        return has("CountingPlugin") ? QString::number(instanceCount) : FixturePlugin::version();
    }
    QString pluginId() const override
    {
        return has("SharedIcon") ? "com.example.SharedIcon" : FixturePlugin::pluginId();
    }
    int apiVersion() const override
    {
        return FixturePlugin::apiVersion() + (has("NewerApi") ? 1 : 0);
    }
    PluginManifest manifest() const override
    {
        PluginManifest manifest = FixturePlugin::manifest();
        if (has("LongManifest"))
            manifest.name = manifest.version = QString(20000000, 'x');
        if (has("OldManifest"))
            --manifest.apiVersion;
        if (has("ListClash"))
            manifest.typeIdPrefix = QString("list.");
        return manifest;
    }
    QStringList requiredCapabilities() const override
    {
        return has("UnknownCapability") ? QStringList{"hasListType", "hasWarpDrive"} : QStringList();
    }
};
} // namespace

/// What the entry point of a module with the fault \a fault is to return.
QObject *faultyInstance(const char *fault);

QObject *faultyInstance(const char *fault)
{
    static QPointer<QObject> instance;
    activeFault = fault;
    if (!instance) {
        instance = new FaultyFixture;
        ++instanceCount;
    }
    return instance;
}
