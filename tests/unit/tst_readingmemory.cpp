#include "host/scripts/BinaryScript.h"
#include "host/scripts/ScriptFile.h"
#include "tests/support/Allocations.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

namespace
{
constexpr int fileSize = 1 << 18;
constexpr int depth = 400;

// A script with a list "x" of as many items, in JSON.
QByteArray scriptOf(const QByteArray &item, int count)
{
    return R"({"variables": [{"name": "x", "type": "list", "value": [)" + (item + ',').repeated(count - 1)
        + item + "]}]}";
}
} // namespace

// How much memory it takes to read a script, counted by what the process asks of its allocator.
class TestReadingMemory : public QObject
{
    Q_OBJECT

private slots:
    void takesLittleMoreThanTheValues_data();
    void takesLittleMoreThanTheValues();

private:
    StepCatalogue m_catalogue;
};

void TestReadingMemory::takesLittleMoreThanTheValues_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<double>("times");
    const auto row = [](const char *name, const QByteArray &item, double times = 1.3) {
        QTest::newRow(name) << item << times;
    };
    row("small numbers", "1");
    row("numbers of five bytes", "65536");
    row("floating-point numbers", "0.1");
    row("true", "true");
    row("null", "null");
    row("empty texts", "\"\"");
    row("short texts", "\"abc\"");
    row("texts beyond ASCII", "\"列表\"");
    row("empty lists", "[]");
    row("lists of one", "[1]");
    row("lists of two", "[1,2]");
    row("lists nested deep", QByteArray(depth, '[') + QByteArray(depth, ']'));
    row("lists of one in each other", QByteArray(depth, '[') + '1' + QByteArray(depth, ']'));
    row("lists of texts", R"({"$QStringList":["a","b"]})");
    row("maps", R"({"$QVariantMap":[["a",1],["b",2]]})");
    // Of these the document itself takes half as much as the values.
    row("long texts", '"' + QByteArray(1000, 'x') + '"', 1.5);
    row("typed numbers", R"({"$qlonglong":1})", 1.5);
}

void TestReadingMemory::takesLittleMoreThanTheValues()
{
    QFETCH(QByteArray, item);
    QFETCH(double, times);
    const QByteArray json = scriptOf(item, fileSize / item.size());
    const Result<Script> script = readAnyScript(json, m_catalogue);
    QVERIFY2(script, qPrintable(errorOf(script)));
    const Result<QByteArray> binary = writeBinaryScript(*script);
    QVERIFY2(binary, qPrintable(errorOf(binary)));
    for (const QByteArray &bytes : {*binary, json}) {
        Result<Script> read;
        const Allocations allocations = allocationsOf([&] { read = readAnyScript(bytes, m_catalogue); });
        if (!allocations.isKnown)
            QSKIP("This build does not count allocations.");
        QVERIFY(read && read->variables.at(0).value == script->variables.at(0).value);
        const double seen = double(allocations.mostBytes) / double(allocations.keptBytes);
        QVERIFY2(seen <= times, qPrintable(QString("%1 times").arg(seen)));
    }
}

QTEST_GUILESS_MAIN(TestReadingMemory)
#include "tst_readingmemory.moc"
