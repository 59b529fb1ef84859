#include "host/running/ProcessProbe.h"
#include "host/values/CborCheck.h"
#include "host/values/CborReader.h"
#include "host/values/JsonReader.h"
#include "host/values/JsonValue.h"

#include <nlohmann/json.hpp>

#include <QtTest>

using namespace StepHost;
using Json = nlohmann::json;

namespace
{
// The item at `at` as a tree.
Json treeAt(CborReader &at)
{
    switch (at.kind()) {
    case CborReader::Null:
        at.skip();
        return Json();
    case CborReader::Bool:
        return at.readBool();
    case CborReader::Integer: {
        const CborInteger number = at.readInteger();
        if (number.isNegative)
            return number.as<qint64>();
        return number.as<quint64>();
    }
    case CborReader::Double:
        return at.readDouble();
    case CborReader::Text:
        return at.readText().toStdString();
    case CborReader::Array: {
        Json array = Json::array();
        for (int left = at.enter(); left > 0; --left)
            array.push_back(treeAt(at));
        return array;
    }
    case CborReader::Map:
        break;
    }
    Json object = Json::object();
    for (int left = at.enter(); left > 0; --left) {
        const std::string key = at.readText().toStdString();
        object[key] = treeAt(at);
    }
    return object;
}

QByteArray bytesOf(const std::vector<std::uint8_t> &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), int(bytes.size()));
}
} // namespace

class TestCborReader : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void readsWhatIsWritten_data();
    void readsWhatIsWritten();
    void skips_data();
    void skips();
    void readsMembersByOrder();
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
    const QByteArray document = QByteArray::fromHex(hex);
    const Result<void, CborError> checked = checkCbor(document);
    QVERIFY2(checked, qPrintable(checked ? QString() : checked.error().text));
    CborReader at(document);
    QCOMPARE(QByteArray::fromStdString(treeAt(at).dump()), json);
}

void TestCborReader::readsWhatIsWritten_data()
{
    QTest::addColumn<QByteArray>("json");
    for (const char *json : {"0", "-1", "18446744073709551615", "-9223372036854775808", "0.1", "1e300",
                             "5e-324", "1.0", "\"\\u0000\"", R"({"a":[true,false,null,{"b":"列表"}]})"})
        QTest::newRow(json) << QByteArray(json);
    for (const int length : {23, 24, 255, 256, 65535, 65536}) {
        QTest::addRow("a text of %d bytes", length) << '"' + QByteArray(length, 'x') + '"';
        QTest::addRow("a list of %d items", length) << '[' + QByteArray("1,").repeated(length - 1) + "2]";
        QTest::addRow("lists of %d items in each other", length) << '[' + QByteArray("[1,[],").repeated(3)
                + QByteArray("1,").repeated(length - 3) + '2' + QByteArray("],3").repeated(3) + ']';
    }
    for (const int length : {23, 24, 255, 256}) {
        QByteArray members;
        for (int i = 0; i < length; ++i)
            members += '"' + QByteArray::number(i).rightJustified(5, '0') + "\":[],";
        QTest::addRow("a map of %d members", length) << '{' + members.chopped(1) + '}';
    }
}

void TestCborReader::readsWhatIsWritten()
{
    QFETCH(QByteArray, json);
    const Json document = Json::parse(json.toStdString());
    const QByteArray bytes = bytesOf(Json::to_cbor(document));
    const Result<QByteArray, JsonError> written = cborFromJson(json);
    QVERIFY2(written, qPrintable(written ? QString() : written.error().toString()));
    QVERIFY(*written == bytes);
    const Result<void, CborError> checked = checkCbor(bytes);
    QVERIFY2(checked, qPrintable(checked ? QString() : checked.error().text));
    CborReader at(bytes);
    const Json read = treeAt(at);
    QVERIFY(read == document);
    QCOMPARE(read.type(), document.type());
    for (int size = 0; size < qMin(bytes.size(), 1000); ++size) {
        const CborError error = checkCbor(bytes.left(size)).error();
        QVERIFY2(error.offset <= size && !error.text.isEmpty(), qPrintable(error.text));
    }
}

void TestCborReader::skips_data()
{
    reads_data();
}

void TestCborReader::skips()
{
    QFETCH(QByteArray, hex);
    const QByteArray document = QByteArray::fromHex("82" + hex + "182a");
    CborReader at(document);
    QCOMPARE(at.enter(), 2);
    at.skip();
    QCOMPARE(at.kind(), CborReader::Integer);
    QCOMPARE(at.readInteger().magnitude, quint64(42));
}

void TestCborReader::readsMembersByOrder()
{
    // {"b": [1], "": 2, "a": {"c": 3}}, 4
    const QByteArray document = QByteArray::fromHex("82a361628101600261"
                                                    "61a161630304");
    CborReader at(document);
    QCOMPARE(at.enter(), 2);
    const std::map<QByteArray, CborReader> members = at.readMembers();
    QCOMPARE(at.readInteger().magnitude, quint64(4));
    QByteArray keys;
    for (const auto &member : members)
        keys += member.first + ',';
    QCOMPARE(keys, QByteArray(",a,b,"));
    CborReader value = members.at("");
    QCOMPARE(value.readInteger().magnitude, quint64(2));
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
    const Result<void, CborError> checked = checkCbor(QByteArray::fromHex(hex));
    QVERIFY(!checked);
    QCOMPARE(checked.error().text, text);
    QCOMPARE(checked.error().offset, offset);
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
    QVERIFY(checkCbor(opening.repeated(maxJsonDepth) + '\x01'));
    const Result<void, CborError> checked = checkCbor(opening.repeated(maxJsonDepth + 1) + '\x01');
    QVERIFY(!checked);
    QCOMPARE(checked.error().text, QString("arrays and maps are nested deeper than 512 levels"));
    QCOMPARE(checked.error().offset, opening.size() * maxJsonDepth);
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
    const Result<void, CborError> checked = checkCbor(bytes);
    QVERIFY(!checked);
    QVERIFY(checked.error().offset <= unit.size() * maxJsonDepth);
}

QTEST_GUILESS_MAIN(TestCborReader)
#include "tst_cborreader.moc"
