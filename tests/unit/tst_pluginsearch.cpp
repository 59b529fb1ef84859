#include "host/plugins/PluginSearch.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

class TestPluginSearch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void findsPluginsOfTheBuildTree();
    void findsThePackagesOwnPluginsFirst();
    void findsTheUsersPlugins();
    void passesOverFoldersOfOthers();
    void findsPluginsOnThePath();
    void anEmptyEntryStandsForTheDefaults_data();
    void anEmptyEntryStandsForTheDefaults();
    void addsPlaces();
    void takesAFileOnce();

private:
    // Writes something that is called like a library. Returns its path.
    QString addLibrary(const QString &place) const
    {
        const QString folder = m_folder->filePath(place);
        if (!QDir().mkpath(folder))
            qFatal("cannot make %s", qPrintable(folder));
        QFile file(folder + "/a" + TestPaths::moduleSuffix());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    // Of what is found, what lies in the folder of the test.
    QStringList filesHere(const FoundPlugins &found) const
    {
        return found.files.filter(m_folder->path());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPluginSearch::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
    qunsetenv("QUILLMAP_PLUGIN_PATH");
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder->filePath("data")));
}

void TestPluginSearch::findsPluginsOfTheBuildTree()
{
    const FoundPlugins found = findPlugins(QCoreApplication::applicationDirPath());
    QVERIFY(!found.files.isEmpty());
    QCOMPARE(QFileInfo(found.files.first()), QFileInfo(TestPaths::listPlugin()));

    const FoundPlugins nothing = findPlugins(m_folder->filePath("bin"));
    QCOMPARE(filesHere(nothing), QStringList());
    QCOMPARE(nothing.searched.at(1), m_folder->filePath("plugins"));
    QCOMPARE(nothing.remarks, QStringList());
}

// Whoever may write into the prefix beside the package gets no code into its programs.
void TestPluginSearch::findsThePackagesOwnPluginsFirst()
{
    const QString own = findPlugins(m_folder->filePath("bin")).searched.first();
    QVERIFY2(own.endsWith("/quillmap/plugins"), qPrintable(own));
    addLibrary("plugins");
    const QString library = addLibrary(QDir(m_folder->path()).relativeFilePath(own));
    QCOMPARE(filesHere(findPlugins(m_folder->filePath("bin"))), QStringList(library));
}

void TestPluginSearch::findsTheUsersPlugins()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has one such folder for each user, which tests leave alone.");
#endif
    const QString users = addLibrary("data/quillmap/plugins");
    const QString built = addLibrary("plugins");
    const FoundPlugins found = findPlugins(m_folder->filePath("bin"));
    QCOMPARE(filesHere(found), (QStringList{built, users}));
    QCOMPARE(found.searched.last(), m_folder->filePath("data/quillmap/plugins"));
    QVERIFY(found.searched.filter(QRegularExpression("^/usr/local/.*/quillmap/plugins$")).size() == 1);
}

void TestPluginSearch::passesOverFoldersOfOthers()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has no such permissions.");
#endif
    addLibrary("data/quillmap/plugins");
    const QString folder = m_folder->filePath("data/quillmap/plugins");
    QVERIFY(QFile::setPermissions(folder, QFile::permissions(folder) | QFile::WriteOther));
    const FoundPlugins found = findPlugins(m_folder->filePath("bin"));
    QCOMPARE(filesHere(found), QStringList());
    QCOMPARE(found.remarks,
             QStringList("the plug-in folder \"" + folder
                         + "\" is passed over: others than you and the administrator may write into it"));

    // What the user names is the user's own word.
    QCOMPARE(filesHere(findPlugins(m_folder->filePath("bin"), {folder})).size(), 1);
}

void TestPluginSearch::findsPluginsOnThePath()
{
    const QString library = addLibrary("b");
    QFile notes(m_folder->filePath("b/notes.txt"));
    QVERIFY(notes.open(QIODevice::WriteOnly));
    const QStringList path = {m_folder->filePath("b"), "/no/such/folder", TestPaths::listPlugin()};
    qputenv("QUILLMAP_PLUGIN_PATH", path.join(QDir::listSeparator()).toUtf8());
    const FoundPlugins found = findPlugins(QCoreApplication::applicationDirPath());
    QCOMPARE(found.files, (QStringList{library, TestPaths::listPlugin()}));
    QCOMPARE(found.searched, path);
}

void TestPluginSearch::anEmptyEntryStandsForTheDefaults_data()
{
    QTest::addColumn<QStringList>("path");
    QTest::addColumn<QStringList>("folders");
    QTest::newRow("set to nothing") << QStringList{""} << QStringList{"plugins"};
    QTest::newRow("only others") << QStringList{"x"} << QStringList{"x"};
    QTest::newRow("first") << QStringList{"", "x"} << QStringList{"plugins", "x"};
    QTest::newRow("last") << QStringList{"x", ""} << QStringList{"x", "plugins"};
    QTest::newRow("between") << QStringList{"x", "", "y"} << QStringList{"x", "plugins", "y"};
}

void TestPluginSearch::anEmptyEntryStandsForTheDefaults()
{
    QFETCH(QStringList, path);
    QFETCH(QStringList, folders);
    for (const char *folder : {"plugins", "x", "y"})
        addLibrary(folder);
    for (QString &entry : path)
        entry = entry.isEmpty() ? entry : m_folder->filePath(entry);
    qputenv("QUILLMAP_PLUGIN_PATH", path.join(QDir::listSeparator()).toUtf8());
    QStringList expected;
    for (const QString &folder : folders)
        expected.append(m_folder->filePath(folder) + "/a" + TestPaths::moduleSuffix());
    QCOMPARE(filesHere(findPlugins(m_folder->filePath("bin"))), expected);
}

void TestPluginSearch::addsPlaces()
{
    const QString built = addLibrary("plugins");
    const QString more = addLibrary("more");
    const QString file = addLibrary("file");
    const QStringList places{m_folder->filePath("more"), file};
    QCOMPARE(filesHere(findPlugins(m_folder->filePath("bin"), places)), (QStringList{more, file, built}));
    QCOMPARE(findPluginsIn(places).files, (QStringList{more, file}));
    QCOMPARE(findPluginsIn(places).searched, places);
}

void TestPluginSearch::takesAFileOnce()
{
    const QString built = addLibrary("plugins");
    const QStringList places{m_folder->filePath("plugins"), built, m_folder->filePath("./plugins/")};
    QCOMPARE(filesHere(findPlugins(m_folder->filePath("bin"), places)), QStringList(built));
}

QTEST_GUILESS_MAIN(TestPluginSearch)
#include "tst_pluginsearch.moc"
