#include "host/running/ProcessProbe.h"
#include "host/scripts/BinaryScript.h"
#include "host/scripts/ScriptFile.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QtEndian>
#include <QtTest>

#include <random>

using namespace StepHost;

namespace
{
constexpr int headerSize = 46;

QByteArray number32(quint32 number)
{
    char bytes[4];
    qToBigEndian(number, bytes);
    return QByteArray(bytes, 4);
}

QByteArray block(const QByteArray &bytes)
{
    return number32(quint32(bytes.size())) + bytes;
}

// The header that fits `content`, and `content`.
QByteArray sealed(const QByteArray &content)
{
    return QByteArray("\x89QMS\r\n\x1a\n\x00\x01", 10) + number32(quint32(content.size()))
        + QCryptographicHash::hash(content, QCryptographicHash::Sha256) + content;
}

const QByteArray noVariables = block("\x80");
const QByteArray noSteps = number32(0);

// A text in a record.
QByteArray text(const char *ascii)
{
    QByteArray bytes;
    for (const char *c = ascii; *c != '\0'; ++c)
        bytes += QByteArray(1, '\0') + *c;
    return block(bytes);
}

const QByteArray baseState = number32(0);
const QByteArray clearRecord = baseState + text("names");

QByteArray step(const QByteArray &typeId, const QByteArray &record, char enabled = 1)
{
    return block(typeId) + enabled + block(record);
}

QByteArray scriptOf(const QByteArray &oneStep)
{
    return sealed(number32(1) + oneStep + noVariables);
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A script with a step of each field type and values of many types.
const char richScript[] = R"({
    "variables": [
        {"name": "values", "type": "list", "value": [1, 1.0, -0.0, 0.1, 1e22, 5e-324, 3000000000,
            18446744073709551615, -9223372036854775808, {"$qlonglong": 1}, {"$uint": 5}, {"$float": 0.5},
            {"$double": "nan"}, {"$double": "-inf"}, null, true, "", "a\u0000b", "列表😀", "\uFEFF",
            {"$QString": [97, 55296]}, {"$QByteArray": "AP8="}, {"$QStringList": ["x", ""]},
            {"$QVariantMap": [["key", [1]], ["", null]]}, {"$null": "int"}, [[], [[1, "x"]]]]},
        {"name": "$mark", "type": "int", "value": -5},
        {"name": "d", "type": "double", "value": 2.5},
        {"name": "s", "type": "string", "value": "文本"},
        {"name": "b", "type": "bool", "value": true},
        {"name": "t", "type": "table", "value": [[1, "a"], []]},
        {"name": "odd", "type": "int", "value": {"$QString": "no int"}}
    ],
    "steps": [
        {"type": "list.add", "targetVar": "$names", "value": "李雷", "index": " 1 "},
        {"type": "list.remove", "enabled": false, "targetVar": "", "mode": -7, "index": "x\u0000y", "value": "1"},
        {"type": "list.sort", "targetVar": {"$QString": [55296]}, "ascending": false},
        {"type": "list.merge", "listA": "a", "listB": "b", "targetVar": "c"}
    ]
})";
} // namespace

class TestBinaryScript : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void layout();
    void roundTrips_data();
    void roundTrips();
    void keepsLongContent();
    void refusesEveryTruncation();
    void refusesEveryBitFlip();
    void survivesEveryBitFlipUnderAFittingChecksum();
    void survivesRandomBytesUnderAFittingChecksum();
    void refuses_data();
    void refuses();
    void tellsTheFormsApart();
    void refusesToLoseWhatPropertiesDoNotShow();
    void refusesToLoseWhatRecordsDoNotHold();

private:
    // The binary form of the script `json`.
    QByteArray binary(const QByteArray &json) const;

    StepCatalogue m_catalogue;
};

void TestBinaryScript::initTestCase()
{
    for (const QString &file : {TestPaths::listPlugin(), TestPaths::fixture("HostileSteps")}) {
        const auto added = m_catalogue.addPlugin(file);
        QVERIFY2(added, qPrintable(errorOf(added)));
    }
}

QByteArray TestBinaryScript::binary(const QByteArray &json) const
{
    const Result<Script> read = readScript(json, m_catalogue);
    if (!read)
        qFatal("%s", qPrintable(errorOf(read)));
    const Result<QByteArray> written = writeBinaryScript(*read);
    if (!written)
        qFatal("%s", qPrintable(errorOf(written)));
    return *written;
}

