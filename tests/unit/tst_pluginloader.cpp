#include "host/plugins/PluginLoader.h"
#include "host/plugins/StepCatalogue.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/IsLike.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(PluginRefusal)

namespace
{
void writeFile(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}
} // namespace

class TestPluginLoader : public QObject
{
    Q_OBJECT

private slots:
    void loadsTheListPlugin();
    void refuses_data();
    void refuses();
    void refusesFilesThatAreNoLibraries_data();
    void refusesFilesThatAreNoLibraries();
    void refusesAnotherQtVersion();
    void unloads();
    void unloadsWhatItRefuses();
    void loadsManyTimes();
    void catalogueCreatesSteps();
    void catalogueKeepsTheOrderOfPlugins();
    void catalogueRefusesADuplicateTypeId();
    void catalogueRefusesAnotherVersion();
    void catalogueTellsOfSharedIcons();
    void catalogueKnowsWhatWasPassedOver();
    void catalogueGivesNothingForAStepThatDoesNotClone();
};

void TestPluginLoader::loadsTheListPlugin()
{
    const auto loaded = loadPlugin(TestPaths::listPlugin());
    QVERIFY2(loaded, qPrintable(errorOf(loaded)));
    const Plugin &plugin = **loaded;
    QCOMPARE(plugin.manifest().pluginId, QString("com.tallowby.Quillmap.ListOperPlugin"));
    QCOMPARE(plugin.instance()->apiVersion(), operationCoreApiVersion);
    QCOMPARE(QFileInfo(plugin.fileName()), QFileInfo(TestPaths::listPlugin()));
    QCOMPARE(plugin.prototypes().size(), 10);
    QCOMPARE(plugin.prototypes().first()->typeId(), QString("list.add"));
    QCOMPARE(plugin.prototypes().last()->typeId(), QString("list.subtract"));
}

void TestPluginLoader::refuses_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<PluginRefusal>("refusal");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no file") << "/no/such/plugin.so" << PluginRefusal::NotFound << "there is no such file";
    QTest::newRow("a folder") << TestPaths::fixtureFolder() << PluginRefusal::NotFound
                              << "this is not a file";
    QTest::newRow("no metadata") << TestPaths::fixture("NoMetadata") << PluginRefusal::NotAPlugin
                                 << "NoMetadata*";
    QTest::newRow("another interface")
        << TestPaths::fixture("WrongInterface") << PluginRefusal::WrongInterface
        << "its interface id is \"com.example.SomethingElse/1.0\", a step plug-in has "
           "\"com.tallowby.Quillmap.IOperationPlugin/1.0\"";
    QTest::newRow("another root object") << TestPaths::fixture("WrongRoot") << PluginRefusal::WrongInterface
                                         << "its root object, of class WrongRoot, does not implement "
                                            "\"com.tallowby.Quillmap.IOperationPlugin/1.0\"";
    QTest::newRow("newer contract")
        << TestPaths::fixture("NewerApi") << PluginRefusal::WrongApiVersion
        << "it is built for version 3 of the step contract, this host knows version 2";
    QTest::newRow("older contract in the manifest")
        << TestPaths::fixture("OldManifest") << PluginRefusal::WrongApiVersion
        << "it is built for version 1 of the step contract, this host knows version 2";
    QTest::newRow("unknown capability")
        << TestPaths::fixture("UnknownCapability") << PluginRefusal::UnknownCapability
        << "it needs the host capability \"hasWarpDrive\", this host has \"hasListType\"";
    QTest::newRow("foreign type id")
        << TestPaths::fixture("ForeignTypeId") << PluginRefusal::ForeignTypeId
        << "its step \"elsewhere.second\" is outside its own prefix \"fixture.\"";
    QTest::newRow("duplicate type id")
        << TestPaths::fixture("DuplicateTypeId") << PluginRefusal::DuplicateTypeId
        << "it has two steps of type \"fixture.first\"";
    QTest::newRow("no type id") << TestPaths::fixture("EmptyTypeId") << PluginRefusal::BadPrototype
                                << "a prototype of class Operation has no type id";
    QTest::newRow("long type id")
        << TestPaths::fixture("LongTypeId") << PluginRefusal::BadPrototype
        << "the type id of a step, \"fixture.xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\"...\"xxxxxxxxxxxxxxxxxxxx\" "
           "(1001 "
           "characters), is longer than 1000 characters";
    QTest::newRow("null prototype") << TestPaths::fixture("NullPrototype") << PluginRefusal::BadPrototype
                                    << "prototype 2 is null";
    QTest::newRow("repeated prototype") << TestPaths::fixture("RepeatedPrototype")
                                        << PluginRefusal::BadPrototype << "prototype 2 is listed twice";
    QTest::newRow("owned prototype") << TestPaths::fixture("OwnedPrototype") << PluginRefusal::BadPrototype
                                     << "prototype 1 has a parent, so that the host cannot own it";
    QTest::newRow("exception") << TestPaths::fixture("ThrowingPlugin") << PluginRefusal::Threw
                               << "it threw an exception: no steps today";
    QTest::newRow("exception that is no object")
        << TestPaths::fixture("ThrowingNumber") << PluginRefusal::Threw << "it threw an exception";
}

