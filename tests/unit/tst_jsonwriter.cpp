#include "host/values/JsonWriter.h"

#include "host/files/InputFile.h"
#include "host/values/JsonValue.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

#include <functional>

using namespace StepHost;

using Pieces = std::function<void(JsonWriter &)>;

Q_DECLARE_METATYPE(Pieces)

class TestJsonWriter : public QObject
{
    Q_OBJECT

private slots:
    void lays_data();
    void lays();
    void indentsAsTold();
    void appends();
    void strings_data();
    void strings();
    void refusesDeepNesting();
    void refusesLargeDocuments();
    void controlEscapes();
};

void TestJsonWriter::lays_data()
{
    QTest::addColumn<Pieces>("pieces");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *name, const Pieces &pieces, const char *json) {
        QTest::newRow(name) << pieces << QByteArray(json);
    };
    row(
        "a text", [](JsonWriter &json) { json.text("a"); }, R"("a")");
    row(
        "a number", [](JsonWriter &json) { json.number(-5000000000); }, "-5000000000");
    row(
        "a value", [](JsonWriter &json) { json.raw("null"); }, "null");
    row(
        "no member", [](JsonWriter &json) { json.openObject().close(); }, "{}");
    row(
        "no item", [](JsonWriter &json) { json.openArray().close(); }, "[]");
    row(
        "nothing in line", [](JsonWriter &json) { json.openArray(JsonWriter::InLine).close(); }, "[]");
    row(
        "members",
        [](JsonWriter &json) { json.openObject().key("a").number(1).key(QString("b")).number(2).close(); },
        "{\n  \"a\": 1,\n  \"b\": 2\n}");
    row(
        "items", [](JsonWriter &json) { json.openArray().number(1).text("b").raw("true").close(); },
        "[\n  1,\n  \"b\",\n  true\n]");
    row(
        "members in line",
        [](JsonWriter &json) {
            json.openObject(JsonWriter::InLine).key("a").number(1).key("b").number(2).close();
        },
        R"({"a": 1, "b": 2})");
    row(
        "items in line",
        [](JsonWriter &json) { json.openArray(JsonWriter::InLine).number(1).text("b").raw("true").close(); },
        R"([1, "b", true])");
    row(
        "nested",
        [](JsonWriter &json) {
            json.openObject().key("a").openArray().openObject().key("b").openArray().close().close();
            json.openObject().close().close().key("c").number(3).close();
        },
        "{\n  \"a\": [\n    {\n      \"b\": []\n    },\n    {}\n  ],\n  \"c\": 3\n}");
    row(
        "lines of items in line",
        [](JsonWriter &json) {
            json.openArray();
            for (int i = 1; i <= 2; ++i)
                json.openObject(JsonWriter::InLine).key("a").number(i).close();
            json.close();
        },
        "[\n  {\"a\": 1},\n  {\"a\": 2}\n]");
    row(
        "all is in line below what is",
        [](JsonWriter &json) {
            json.openArray(JsonWriter::InLine).openArray(JsonWriter::OnLines).number(1).number(2).close();
            json.openObject().key("a").openArray().number(3).close().close().close();
        },
        R"([[1, 2], {"a": [3]}])");
}

void TestJsonWriter::lays()
{
    QFETCH(Pieces, pieces);
    QFETCH(QByteArray, json);
    QByteArray written;
    JsonWriter writer(written);
    pieces(writer);
    QCOMPARE(written, json);
    QVERIFY(writer.check());
}

void TestJsonWriter::indentsAsTold()
{
    QByteArray written;
    JsonWriter(written, JsonWriter::OnLines, 4).openArray().openArray().number(1).close().close();
    QCOMPARE(written, QByteArray("[\n    [\n        1\n    ]\n]"));
}

void TestJsonWriter::appends()
{
    QByteArray written("names = ");
    JsonWriter(written, JsonWriter::InLine).openArray().number(1).number(2).close();
    QCOMPARE(written, QByteArray("names = [1, 2]"));
}

void TestJsonWriter::strings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QString() << QByteArray(R"("")");
    QTest::newRow("Chinese") << QString::fromUtf8("列表") << QByteArray("\"列表\"");
    QTest::newRow("quotes") << QString(R"(a"b\c)") << QByteArray(R"("a\"b\\c")");
    QTest::newRow("controls") << QString("\n\x1b") + QChar(0x9b) << QByteArray(R"("\n\u001b\u009b")");
    QTest::newRow("lone surrogate") << QString("a") + QChar(0xD800) << QByteArray(R"("a?")");
}

void TestJsonWriter::strings()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, json);
    QByteArray written;
    JsonWriter(written).text(text);
    QCOMPARE(written, json);
    written.clear();
    JsonWriter(written).openObject(JsonWriter::InLine).key(text).number(1).close();
    QCOMPARE(written, '{' + json + ": 1}");
}

void TestJsonWriter::refusesDeepNesting()
{
    QByteArray written;
    JsonWriter writer(written);
    for (int level = 0; level < maxJsonDepth; ++level) {
        writer.openArray();
        QVERIFY(writer.check());
    }
    writer.openObject();
    QCOMPARE(errorOf(writer.check()), QString("is nested deeper than 512 levels of JSON"));
    writer.close();
    QVERIFY(writer.check());
}

void TestJsonWriter::refusesLargeDocuments()
{
    QByteArray written(maxInputSize - 1, ' ');
    JsonWriter writer(written);
    writer.openArray();
    QVERIFY(writer.check());
    writer.close();
    QCOMPARE(errorOf(writer.check()), QString("makes more than 256 MiB of JSON"));
}

void TestJsonWriter::controlEscapes()
{
    QCOMPARE(controlEscape('\n'), QString("\\n"));
    QCOMPARE(controlEscape(QChar(0)), QString("\\u0000"));
    QCOMPARE(controlEscape(QChar(0x1F)), QString("\\u001f"));
    QCOMPARE(controlEscape(' '), QString());
    QCOMPARE(controlEscape('~'), QString());
    QCOMPARE(controlEscape(QChar(0x7F)), QString("\\u007f"));
    QCOMPARE(controlEscape(QChar(0x9F)), QString("\\u009f"));
    QCOMPARE(controlEscape(QChar(0xA0)), QString());
}

QTEST_GUILESS_MAIN(TestJsonWriter)
#include "tst_jsonwriter.moc"
