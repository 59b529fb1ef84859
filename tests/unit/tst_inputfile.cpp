#include "host/files/InputFile.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

class TestInputFile : public QObject
{
    Q_OBJECT

private slots:
    void readsFiles();
    void refusesFiles_data();
    void refusesFiles();
    void refusesLargeFiles();
};

void TestInputFile::readsFiles()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const QByteArray bytes = QByteArray("a\0\r\n\xff", 5).repeated(1000000);
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    QVERIFY(file.flush());
    const Result<QByteArray> input = readInputFile(file.fileName());
    QVERIFY2(input, qPrintable(errorOf(input)));
    QVERIFY(*input == bytes);
}

void TestInputFile::refusesFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no file") << "/no/such/file";
    QTest::newRow("a folder") << QDir::tempPath();
}

void TestInputFile::refusesFiles()
{
    QFETCH(QString, file);
    const Result<QByteArray> input = readInputFile(file);
    QVERIFY(!input);
    QVERIFY2(errorOf(input).startsWith(file + ": "), qPrintable(errorOf(input)));
    QVERIFY2(errorOf(input).size() > file.size() + 10, qPrintable(errorOf(input)));
    QCOMPARE(errorOf(readInputFile("")), QString("the file has no name"));
}

void TestInputFile::refusesLargeFiles()
{
    // A file with a hole takes no room on the disk.
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(file.resize((1 << 28) + 1));
    const Result<QByteArray> input = readInputFile(file.fileName());
    QCOMPARE(errorOf(input), file.fileName() + ": the file holds more than 256 MiB");
}

QTEST_GUILESS_MAIN(TestInputFile)
#include "tst_inputfile.moc"
