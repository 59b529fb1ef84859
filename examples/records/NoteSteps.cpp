#include "NoteSteps.h"

#include "NoteMarkOperation.h"
#include "NoteSayOperation.h"

QList<Operation *> NoteSteps::createPrototypes()
{
    return {
        new NoteSayOperation,
        new NoteMarkOperation,
    };
}

QString NoteSteps::pluginId() const
{
    return QLatin1String("com.example.NoteSteps");
}

QString NoteSteps::name() const
{
    return tr("Notes");
}

QString NoteSteps::version() const
{
    return RELEASE == 1 ? QLatin1String("1.0.0") : QLatin1String("2.0.0");
}

int NoteSteps::apiVersion() const
{
    return operationCoreApiVersion;
}

PluginManifest NoteSteps::manifest() const
{
    PluginManifest manifest;
    manifest.pluginId = pluginId();
    manifest.name = name();
    manifest.version = version();
    manifest.apiVersion = apiVersion();
    manifest.typeIdPrefix = QLatin1String("note.");
    manifest.requiredCapabilities = requiredCapabilities();
    manifest.categoryOrder.insert(NoteSayOperation().root(), 800);
    manifest.typeOrder.insert(QLatin1String("note.say"), 0);
    manifest.typeOrder.insert(QLatin1String("note.mark"), 10);
    return manifest;
}

QStringList NoteSteps::requiredCapabilities() const
{
    return {};
}