void TestPluginLoader::refuses()
{
    QFETCH(QString, file);
    QFETCH(PluginRefusal, refusal);
    QFETCH(QString, reason);
    const auto loaded = loadPlugin(file);
    QVERIFY(!loaded);
    QCOMPARE(loaded.error().refusal, refusal);
    QVERIFY2(errorOf(loaded).startsWith(QString("plug-in \"%1\" is refused: ").arg(file)),
             qPrintable(errorOf(loaded)));
    QVERIFY2(isLike(errorOf(loaded), '*' + reason), qPrintable(errorOf(loaded)));
}

void TestPluginLoader::refusesFilesThatAreNoLibraries_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("This is no library.\n");
    QFile module(TestPaths::listPlugin());
    QVERIFY(module.open(QIODevice::ReadOnly));
    QTest::newRow("first 100 bytes of a library") << module.read(100);
}

void TestPluginLoader::refusesFilesThatAreNoLibraries()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("plugin" + TestPaths::moduleSuffix());
    writeFile(fileName, content);
    const auto loaded = loadPlugin(fileName);
    QVERIFY(!loaded);
    QCOMPARE(loaded.error().refusal, PluginRefusal::NotAPlugin);
    QVERIFY2(errorOf(loaded).size() > int(strlen("plug-in \"\" is refused: ")) + fileName.size(),
             qPrintable(errorOf(loaded)));
}

void TestPluginLoader::refusesAnotherQtVersion()
{
    QFile module(TestPaths::fixture("Sound"));
    QVERIFY(module.open(QIODevice::ReadOnly));
    QByteArray bytes = module.readAll();
    const int metadata = bytes.indexOf("QTMETADATA !");
    QVERIFY(metadata > 0);
    const int minorVersion = metadata + 14;
    QCOMPARE(int(bytes.at(minorVersion)), 15);
    bytes[minorVersion] = 99;

    const QTemporaryDir folder;
    const QString fileName = folder.filePath("newer-qt" + TestPaths::moduleSuffix());
    writeFile(fileName, bytes);
    const auto loaded = loadPlugin(fileName);
    QVERIFY(!loaded);
    QCOMPARE(loaded.error().refusal, PluginRefusal::LoadFailed);
    QVERIFY2(errorOf(loaded).contains("5.99"), qPrintable(errorOf(loaded)));
}

void TestPluginLoader::unloads()
{
    for (int i = 0; i < 3; ++i) {
        const auto loaded = loadPlugin(TestPaths::fixture("CountingPlugin"));
        QVERIFY2(loaded, qPrintable(errorOf(loaded)));
        QCOMPARE((*loaded)->manifest().version, QString("1"));
    }
}

void TestPluginLoader::unloadsWhatItRefuses()
{
    const QPluginLoader probe(TestPaths::fixture("NullPrototype"));
    const auto loaded = loadPlugin(TestPaths::fixture("NullPrototype"));
    QVERIFY(!loaded);
    QCOMPARE(loaded.error().refusal, PluginRefusal::BadPrototype);
    QVERIFY(!probe.isLoaded());
}

void TestPluginLoader::loadsManyTimes()
{
    for (int i = 0; i < 20; ++i) {
        StepCatalogue catalogue;
        QVERIFY(catalogue.addPlugin(TestPaths::listPlugin()));
        const std::unique_ptr<Operation> step(catalogue.create("list.sort", nullptr));
        QCOMPARE(step->typeId(), QString("list.sort"));
    }
}

void TestPluginLoader::catalogueCreatesSteps()
{
    StepCatalogue catalogue;
    QVERIFY(catalogue.typeIds().isEmpty());
    QVERIFY(!catalogue.create("list.sort", nullptr));
    const auto added = catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));

    QObject parent;
    for (const QString &typeId : catalogue.typeIds()) {
        Operation *step = catalogue.create(typeId, &parent);
        QVERIFY2(step, qPrintable(typeId));
        QCOMPARE(step->typeId(), typeId);
        QCOMPARE(step->parent(), &parent);
        QVERIFY(step != catalogue.prototype(typeId));
        QCOMPARE(catalogue.pluginOf(typeId), catalogue.plugins().front().get());
    }
    QCOMPARE(parent.children().size(), 10);
    QVERIFY(!catalogue.create("list.shuffle", nullptr));
    QVERIFY(!catalogue.create("", nullptr));
    QVERIFY(!catalogue.prototype("list.shuffle"));
    QVERIFY(!catalogue.pluginOf("list.shuffle"));
}

