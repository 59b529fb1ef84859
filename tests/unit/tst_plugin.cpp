#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"
#include "tests/support/ContextTranslator.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepTable.h"
#include "tests/support/TestPaths.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QtTest>

#include <memory>
#include <vector>

namespace
{
// A loader that really unloads; by default Qt keeps plug-ins in memory.
class Loader : public QPluginLoader
{
public:
    Loader() : QPluginLoader(TestPaths::listPlugin())
    {
        setLoadHints({});
    }
    ~Loader() override
    {
        unload();
    }

    IOperationPlugin *plugin()
    {
        return qobject_cast<IOperationPlugin *>(instance());
    }
};

using Prototypes = std::vector<std::unique_ptr<Operation>>;

Prototypes prototypesOf(IOperationPlugin &plugin)
{
    Prototypes prototypes;
    for (Operation *prototype : plugin.createPrototypes())
        prototypes.emplace_back(prototype);
    return prototypes;
}

#ifdef Q_OS_LINUX
bool isMapped(const QString &fileName)
{
    QFile maps("/proc/self/maps");
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(QFileInfo(fileName).fileName().toUtf8());
}
#endif
} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    void loaderMetaData();
    void metaDataBlock();
    void identity();
    void manifest();
    void nameIsTranslatedInThePlainContext();
    void prototypes();
    void manifestCoversThePrototypes();
    void metaObject();
    void metaCast();
    void instanceIsOneUntilDeleted();
    void stepsRun();
    void nothingStaysAfterUnloading();
};

void TestPlugin::loaderMetaData()
{
    const QJsonObject metaData = QPluginLoader(TestPaths::listPlugin()).metaData();
    QCOMPARE(metaData.value("IID").toString(), QString("com.tallowby.Quillmap.IOperationPlugin/1.0"));
    QCOMPARE(metaData.value("className").toString(), QString("ListOperPlugin"));
    QVERIFY(metaData.value("MetaData").toObject().isEmpty());
}

void TestPlugin::metaDataBlock()
{
    QByteArray expected = "QTMETADATA !";
    expected += QByteArray::fromHex("00 05 0f");
    expected += char(qPluginArchRequirements()); // 0 for a release build
    expected += QByteArray::fromHex("bf 02 782a") + "com.tallowby.Quillmap.IOperationPlugin/1.0";
    expected += QByteArray::fromHex("03 6e") + "ListOperPlugin" + QByteArray::fromHex("ff");
    QCOMPARE(expected.size(), 79);

    QLibrary library(TestPaths::listPlugin());
    const auto query =
        reinterpret_cast<QtPluginMetaDataFunction>(library.resolve("qt_plugin_query_metadata"));
    QVERIFY2(query, qPrintable(library.errorString()));
    const QByteArray block(query(), expected.size());
    QVERIFY(library.unload());
    QCOMPARE(block.toHex(' '), expected.toHex(' '));

    QFile file(TestPaths::listPlugin());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count(expected), 1);
}

void TestPlugin::identity()
{
    Loader loader;
    IOperationPlugin *const plugin = loader.plugin();
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QCOMPARE(plugin->pluginId(), QString("com.tallowby.Quillmap.ListOperPlugin"));
    QCOMPARE(plugin->name(), QString("列表操作插件"));
    QCOMPARE(plugin->version(), QString("1.0.0"));
    QCOMPARE(plugin->apiVersion(), 2);
    QCOMPARE(plugin->requiredCapabilities(), QStringList("hasListType"));
}

