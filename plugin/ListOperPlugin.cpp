#include "ListOperPlugin.h"

#include "operations/ListAddOperation.h"
#include "operations/ListClearOperation.h"
#include "operations/ListDedupOperation.h"
#include "operations/ListGetOperation.h"
#include "operations/ListIntersectOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"
#include "operations/ListReverseOperation.h"
#include "operations/ListSortOperation.h"
#include "operations/ListSubtractOperation.h"

// Texts that leave the plug-in are copies on the heap, not QStringLiterals: those would dangle in a host
// that keeps them after it has unloaded the library.

ListOperPlugin::ListOperPlugin() = default;

ListOperPlugin::~ListOperPlugin() = default;

QList<Operation *> ListOperPlugin::createPrototypes()
{
    QList<Operation *> prototypes;
    prototypes.reserve(10);
    prototypes.append(new ListAddOperation);
    prototypes.append(new ListRemoveOperation);
    prototypes.append(new ListGetOperation);
    prototypes.append(new ListClearOperation);
    prototypes.append(new ListSortOperation);
    prototypes.append(new ListMergeOperation);
    prototypes.append(new ListReverseOperation);
    prototypes.append(new ListDedupOperation);
    prototypes.append(new ListIntersectOperation);
    prototypes.append(new ListSubtractOperation);
    return prototypes;
}

QString ListOperPlugin::pluginId() const
{
    return QLatin1String("com.tallowby.Quillmap.ListOperPlugin");
}

QString ListOperPlugin::name() const
{
    return QObject::tr("列表操作插件");
}

QString ListOperPlugin::version() const
{
    return QLatin1String("1.0.0");
}

int ListOperPlugin::apiVersion() const
{
    return operationCoreApiVersion;
}

PluginManifest ListOperPlugin::manifest() const
{
    PluginManifest manifest;
    manifest.pluginId = pluginId();
    manifest.name = name();
    manifest.version = version();
    manifest.apiVersion = operationCoreApiVersion;
    manifest.typeIdPrefix = QLatin1String("list.");
    manifest.requiredCapabilities = QStringList{QLatin1String("hasListType")};
    manifest.categoryOrder.insert(QString::fromUtf8("列表"), 600);
    manifest.typeOrder.insert(QLatin1String("list.sort"), 0);
    manifest.typeOrder.insert(QLatin1String("list.reverse"), 10);
    manifest.typeOrder.insert(QLatin1String("list.clear"), 20);
    manifest.typeOrder.insert(QLatin1String("list.dedup"), 30);
    manifest.typeOrder.insert(QLatin1String("list.get"), 40);
    manifest.typeOrder.insert(QLatin1String("list.intersect"), 50);
    manifest.typeOrder.insert(QLatin1String("list.subtract"), 60);
    manifest.typeOrder.insert(QLatin1String("list.merge"), 70);
    manifest.typeOrder.insert(QLatin1String("list.add"), 80);
    manifest.typeOrder.insert(QLatin1String("list.remove"), 90);
    return manifest;
}

QStringList ListOperPlugin::requiredCapabilities() const
{
    return QStringList{QLatin1String("hasListType")};
}