void TestPluginLoader::catalogueKeepsTheOrderOfPlugins()
{
    StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("Sound")));
    QVERIFY(catalogue.addPlugin(TestPaths::listPlugin()));
    QCOMPARE(int(catalogue.plugins().size()), 2);
    QCOMPARE(catalogue.typeIds().mid(0, 3), (QStringList{"fixture.first", "list.add", "list.remove"}));
    QCOMPARE(catalogue.pluginOf("fixture.first"), catalogue.plugins().front().get());
}

void TestPluginLoader::catalogueRefusesADuplicateTypeId()
{
    StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::listPlugin()));
    const QStringList typeIds = catalogue.typeIds();

    const auto added = catalogue.addPlugin(TestPaths::fixture("ListClash"));
    QVERIFY(!added);
    QCOMPARE(added.error().refusal, PluginRefusal::DuplicateTypeId);
    QVERIFY2(errorOf(added).contains("has a step of type \"list.sort\" already"), qPrintable(errorOf(added)));
    QCOMPARE(catalogue.typeIds(), typeIds);
    QCOMPARE(int(catalogue.plugins().size()), 1);

    const auto addedAgain = catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY(!addedAgain);
    QCOMPARE(addedAgain.error().refusal, PluginRefusal::DuplicatePlugin);
    const std::unique_ptr<Operation> step(catalogue.create("list.sort", nullptr));
    QCOMPARE(step->typeName(), QString::fromUtf8("列表排序"));
}

void TestPluginLoader::catalogueRefusesAnotherVersion()
{
    StepCatalogue catalogue;
    const QString first = TestPaths::fixture("Sound");
    const QString second = TestPaths::fixture("SecondVersion");
    QVERIFY(catalogue.addPlugin(first));
    const auto added = catalogue.addPlugin(second);
    QVERIFY(!added);
    QCOMPARE(added.error().refusal, PluginRefusal::DuplicatePlugin);
    QCOMPARE(added.error().fileName, second);
    QCOMPARE(added.error().typeIdPrefix, QString("fixture."));
    QCOMPARE(
        errorOf(added),
        QString("plug-in \"%1\" is refused: it is version \"2.0.0\" of \"com.example.Fixture\", and plug-in "
                "\"%2\", version \"1.0.0\" of it, is loaded already")
            .arg(second, QFileInfo(first).absoluteFilePath()));
    QCOMPARE(catalogue.typeIds(), QStringList("fixture.first"));
}

void TestPluginLoader::catalogueTellsOfSharedIcons()
{
    StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::listPlugin()));
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("Sound")));
    QCOMPARE(catalogue.sharedIcons(), QStringList());
    StepCatalogue both;
    QVERIFY(both.addPlugin(TestPaths::listPlugin()));
    QVERIFY(both.addPlugin(TestPaths::fixture("SharedIcon")));
    QCOMPARE(both.sharedIcons().size(), 1);
    const QString line = both.sharedIcons().first();
    for (const QString &part : {QFileInfo(TestPaths::listPlugin()).absoluteFilePath(),
                                QFileInfo(TestPaths::fixture("SharedIcon")).absoluteFilePath(),
                                QString("version \"1.0.0\""), QString("\":/images/list_sort.svg\"")})
        QVERIFY2(line.contains(part), qPrintable(line));
}

void TestPluginLoader::catalogueKnowsWhatWasPassedOver()
{
    StepCatalogue catalogue;
    QCOMPARE(catalogue.noSuchType("text.join"),
             QString("there is no step type \"text.join\"; there are none"));
    catalogue.passOver({PluginRefusal::LoadFailed, "", "/a.so"});
    catalogue.passOver({PluginRefusal::DuplicateTypeId, "", "/b.so", "list."});
    catalogue.passOver({PluginRefusal::DuplicateTypeId, "", "/c.so", "text."});
    QCOMPARE(catalogue.noSuchType("text.join"),
             QString("there is no step type \"text.join\"; there are none; it may be of a plug-in that was "
                     "passed over: \"/a.so\", \"/c.so\""));
}

void TestPluginLoader::catalogueGivesNothingForAStepThatDoesNotClone()
{
    StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("HostileSteps")));
    QVERIFY(catalogue.prototype("fixture.unclonable"));
    QVERIFY(!catalogue.create("fixture.unclonable", nullptr));
}

QTEST_GUILESS_MAIN(TestPluginLoader)
#include "tst_pluginloader.moc"