void TestPlugin::manifest()
{
    Loader loader;
    const PluginManifest manifest = loader.plugin()->manifest();
    QCOMPARE(manifest.pluginId, QString("com.tallowby.Quillmap.ListOperPlugin"));
    QCOMPARE(manifest.name, QString("列表操作插件"));
    QCOMPARE(manifest.version, QString("1.0.0"));
    QCOMPARE(manifest.apiVersion, 2);
    QCOMPARE(manifest.typeIdPrefix, QString("list."));
    QCOMPARE(manifest.requiredCapabilities, QStringList("hasListType"));
    QCOMPARE(manifest.auxiliaryList, QStringList());
    QCOMPARE(manifest.categoryOrder, (QMap<QString, int>{{"列表", 600}}));
    QMap<QString, int> weights;
    for (const StepRow &row : stepTable())
        weights.insert(row.typeId, row.weight);
    QCOMPARE(manifest.typeOrder, weights);
}

void TestPlugin::nameIsTranslatedInThePlainContext()
{
    Loader loader;
    IOperationPlugin *const plugin = loader.plugin();
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(plugin->name(), QString("<QObject>列表操作插件"));
    QCOMPARE(plugin->pluginId(), QString("com.tallowby.Quillmap.ListOperPlugin"));
    QCOMPARE(plugin->version(), QString("1.0.0"));
    QCOMPARE(plugin->requiredCapabilities(), QStringList("hasListType"));
    const PluginManifest manifest = plugin->manifest();
    QCOMPARE(manifest.name, QString("<QObject>列表操作插件"));
    QCOMPARE(manifest.categoryOrder.keys(), QStringList("列表"));
    QCOMPARE(manifest.typeIdPrefix, QString("list."));
    QVERIFY(manifest.typeOrder.contains("list.sort"));
}

void TestPlugin::prototypes()
{
    Loader loader;
    IOperationPlugin *const plugin = loader.plugin();
    const Prototypes sets[] = {prototypesOf(*plugin), prototypesOf(*plugin)};
    QStringList expected;
    for (const StepRow &row : stepTable())
        expected += row.className;
    QSet<Operation *> all;
    for (const Prototypes &set : sets) {
        QStringList classNames;
        for (const auto &prototype : set) {
            QVERIFY(!prototype->parent());
            QVERIFY2(!stepRow(prototype->typeId()).className.isEmpty(),
                     qPrintable(prototype->typeId() + " has no row in tests/support/StepTable.cpp"));
            classNames += prototype->metaObject()->className();
            all.insert(prototype.get());
        }
        QCOMPARE(classNames, expected);
    }
    QCOMPARE(all.size(), 2 * expected.size());
}

void TestPlugin::manifestCoversThePrototypes()
{
    Loader loader;
    const PluginManifest manifest = loader.plugin()->manifest();
    QCOMPARE(manifest.apiVersion, loader.plugin()->apiVersion());
    QStringList typeIds;
    for (const auto &prototype : prototypesOf(*loader.plugin())) {
        QVERIFY(prototype->typeId().startsWith(manifest.typeIdPrefix));
        QVERIFY(manifest.categoryOrder.contains(prototype->root()));
        typeIds += prototype->typeId();
    }
    typeIds.sort();
    QCOMPARE(typeIds, manifest.typeOrder.keys());
}

void TestPlugin::metaObject()
{
    Loader loader;
    const QMetaObject *meta = loader.instance()->metaObject();
    QCOMPARE(QString(meta->className()), QString("ListOperPlugin"));
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->classInfoCount(), 0);
    QVERIFY(!loader.instance()->parent());
}

void TestPlugin::metaCast()
{
    Loader loader;
    QObject *const instance = loader.instance();
    void *const interface = loader.plugin();
    QVERIFY(interface);
    QCOMPARE(instance->qt_metacast("ListOperPlugin"), static_cast<void *>(instance));
    QCOMPARE(instance->qt_metacast("QObject"), static_cast<void *>(instance));
    QCOMPARE(instance->qt_metacast("IOperationPlugin"), interface);
    QCOMPARE(instance->qt_metacast("com.tallowby.Quillmap.IOperationPlugin/1.0"), interface);
    QVERIFY(interface != instance);
    QVERIFY(!instance->qt_metacast(nullptr));
    for (const char *name : {"", "listoperplugin", "Operation", "com.tallowby.Quillmap.IOperationPlugin/1.1"})
        QVERIFY(!instance->qt_metacast(name));
}

