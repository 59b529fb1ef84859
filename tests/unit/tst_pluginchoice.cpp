#include "host/plugins/PluginChoice.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

class TestPluginChoice : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void loadsWhatIsNamed();
    void refusesWhatIsNamed();
    void passesOverWhatIsFound();
    void searchesPlacesBesideFiles();
    void asksTheProbe();
    void tellsOfSharedIcons();
    void tellsWhereItSearched();

private:
    const QString m_nowhere = QStringLiteral("/no/such/folder/bin");
};

void TestPluginChoice::init()
{
    // The only place that is searched.
    qputenv("QUILLMAP_PLUGIN_PATH", "/no/such/folder");
}

void TestPluginChoice::loadsWhatIsNamed()
{
    StepCatalogue catalogue;
    const PluginLoading loading =
        loadPlugins(catalogue, {{TestPaths::listPlugin(), TestPaths::fixture("Sound")}, {}}, m_nowhere);
    QCOMPARE(loading.refusals + loading.remarks + loading.searched, QStringList());
    QCOMPARE(int(catalogue.plugins().size()), 2);
}

void TestPluginChoice::refusesWhatIsNamed()
{
    StepCatalogue catalogue;
    const PluginLoading loading = loadPlugins(
        catalogue, {{TestPaths::fixture("Sound"), TestPaths::fixture("SecondVersion"), "/no/such.so"}, {}},
        m_nowhere);
    QCOMPARE(loading.refusals.size(), 2);
    QVERIFY2(loading.refusals.first().contains("it is version \"2.0.0\""),
             qPrintable(loading.refusals.first()));
    QVERIFY2(loading.refusals.last().contains("there is no such file"), qPrintable(loading.refusals.last()));
    QCOMPARE(loading.remarks, QStringList());
}

void TestPluginChoice::passesOverWhatIsFound()
{
    const QStringList path{TestPaths::fixture("NoMetadata"), TestPaths::fixture("Sound"),
                           TestPaths::fixture("SecondVersion"), TestPaths::listPlugin(),
                           TestPaths::fixture("ListClash")};
    qputenv("QUILLMAP_PLUGIN_PATH", path.join(QDir::listSeparator()).toUtf8());
    StepCatalogue catalogue;
    const PluginLoading loading = loadPlugins(catalogue, {}, m_nowhere);
    QCOMPARE(loading.refusals + loading.searched, QStringList());
    QCOMPARE(int(catalogue.plugins().size()), 2);
    QCOMPARE(loading.remarks.size(), 3);
    const char *const reasons[] = {"NoMetadata", "it is version \"2.0.0\"", "ListClash"};
    for (int i = 0; i < 3; ++i) {
        QVERIFY2(loading.remarks.at(i).contains(reasons[i]), qPrintable(loading.remarks.at(i)));
        QVERIFY2(loading.remarks.at(i).endsWith("; it is passed over"), qPrintable(loading.remarks.at(i)));
    }
    const QString missing = catalogue.noSuchType("fixture.second");
    QVERIFY2(missing.contains("NoMetadata") && missing.contains("SecondVersion"), qPrintable(missing));
    QVERIFY2(!missing.contains("ListClash"), qPrintable(missing));
}

void TestPluginChoice::searchesPlacesBesideFiles()
{
    qputenv("QUILLMAP_PLUGIN_PATH", QFile::encodeName(TestPaths::listPlugin()));
    StepCatalogue named;
    loadPlugins(named, {{TestPaths::fixture("Sound")}, {}}, m_nowhere);
    QCOMPARE(named.typeIds(), QStringList("fixture.first"));

    StepCatalogue both;
    loadPlugins(both, {{TestPaths::fixture("Sound")}, {TestPaths::fixture("SharedIcon")}}, m_nowhere);
    QCOMPARE(both.typeIds(), (QStringList{"fixture.first", "fixture.icon"}));

    // What was named need not be found.
    StepCatalogue twice;
    const QString sound = TestPaths::fixture("Sound");
    QCOMPARE(loadPlugins(twice, {{sound}, {sound}}, m_nowhere).remarks, QStringList());

    StepCatalogue added;
    loadPlugins(added, {{}, {TestPaths::fixture("SharedIcon")}}, m_nowhere);
    QCOMPARE(added.typeIds().mid(0, 2), (QStringList{"fixture.icon", "list.add"}));
}

void TestPluginChoice::asksTheProbe()
{
    const QString sound = TestPaths::fixture("Sound");
    qputenv("QUILLMAP_PLUGIN_PATH", QFile::encodeName(sound));
    const PluginProbe probe = [](const QString &file) -> Result<void> {
        return failure(QStringLiteral("%1 is not safe").arg(file));
    };
    StepCatalogue catalogue;
    const PluginLoading loading = loadPlugins(catalogue, {}, m_nowhere, probe);
    QVERIFY(catalogue.plugins().empty());
    QCOMPARE(loading.remarks, QStringList(sound + " is not safe; it is passed over"));
    QVERIFY(catalogue.noSuchType("fixture.first").endsWith("passed over: \"" + sound + '"')
            || sound.size() > 60);
}

void TestPluginChoice::tellsOfSharedIcons()
{
    StepCatalogue catalogue;
    const PluginLoading loading =
        loadPlugins(catalogue, {{TestPaths::listPlugin(), TestPaths::fixture("SharedIcon")}, {}}, m_nowhere);
    QCOMPARE(loading.remarks, catalogue.sharedIcons());
    QCOMPARE(loading.remarks.size(), 1);
}

void TestPluginChoice::tellsWhereItSearched()
{
    StepCatalogue catalogue;
    const PluginLoading loading = loadPlugins(catalogue, {}, m_nowhere);
    QCOMPARE(loading.searched, QStringList("/no/such/folder"));
    QCOMPARE(loading.refusals + loading.remarks, QStringList());
}

QTEST_GUILESS_MAIN(TestPluginChoice)
#include "tst_pluginchoice.moc"
