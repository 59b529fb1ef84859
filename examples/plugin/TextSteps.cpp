#include "TextSteps.h"

#include "TextJoinOperation.h"
#include "TextSplitOperation.h"

QList<Operation *> TextSteps::createPrototypes()
{
    return {
        new TextJoinOperation,
        new TextSplitOperation,
    };
}

QString TextSteps::pluginId() const
{
    return QLatin1String("com.example.TextSteps");
}

QString TextSteps::name() const
{
    return tr("文本插件");
}

QString TextSteps::version() const
{
    return QLatin1String("1.0.0");
}

int TextSteps::apiVersion() const
{
    return operationCoreApiVersion;
}

PluginManifest TextSteps::manifest() const
{
    PluginManifest manifest;
    manifest.pluginId = pluginId();
    manifest.name = name();
    manifest.version = version();
    manifest.apiVersion = apiVersion();
    manifest.typeIdPrefix = QLatin1String("text.");
    manifest.requiredCapabilities = requiredCapabilities();
    manifest.categoryOrder.insert(TextJoinOperation().root(), 700);
    manifest.typeOrder.insert(QLatin1String("text.join"), 0);
    manifest.typeOrder.insert(QLatin1String("text.split"), 10);
    return manifest;
}

QStringList TextSteps::requiredCapabilities() const
{
    return {QLatin1String("hasListType")};
}