void TestPlugin::instanceIsOneUntilDeleted()
{
    QLibrary library(TestPaths::listPlugin());
    const auto instance = reinterpret_cast<QtPluginInstanceFunction>(library.resolve("qt_plugin_instance"));
    QVERIFY2(instance, qPrintable(library.errorString()));
    QPointer<QObject> first = instance();
    QVERIFY(first);
    QCOMPARE(instance(), first.data());
    delete first;
    QVERIFY(!first);
    QPointer<QObject> second = instance();
    QVERIFY(second);
    QCOMPARE(instance(), second.data());
    QCOMPARE(qobject_cast<IOperationPlugin *>(second)->apiVersion(), 2);
    delete second;
    QVERIFY(library.unload());
}

void TestPlugin::stepsRun()
{
    Loader loader;
    VariableScope scope;
    scope.set("names", QVariantList{"b", 10, "a", 9});
    for (const auto &prototype : prototypesOf(*loader.plugin())) {
        if (prototype->typeId() != "list.sort")
            continue;
        QObject owner;
        Operation *const step = prototype->clone(&owner);
        QVERIFY(step->setProperty("targetVar", "$names"));
        step->setVariableScope(&scope);
        step->doOperation();
    }
    QCOMPARE(shown(scope.get("names")), QString("[int 9, int 10, text \"a\", text \"b\"]"));
}

// Texts and values that came out of the plug-in are the host's own: they stay readable without it.
void TestPlugin::nothingStaysAfterUnloading()
{
    for (int round = 0; round < 20; ++round) {
        VariableScope scope;
        for (const char *name : {"a", "b", "c"})
            scope.set(name, QVariantList{name, 1, QVariantList{2}, ""});
        scope.set("text", "before");
        QStringList texts;
        PluginManifest manifest;
        {
            Loader loader;
            IOperationPlugin *const plugin = loader.plugin();
            QVERIFY2(plugin, qPrintable(loader.errorString()));
            manifest = plugin->manifest();
            texts << plugin->pluginId() << plugin->name() << plugin->version()
                  << plugin->requiredCapabilities();
            for (const auto &prototype : prototypesOf(*plugin)) {
                const QVariantMap sample = stepRow(prototype->typeId()).sample;
                for (auto it = sample.cbegin(); it != sample.cend(); ++it)
                    prototype->setProperty(it.key().toUtf8(), it.value());
                const quint64 writes = scope.writeCount();
                prototype->setVariableScope(&scope);
                prototype->doOperation();
                QVERIFY2(scope.writeCount() > writes, qPrintable(prototype->typeId()));
                texts << prototype->root() << prototype->typeId() << prototype->typeName()
                      << prototype->icon() << prototype->toString() << prototype->description()
                      << prototype->property("index").toString();
            }
#ifdef Q_OS_LINUX
            QVERIFY(isMapped(TestPaths::listPlugin()));
#endif
            QVERIFY2(loader.unload(), qPrintable(loader.errorString()));
            QVERIFY(!loader.isLoaded());
        }
#ifdef Q_OS_LINUX
        QVERIFY(!isMapped(TestPaths::listPlugin()));
#endif
        QVERIFY(!QFile::exists(":/images/list_add.svg"));
        QCOMPARE(texts.size(), 4 + stepTable().size() * 7);
        QVERIFY(texts.join(QString()).contains("列表排序: $a (asc)"));
        QCOMPARE(manifest.typeOrder.firstKey(), QString("list.add"));
        QCOMPARE(manifest.categoryOrder.firstKey(), QString("列表"));
        for (const QString &name : scope.names())
            QVERIFY(!shown(scope.get(name)).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestPlugin)
#include "tst_plugin.moc"
