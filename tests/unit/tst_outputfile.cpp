#include "host/values/OutputFile.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace StepHost;

class TestOutputFile : public QObject
{
    Q_OBJECT

private slots:
    void replacesFiles();
    void leavesFilesAsTheyWere();
    void keepsWhatElseTheFileHas_data();
    void keepsWhatElseTheFileHas();
    void tellsOfHardLinks();
    void writesWhereALinkLeads();
};

void TestOutputFile::replacesFiles()
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("a.bin");
    for (const QByteArray &bytes : {QByteArray(3 << 20, 'x'), QByteArray("a\0\r\n\xff", 5), QByteArray()}) {
        const Result<QString> written = writeOutputFile(fileName, bytes);
        QVERIFY2(written, qPrintable(errorOf(written)));
        QCOMPARE(*written, QString());
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == bytes);
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("a.bin"));
}

void TestOutputFile::leavesFilesAsTheyWere()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    for (const char *name : {"folder", "missing/a"}) {
        const Result<QString> written = writeOutputFile(folder.filePath(name), "x");
        QVERIFY2(!written, name);
        QVERIFY(!written.error().isEmpty());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("folder"));
}

void TestOutputFile::keepsWhatElseTheFileHas_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("owner");
    QTest::addColumn<int>("group");
    QTest::newRow("private") << 0600 << 0 << 0;
    QTest::newRow("for all") << 0666 << 0 << 0;
    QTest::newRow("program") << 0750 << 0 << 0;
    QTest::newRow("special bits") << 07755 << 0 << 0;
    QTest::newRow("of another") << 0640 << 1234 << 1235;
    QTest::newRow("special bits of another") << 06755 << 1234 << 1235;
}

void TestOutputFile::keepsWhatElseTheFileHas()
{
#ifdef Q_OS_UNIX
    QFETCH(int, mode);
    QFETCH(int, owner);
    QFETCH(int, group);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("a");
    const QByteArray name = QFile::encodeName(fileName);
    QVERIFY(writeOutputFile(fileName, "old"));
    if (owner != 0 && chown(name.constData(), uid_t(owner), gid_t(group)) != 0)
        QSKIP("only root may give files away");
    QCOMPARE(chmod(name.constData(), mode_t(mode)), 0);
    struct stat before;
    QCOMPARE(stat(name.constData(), &before), 0);
    const Result<QString> written = writeOutputFile(fileName, "new");
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(*written, QString());
    struct stat after;
    QCOMPARE(stat(name.constData(), &after), 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
#else
    QSKIP("this system has other owners and modes");
#endif
}

void TestOutputFile::tellsOfHardLinks()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(writeOutputFile(folder.filePath("a"), "old"));
    QCOMPARE(::link(QFile::encodeName(folder.filePath("a")).constData(),
                    QFile::encodeName(folder.filePath("b")).constData()),
             0);
    const Result<QString> written = writeOutputFile(folder.filePath("a"), "new");
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(*written, QString("the old file's hard links could not be kept"));
    QFile other(folder.filePath("b"));
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), QByteArray("old"));
#else
    QSKIP("what a hard link is differs on this system");
#endif
}

void TestOutputFile::writesWhereALinkLeads()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("far"));
    const QString link = folder.filePath("link");
    QVERIFY(QFile::link("far/a", link));
    for (const QByteArray &bytes : {QByteArray("first"), QByteArray("second")}) {
        const Result<QString> written = writeOutputFile(link, bytes);
        QVERIFY2(written, qPrintable(errorOf(written)));
        QVERIFY(QFileInfo(link).isSymLink());
        QFile file(folder.filePath("far/a"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), bytes);
    }
#else
    QSKIP("links are another thing on this system");
#endif
}

QTEST_GUILESS_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
