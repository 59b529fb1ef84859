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
    void readsLines_data();
    void readsLines();
    void refusesLines_data();
    void refusesLines();
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

void TestInputFile::readsLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariantList>("lines");
    QTest::newRow("nothing") << QByteArray() << QVariantList{};
    QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << QVariantList{};
    QTest::newRow("one line") << QByteArray("a") << QVariantList{"a"};
    QTest::newRow("one line, ended") << QByteArray("a\n") << QVariantList{"a"};
    QTest::newRow("empty line") << QByteArray("\n") << QVariantList{""};
    QTest::newRow("empty lines") << QByteArray("a\n\n\nb\n\n") << QVariantList{"a", "", "", "b", ""};
    QTest::newRow("CR LF") << QByteArray("a\r\n\r\nb\r\n") << QVariantList{"a", "", "b"};
    QTest::newRow("CR inside") << QByteArray("a\rb\r\r\n") << QVariantList{"a\rb\r"};
    QTest::newRow("CR at the end") << QByteArray("a\r") << QVariantList{"a\r"};
    QTest::newRow("blanks") << QByteArray(" a \n\t\n") << QVariantList{" a ", "\t"};
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "a\n\xEF\xBB\xBF"
                                                   "b")
                                     << QVariantList{"a", QString(QChar(0xFEFF)) + "b"};
    QTest::newRow("NUL") << QByteArray("a\0b\n", 4) << QVariantList{QString("a") + QChar(0) + "b"};
    QTest::newRow("Chinese") << QByteArray("李雷\n韩梅梅\n")
                             << QVariantList{QString::fromUtf8("李雷"), QString::fromUtf8("韩梅梅")};
}

void TestInputFile::readsLines()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariantList, lines);
    const Result<QVariantList> read = readLines(text);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(*read, lines);
}

void TestInputFile::refusesLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::newRow("first line") << QByteArray("\xff\nb\n") << 1;
    QTest::newRow("third line") << QByteArray("a\n\n\xe6\x9d\nb") << 3;
    QTest::newRow("cut off at the end") << QByteArray("a\n\xe6\x9d") << 2;
    QTest::newRow("too long") << QByteArray("a\n\xC0\x80\n") << 2;
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << 1;
    QTest::newRow("Latin 1") << QByteArray("a\nb\ncaf\xe9\n") << 3;
}

void TestInputFile::refusesLines()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    const Result<QVariantList> read = readLines(text);
    QCOMPARE(errorOf(read), QString("line %1 is not UTF-8 text").arg(line));
}

QTEST_GUILESS_MAIN(TestInputFile)
#include "tst_inputfile.moc"