void TestBinaryScript::layout()
{
    const QByteArray written = binary(R"({
        "variables": [{"name": "names", "type": "list", "value": [1, "a"]}],
        "steps": [{"type": "list.clear", "targetVar": "names"},
                  {"type": "list.sort", "enabled": false, "targetVar": "n"}]})");
    const QByteArray cbor = QByteArray::fromHex("81" // a list of one
                                                "a3" // a map of three
                                                "646e616d65" // "name"
                                                "656e616d6573" // "names"
                                                "6474797065" // "type"
                                                "646c697374" // "list"
                                                "6576616c7565" // "value"
                                                "8201" // a list of two: 1,
                                                "6161"); // "a"
    const QByteArray content = QByteArray::fromHex("00000002" // steps
                                                   "0000000a"
                                                   "6c6973742e636c656172" // "list.clear"
                                                   "01" // enabled
                                                   "00000012" // the record
                                                   "00000000" // the base state
                                                   "0000000a"
                                                   "006e0061006d00650073" // "names"
                                                   "00000009"
                                                   "6c6973742e736f7274" // "list.sort"
                                                   "00" // not enabled
                                                   "0000000b" // the record
                                                   "00000000" // the base state
                                                   "00000002"
                                                   "006e" // "n"
                                                   "01") // ascending
        + number32(quint32(cbor.size())) + cbor;
    QCOMPARE(written.mid(headerSize).toHex(), content.toHex());
    QCOMPARE(written.left(14).toHex(),
             QByteArray("89514d530d0a1a0a"
                        "0001")
                 + number32(quint32(content.size())).toHex());
    QCOMPARE(written.mid(14, 32), QCryptographicHash::hash(content, QCryptographicHash::Sha256));
}

void TestBinaryScript::roundTrips_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QByteArray("{}");
    QTest::newRow("rich") << QByteArray(richScript);
    for (const char *folder : {"examples", "tests/scripts"}) {
        QDirIterator it(TestPaths::source(folder), {"*.json"}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            // The examples of plug-ins have steps of their own.
            if (!file.contains("/examples/plugin/") && !file.contains("/examples/records/"))
                QTest::newRow(qPrintable(QFileInfo(file).fileName())) << contentOf(file);
        }
    }
}

void TestBinaryScript::roundTrips()
{
    QFETCH(QByteArray, json);
    const Result<Script> original = readScript(json, m_catalogue);
    QVERIFY2(original, qPrintable(errorOf(original)));
    const Result<QByteArray> bytes = writeScript(*original, ScriptForm::Binary, m_catalogue);
    QVERIFY2(bytes, qPrintable(errorOf(bytes)));
    const Result<Script> read = readBinaryScript(*bytes, m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(writeScript(*read, ScriptForm::Json, m_catalogue).value_or(""),
             writeScript(*original).value_or(""));
    QCOMPARE(writeBinaryScript(*read).value_or(""), *bytes);

    for (const QByteArray &anyForm : {json, *bytes}) {
        const Result<Script> any = readAnyScript(anyForm, m_catalogue);
        QVERIFY2(any, qPrintable(errorOf(any)));
        QCOMPARE(writeBinaryScript(*any).value_or(""), *bytes);
    }
}

void TestBinaryScript::keepsLongContent()
{
    const QByteArray longText(1000000, 'x');
    const QByteArray bytes =
        binary(R"({"variables": [{"name": "l", "type": "list", "value": [)"
               + QByteArray("-1, ").repeated(100000) + '"' + longText + R"("]}], "steps": [)"
               + QByteArray(R"({"type": "list.clear", "targetVar": "l"},)").repeated(10000)
               + R"({"type": "list.add", "value": ")" + longText + R"("}]})");
    const Result<Script> read = readBinaryScript(bytes, m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(read->steps.size(), std::size_t(10001));
    QCOMPARE(read->steps.back().operation->property("value").toByteArray(), longText);
    QCOMPARE(read->variables.front().value.toList().size(), 100001);
}

void TestBinaryScript::refusesEveryTruncation()
{
    const QByteArray bytes = binary(richScript);
    for (int size = 0; size < bytes.size(); ++size) {
        const Result<Script> read = readBinaryScript(bytes.left(size), m_catalogue);
        QVERIFY2(errorOf(read).startsWith("offset "), qPrintable(QString::number(size)));
        QVERIFY(!read);
    }
}

void TestBinaryScript::refusesEveryBitFlip()
{
    const QByteArray bytes = binary(richScript);
    for (int bit = 0; bit < bytes.size() * 8; ++bit) {
        QByteArray flipped = bytes;
        flipped[bit / 8] = char(flipped.at(bit / 8) ^ (1 << bit % 8));
        const Result<Script> read = readBinaryScript(flipped, m_catalogue);
        QVERIFY2(errorOf(read).startsWith("offset "), qPrintable(QString::number(bit)));
        QVERIFY(!read);
    }
}

