#include "host/values/OutputFile.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

class TestOutputFile : public QObject
{
    Q_OBJECT

private slots:
    void replacesFiles();
    void leavesFilesAsTheyWere();
};

void TestOutputFile::replacesFiles()
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("a.bin");
    for (const QByteArray &bytes : {QByteArray(3 << 20, 'x'), QByteArray("a\0\r\n\xff", 5), QByteArray()}) {
        const Result<void> written = writeOutputFile(fileName, bytes);
        QVERIFY2(written, qPrintable(errorOf(written)));
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
        const Result<void> written = writeOutputFile(folder.filePath(name), "x");
        QVERIFY2(!written, name);
        QVERIFY(!written.error().isEmpty());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("folder"));
}

QTEST_GUILESS_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
