#include "host/plugins/ExportedSymbols.h"
#include "tests/support/TestPaths.h"

#include <QTemporaryFile>
#include <QtTest>

using namespace StepHost;

namespace
{
QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ExportedSymbols symbolsOf(const QByteArray &bytes)
{
    QTemporaryFile file;
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return {};
    return readExportedSymbols(file.fileName());
}
} // namespace

class TestExportedSymbols : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void entryPoints();
    void otherFiles_data();
    void otherFiles();
    void damagedFiles();
};

void TestExportedSymbols::initTestCase()
{
#ifndef Q_OS_LINUX
    QSKIP("the libraries of this system are in another format");
#endif
}

void TestExportedSymbols::entryPoints()
{
    const ExportedSymbols symbols = readExportedSymbols(TestPaths::listPlugin());
    QVERIFY(symbols.isKnown);
    QCOMPARE(symbols.names.count("qt_plugin_instance"), 1);
    QCOMPARE(symbols.names.count("qt_plugin_query_metadata"), 1);
    QVERIFY(!symbols.names.contains("_ZN7QObjectD2Ev")); // Used, but not defined here.
}

void TestExportedSymbols::otherFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no library at all");
    QTest::newRow("magic alone") << QByteArray("\x7f"
                                               "ELF");
    QTest::newRow("32 bit") << QByteArray("\x7f"
                                          "ELF\1\1\1")
            + QByteArray(100, '\0');
}

void TestExportedSymbols::otherFiles()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!symbolsOf(bytes).isKnown);
}

void TestExportedSymbols::damagedFiles()
{
    const QByteArray sound = bytesOf(TestPaths::operationCore());
    const int count = symbolsOf(sound).names.size();
    QVERIFY(count > 2);
    for (const int divisor : {2, 3, 5, 100})
        QVERIFY(symbolsOf(sound.left(sound.size() / divisor)).names.size() <= count);
    // Every byte of the header, which holds the offset, size and number of the section headers.
    for (int i = 16; i < 64; ++i) {
        QByteArray damaged = sound;
        damaged[i] = '\xff';
        symbolsOf(damaged);
    }
    // Every byte of the section headers, which hold the offsets and sizes of the symbols and their names.
    const int end = sound.size();
    const int length = 32 * 64;
    for (int i = end - length; i < end; i += 3) {
        QByteArray damaged = sound;
        damaged[i] = '\xff';
        symbolsOf(damaged);
    }
}

QTEST_GUILESS_MAIN(TestExportedSymbols)

#include "tst_exportedsymbols.moc"
