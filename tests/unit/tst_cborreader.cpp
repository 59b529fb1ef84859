#include "host/running/ProcessProbe.h"
#include "host/values/CborReader.h"
#include "host/values/JsonValue.h"

#include <QtTest>

using namespace StepHost;

class TestCborReader : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void readsWhatIsWritten_data();
    void readsWhatIsWritten();
    void refuses_data();
    void refuses();
    void limitsDepth_data();
    void limitsDepth();
    void survivesHostileNesting_data();
    void survivesHostileNesting();
};

void TestCborReader::reads_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *hex, const char *json) {
        QTest::newRow(hex) << QByteArray(hex) << QByteArray(json);
    };
    // In each way to write a number that is not the shortest, too.
    row("00", "0");
    row("17", "23");
    row("1818", "24");
    row("1800", "0");
    row("190100", "256");
    row("1a00010000", "65536");
    row("1b0000000100000000", "4294967296");
    row("1bffffffffffffffff", "18446744073709551615");
    row("20", "-1");
    row("3818", "-25");
    row("3b7fffffffffffffff", "-9223372036854775808");
    row("f4", "false");
    row("f5", "true");
    row("f6", "null");
    row("fa3fc00000", "1.5");
    row("fb3ff199999999999a", "1.1");
    row("fb8000000000000000", "-0.0");
    row("60", "\"\"");
    row("6161", "\"a\"");
    row("780161", "\"a\"");
    row("63e58897", "\"列\"");
    row("80", "[]");
    row("8201820203", "[1,[2,3]]");
    row("9a000000010a", "[10]");
    row("a0", "{}");
    row("a26161016162a0", "{\"a\":1,\"b\":{}}");
}

void TestCborReader::reads()
{
    QFETCH(QByteArray, hex);
    QFETCH(QByteArray, json);
    Json document;
    CborError error;
    QVERIFY2(parseCbor(QByteArray::fromHex(hex), document, error), qPrintable(error.text));
    QCOMPARE(QByteArray::fromStdString(document.dump()), json);
}

void TestCborReader::readsWhatIsWritten_data()
{
    QTest::addColumn<QByteArray>("json");
    for (const char *json : {"0", "-1", "18446744073709551615", "-9223372036854775808", "0.1", "1e300",
                             "5e-324", "1.0", "\"\\u0000\"", R"({"a":[true,false,null,{"b":"列表"}]})"})
        QTest::newRow(json) << QByteArray(json);
    QTest::newRow("a long text") << '"' + QByteArray(70000, 'x') + '"';
    QTest::newRow("a long list") << '[' + QByteArray("1,").repeated(70000) + "2]";
}

void TestCborReader::readsWhatIsWritten()
{
    QFETCH(QByteArray, json);
    const Json document = Json::parse(json.toStdString());
    const std::vector<std::uint8_t> cbor = Json::to_cbor(document);
    const QByteArray bytes(reinterpret_cast<const char *>(cbor.data()), int(cbor.size()));
    Json read;
    CborError error;
    QVERIFY2(parseCbor(bytes, read, error), qPrintable(error.text));
    QVERIFY(read == document);
    QCOMPARE(read.type(), document.type());
    for (int size = 0; size < qMin(bytes.size(), 1000); ++size) {
        Json cut;
        QVERIFY(!parseCbor(bytes.left(size), cut, error));
        QVERIFY2(error.offset <= size && !error.text.isEmpty(), qPrintable(error.text));
    }
}