void TestBinaryScript::survivesEveryBitFlipUnderAFittingChecksum()
{
    const QByteArray content = binary(richScript).mid(headerSize);
    const MemoryGrowthLimit limit(64 << 20);
    int readable = 0;
    for (int bit = 0; bit < content.size() * 8; ++bit) {
        QByteArray flipped = content;
        flipped[bit / 8] = char(flipped.at(bit / 8) ^ (1 << bit % 8));
        const Result<Script> read = readBinaryScript(sealed(flipped), m_catalogue);
        QVERIFY2(read || errorOf(read).startsWith("offset "), qPrintable(errorOf(read)));
        if (!read)
            continue;
        ++readable;
        // A flipped bit in a value is another value.
        const Result<QByteArray> again = writeBinaryScript(*read);
        QVERIFY2(again, qPrintable(errorOf(again)));
        const Result<Script> twice = readBinaryScript(*again, m_catalogue);
        QVERIFY2(twice, qPrintable(errorOf(twice)));
        QCOMPARE(writeBinaryScript(*twice).value_or(""), *again);
    }
    QVERIFY(readable > 0);
}

void TestBinaryScript::survivesRandomBytesUnderAFittingChecksum()
{
    const QByteArray content = binary(richScript).mid(headerSize);
    std::mt19937 random(5);
    const MemoryGrowthLimit limit(64 << 20);
    for (int round = 0; round < 5000; ++round) {
        QByteArray changed = content;
        const int count = 1 + int(random() % 8);
        for (int i = 0; i < count; ++i)
            changed[int(random() % uint(changed.size()))] = char(random());
        const Result<Script> read = readBinaryScript(sealed(changed), m_catalogue);
        QVERIFY2(read || errorOf(read).startsWith("offset "), qPrintable(errorOf(read)));
    }
}

void TestBinaryScript::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &bytes, const char *error) {
        QTest::newRow(name) << bytes << error;
    };
    const QByteArray sound = sealed(noSteps + noVariables);

    row("nothing", "", "offset 0: this is no binary script");
    row("JSON", "{\"steps\": []}", "offset 0: this is no binary script");
    row("line ends changed", QByteArray(sound).replace("\r\n", "\n"),
        "offset 4: the mark of a binary script is damaged, as by a transfer as text");
    row("newer version", QByteArray(sound).replace(8, 2, QByteArray("\x00\x02", 2)),
        "offset 8: the form has version 2, this program knows version 1");
    row("version 0", QByteArray(sound).replace(8, 2, QByteArray("\x00\x00", 2)),
        "offset 8: the form has version 0, this program knows version 1");
    row("cut off in the header", sound.left(20), "offset 20: the file ends too early");
    row("cut off in the content", sound.left(sound.size() - 2),
        "offset 10: the content should have 9 bytes, and the file has 7; it was cut off");
    row("size of 4 GiB", QByteArray(sound).replace(10, 4, QByteArray(4, '\xff')),
        "offset 10: the content should have 4294967295 bytes, and the file has 9; it was cut off");
    row("bytes added", sound + "\n", "offset 55: 1 bytes follow the content");
    row("content changed", QByteArray(sound).replace(54, 1, "\x81"),
        "offset 14: the checksum is not that of the content; the file is damaged");

    row("no content", sealed(""), "offset 46: the file ends too early");
    row("4 billion steps", sealed(QByteArray(4, '\xff') + noVariables),
        "offset 46: there should be 4294967295 steps in 5 bytes");
    row("no variables", sealed(noSteps), "offset 50: the file ends too early");
    row("variables beyond the end", sealed(noSteps + number32(2) + "\x80"),
        "offset 50: the variables should have 2 bytes, and 1 are left");
    row("bytes after the variables", sealed(noSteps + noVariables + "x"),
        "offset 55: 1 bytes follow the variables");

    row("type id beyond the end", sealed(number32(1) + number32(100) + "list.clear"),
        "offset 50: the type id of step 1 should have 100 bytes, and 10 are left");
    row("type id of 4 GiB", sealed(number32(1) + QByteArray(4, '\xff') + "list.clear"),
        "offset 50: the type id of step 1 should have 4294967295 bytes, and 10 are left");
    row("enabled flag", scriptOf(step("list.clear", clearRecord, 2)),
        "offset 64: step 1: the enabled flag is 2, it should be 0 or 1");
    row("record beyond the end",
        sealed(number32(1) + block("list.clear") + '\x01' + number32(100) + clearRecord + noVariables),
        "offset 65: the record of step 1 (list.clear) should have 100 bytes, and 23 are left");
    row("empty record", scriptOf(step("list.clear", "")),
        "offset 69: step 1 (list.clear): the record ends too early");
    row("record without its field", scriptOf(step("list.clear", baseState)),
        "offset 69: step 1 (list.clear): the record ends too early");
    row("record of another step", scriptOf(step("list.clear", clearRecord + '\x01')),
        "offset 69: step 1 (list.clear): the step leaves 1 bytes of the record");
    row("text with half a character", scriptOf(step("list.clear", baseState + block("abc"))),
        "offset 69: step 1 (list.clear): the record is damaged, or one of a newer version of the step");
    row("text of 2 GiB", scriptOf(step("list.clear", baseState + number32(0x7ffffffe) + "ab")),
        "offset 69: step 1 (list.clear): the record ends too early");
    row("text that takes the next step's bytes",
        sealed(number32(2) + step("list.clear", baseState + number32(20) + "ab")
               + step("list.clear", clearRecord) + noVariables),
        "offset 69: step 1 (list.clear): the record ends too early");
    row("step that throws", scriptOf(step("fixture.throw", baseState)),
        "offset 72: step 1 (fixture.throw): the step threw an exception: out of glasses");

    const auto variables = [](const char *hex) { return sealed(noSteps + block(QByteArray::fromHex(hex))); };
    row("variables that are no CBOR", variables("8181ff"),
        "offset 56: the byte 0xff begins no value of a script");
    row("variables that are no list", variables("a0"),
        "offset 54: the variables: this is an object, it should be an array");
    row("variable without type", variables("81a1646e616d656178"),
        "offset 54: the variables: at /0: the key \"type\" is missing");
    row("variable of an unknown type", variables("81a2646e616d6561786474797065636d6170"),
        "offset 54: the variables: at /0/type: there is no variable type \"map\"; there are \"int\", "
        "\"double\", \"string\", \"bool\", \"list\", \"table\"");
    row("value of the wrong type", variables("81a3646e616d656178647479706563696e746576616c75656161"),
        "offset 54: the variables: at /0/value: this is a string, a variable of type int takes an integer");
    row("unknown step type", scriptOf(step("text.join", clearRecord)), nullptr);
}