void TestCborReader::refuses_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *hex, int offset, const QString &text) {
        QTest::newRow(name) << QByteArray(hex) << offset << text;
    };
    const auto noValue = [](const char *byte) {
        return QStringLiteral("the byte 0x%1 begins no value of a script").arg(QLatin1String(byte));
    };
    const QString end = QStringLiteral("the data ends within a value");
    row("nothing", "", 0, end);
    row("two values", "0001", 1, "1 bytes follow the last value");
    row("number cut off", "8119ff", 3, end);
    row("list cut off", "82811801", 4, end);
    row("reserved length", "1c", 0, noValue("1c"));
    row("indefinite integer", "1f", 0, noValue("1f"));
    row("negative beyond 64 bits", "813b8000000000000000", 1, "the integer does not fit into 64 bits");
    row("bytes", "4161", 0, noValue("41"));
    row("text of indefinite length", "817f6161ff", 1, noValue("7f"));
    row("list of indefinite length", "9f01ff", 0, noValue("9f"));
    row("map of indefinite length", "bfff", 0, noValue("bf"));
    row("tag", "c000", 0, noValue("c0"));
    row("undefined", "f7", 0, noValue("f7"));
    row("half float", "f93c00", 0, noValue("f9"));
    row("break", "ff", 0, noValue("ff"));
    row("single infinity", "fa7f800000", 0, "the number is not finite");
    row("double nan", "81fb7ff8000000000000", 1, "the number is not finite");
    row("text beyond the end", "6361", 0, "the text should have 3 bytes, and 1 bytes are left for them");
    row("huge text", "7bffffffffffffffff", 0,
        "the text should have 18446744073709551615 bytes, and 0 bytes are left for them");
    row("no UTF-8", "8162c328", 1, "the text is not UTF-8");
    row("half a character", "81 61e5", 1, "the text is not UTF-8");
    row("surrogate", "63eda080", 0, "the text is not UTF-8");
    row("list beyond the end", "8301", 0, "the array should have 3 items, and 1 bytes are left for them");
    row("huge list", "9bffffffffffffffff", 0,
        "the array should have 18446744073709551615 items, and 0 bytes are left for them");
    row("lists that share the end", "8283010203", 1,
        "the array should have 3 items, and 2 bytes are left for them");
    row("text that takes the next item", "82636161f6", 1,
        "the text should have 3 bytes, and 2 bytes are left for them");
    row("map beyond the end", "a2616101", 0, "the map should have 2 pairs, and 3 bytes are left for them");
    row("huge map", "bb7fffffffffffffff", 0,
        "the map should have 9223372036854775807 pairs, and 0 bytes are left for them");
    row("key that is a number", "a10102", 1, "the key of a map is not a text");
    row("key twice", "a2616101616102", 4, "the map has the key \"a\" already");
}

void TestCborReader::refuses()
{
    QFETCH(QByteArray, hex);
    QFETCH(int, offset);
    QFETCH(QString, text);
    Json document;
    CborError error;
    QVERIFY(!parseCbor(QByteArray::fromHex(hex), document, error));
    QCOMPARE(error.text, text);
    QCOMPARE(error.offset, offset);
}

void TestCborReader::limitsDepth_data()
{
    QTest::addColumn<QByteArray>("opening");
    QTest::newRow("list") << QByteArray("\x81");
    QTest::newRow("map") << QByteArray("\xa1\x61x");
}

void TestCborReader::limitsDepth()
{
    QFETCH(QByteArray, opening);
    Json document;
    CborError error;
    QVERIFY(parseCbor(opening.repeated(maxJsonDepth) + '\x01', document, error));
    QVERIFY(!parseCbor(opening.repeated(maxJsonDepth + 1) + '\x01', document, error));
    QCOMPARE(error.text, QString("arrays and maps are nested deeper than 512 levels"));
    QCOMPARE(error.offset, opening.size() * maxJsonDepth);
}

void TestCborReader::survivesHostileNesting_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::newRow("lists of one item") << QByteArray("\x81");
    QTest::newRow("lists that claim much") << QByteArray("\x9a\x00\x10\x00\x00", 5);
    QTest::newRow("texts of indefinite length") << QByteArray("\x7f");
    QTest::newRow("lists of indefinite length") << QByteArray("\x9f");
    QTest::newRow("tags") << QByteArray("\xc1");
    QTest::newRow("maps as keys") << QByteArray("\xa1");
}

void TestCborReader::survivesHostileNesting()
{
    QFETCH(QByteArray, unit);
    const QByteArray bytes = unit.repeated(1000000);
    const MemoryGrowthLimit limit(20LL * bytes.size());
    Json document;
    CborError error;
    QVERIFY(!parseCbor(bytes, document, error));
    QVERIFY(error.offset <= unit.size() * maxJsonDepth);
}

QTEST_GUILESS_MAIN(TestCborReader)
#include "tst_cborreader.moc"