void TestBinaryScript::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    // The list of all step types is long.
    if (error.isEmpty()) {
        error = "offset 50: step 1: there is no step type \"text.join\"; there are \""
            + m_catalogue.typeIds().join("\", \"") + '"';
    }
    const MemoryGrowthLimit limit(16 << 20);
    const Result<Script> read = readBinaryScript(bytes, m_catalogue);
    QCOMPARE(errorOf(read), error);
    QVERIFY(!read);
}

void TestBinaryScript::tellsTheFormsApart()
{
    QVERIFY(isBinaryScript(binary("{}")));
    QVERIFY(!isBinaryScript("{}"));
    QVERIFY(!isBinaryScript(""));
    QVERIFY(scriptFormOf("a.json") == ScriptForm::Json);
    QVERIFY(scriptFormOf("folder.d/A.JSON") == ScriptForm::Json);
    QVERIFY(scriptFormOf("a.json.qms") == ScriptForm::Binary);
    QVERIFY(!scriptFormOf("json"));
    QVERIFY(!scriptFormOf("a.txt"));
}

void TestBinaryScript::refusesToLoseWhatPropertiesDoNotShow()
{
    // A base state other than 0 is in no property.
    const QByteArray bytes = scriptOf(step("list.clear", number32(7) + text("names")));
    const Result<Script> read = readBinaryScript(bytes, m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(writeScript(*read, ScriptForm::Binary, m_catalogue).value_or(""), bytes);
    const Result<QByteArray> json = writeScript(*read, ScriptForm::Json, m_catalogue);
    QCOMPARE(errorOf(json),
             QString("step 1 (list.clear): it has state beside its properties, which JSON would lose"));
    QVERIFY(!json);
}

void TestBinaryScript::refusesToLoseWhatRecordsDoNotHold()
{
    const Result<Script> read = readScript(
        R"({"steps": [{"type": "list.clear"}, {"type": "fixture.settings", "ratio": 3}]})", m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QVERIFY(writeScript(*read, ScriptForm::Json, m_catalogue));
    const Result<QByteArray> bytes = writeScript(*read, ScriptForm::Binary, m_catalogue);
    QCOMPARE(errorOf(bytes),
             QString("step 2 (fixture.settings): its record does not hold all its properties, so the binary "
                     "form would lose some"));
}

QTEST_GUILESS_MAIN(TestBinaryScript)
#include "tst_binaryscript.moc"
