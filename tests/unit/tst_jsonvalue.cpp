#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/ValueReader.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/IsLike.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <limits>

using namespace StepHost;

Q_DECLARE_METATYPE(VarType)

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

QVariant nullOf(QMetaType::Type type)
{
    return QVariant(QVariant::Type(type));
}

QVariant nested(int depth)
{
    QVariant value = QVariantList();
    for (int i = 1; i < depth; ++i)
        value = QVariantList{value};
    return value;
}

QByteArray brackets(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

// Same type, same nullness and same content, where QVariant's own comparison would convert.
bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    switch (a.userType()) {
    case QMetaType::Double: {
        const double x = a.toDouble();
        const double y = b.toDouble();
        return a.isNull() == b.isNull()
            && (std::memcmp(&x, &y, sizeof x) == 0 || (std::isnan(x) && std::isnan(y)));
    }
    case QMetaType::Float: {
        const float x = a.toFloat();
        const float y = b.toFloat();
        return std::memcmp(&x, &y, sizeof x) == 0 || (std::isnan(x) && std::isnan(y));
    }
    case QMetaType::QVariantList: {
        const QVariantList x = a.toList();
        const QVariantList y = b.toList();
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), isSame);
    }
    case QMetaType::QVariantMap: {
        const QVariantMap x = a.toMap();
        const QVariantMap y = b.toMap();
        return x.keys() == y.keys() && isSame(x.values(), y.values());
    }
    case QMetaType::QString:
        return a.toString() == b.toString();
    case QMetaType::QByteArray:
        return a.toByteArray() == b.toByteArray();
    default:
        return a.isNull() == b.isNull() && a == b;
    }
}
} // namespace

class TestJsonValue : public QObject
{
    Q_OBJECT

private slots:
    void writesAndReads_data();
    void writesAndReads();
    void doublesReadBack_data();
    void doublesReadBack();
    void everyCodeUnitReadsBack();
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void opaqueValuesDoNotReadBack();
    void nullTextsAreEmptyTexts();
    void variableValues_data();
    void variableValues();
    void depthIsBounded();
    void sizeIsBounded();
};

void TestJsonValue::writesAndReads_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("invalid") << QVariant() << QByteArray("null");
    QTest::newRow("true") << QVariant(true) << QByteArray("true");
    QTest::newRow("false") << QVariant(false) << QByteArray("false");
    QTest::newRow("int") << QVariant(3) << QByteArray("3");
    QTest::newRow("least int") << QVariant(-2147483647 - 1) << QByteArray("-2147483648");
    QTest::newRow("greatest int") << QVariant(2147483647) << QByteArray("2147483647");
    QTest::newRow("64 bits, small") << QVariant(3LL) << QByteArray("{\"$qlonglong\": 3}");
    QTest::newRow("64 bits, still an int")
        << QVariant(-2147483648LL) << QByteArray("{\"$qlonglong\": -2147483648}");
    QTest::newRow("64 bits, above int") << QVariant(2147483648LL) << QByteArray("2147483648");
    QTest::newRow("64 bits, below int") << QVariant(-2147483649LL) << QByteArray("-2147483649");
    QTest::newRow("64 bits, least") << QVariant(std::numeric_limits<qlonglong>::min())
                                    << QByteArray("-9223372036854775808");
    QTest::newRow("64 bits, greatest")
        << QVariant(std::numeric_limits<qlonglong>::max()) << QByteArray("9223372036854775807");
    QTest::newRow("unsigned 64 bits, small")
        << QVariant(9223372036854775807ULL) << QByteArray("{\"$qulonglong\": 9223372036854775807}");
    QTest::newRow("unsigned 64 bits")
        << QVariant(9223372036854775808ULL) << QByteArray("9223372036854775808");
    QTest::newRow("unsigned 64 bits, greatest")
        << QVariant(18446744073709551615ULL) << QByteArray("18446744073709551615");
    QTest::newRow("unsigned") << QVariant(4294967295U) << QByteArray("{\"$uint\": 4294967295}");
    QTest::newRow("short") << QVariant::fromValue<short>(-32768) << QByteArray("{\"$short\": -32768}");
    QTest::newRow("unsigned short") << QVariant::fromValue<ushort>(65535)
                                    << QByteArray("{\"$ushort\": 65535}");
    QTest::newRow("long") << QVariant::fromValue<long>(-5) << QByteArray("{\"$long\": -5}");
    QTest::newRow("unsigned long") << QVariant::fromValue<ulong>(5) << QByteArray("{\"$ulong\": 5}");
    QTest::newRow("char") << QVariant::fromValue<char>('A') << QByteArray("{\"$char\": 65}");
    QTest::newRow("signed char") << QVariant::fromValue<signed char>(-128)
                                 << QByteArray("{\"$signed char\": -128}");
    QTest::newRow("unsigned char") << QVariant::fromValue<uchar>(255) << QByteArray("{\"$uchar\": 255}");

    QTest::newRow("1.0") << QVariant(1.0) << QByteArray("1.0");
    QTest::newRow("0.1") << QVariant(0.1) << QByteArray("0.1");
    QTest::newRow("-0.0") << QVariant(-0.0) << QByteArray("-0.0");
    QTest::newRow("1e22") << QVariant(1e22) << QByteArray("1e+22");
    QTest::newRow("least denormal") << QVariant(5e-324) << QByteArray("5e-324");
    QTest::newRow("nan") << QVariant(notANumber) << QByteArray("{\"$double\": \"nan\"}");
    QTest::newRow("inf") << QVariant(infinity) << QByteArray("{\"$double\": \"inf\"}");
    QTest::newRow("-inf") << QVariant(-infinity) << QByteArray("{\"$double\": \"-inf\"}");
    QTest::newRow("float") << QVariant(0.5f) << QByteArray("{\"$float\": 0.5}");
    QTest::newRow("float nan") << QVariant(std::numeric_limits<float>::quiet_NaN())
                               << QByteArray("{\"$float\": \"nan\"}");

    QTest::newRow("empty text") << QVariant(QString("")) << QByteArray("\"\"");
    QTest::newRow("text") << QVariant(QString::fromUtf8("列表")) << QByteArray("\"列表\"");
    QTest::newRow("quotes") << QVariant(QString("a\"b\\c")) << QByteArray("\"a\\\"b\\\\c\"");
    QTest::newRow("line ends") << QVariant(QString("a\nb\r\tc")) << QByteArray("\"a\\nb\\r\\tc\"");
    QTest::newRow("NUL") << QVariant(QString("a") + QChar(0) + "b") << QByteArray("\"a\\u0000b\"");
    QTest::newRow("controls") << QVariant(QString("\x1b\x7f") + QChar(0x9b))
                              << QByteArray("\"\\u001b\\u007f\\u009b\"");
    QTest::newRow("beyond the basic plane")
        << QVariant(QString::fromUtf8("\xF0\x9F\x98\x80")) << QByteArray("\"\xF0\x9F\x98\x80\"");
    QTest::newRow("byte order marks") << QVariant(QString(2, QChar(0xFEFF)) + "a")
                                      << QByteArray("\"\xEF\xBB\xBF\xEF\xBB\xBF"
                                                    "a\"");
    QTest::newRow("noncharacter") << QVariant(QString(QChar(0xFFFF))) << QByteArray("\"\xEF\xBF\xBF\"");
    QTest::newRow("lone high surrogate")
        << QVariant(QString("a") + QChar(0xD800)) << QByteArray("{\"$QString\": [97, 55296]}");
    QTest::newRow("surrogates reversed")
        << QVariant(QString(QChar(0xDC00)) + QChar(0xD800)) << QByteArray("{\"$QString\": [56320, 55296]}");

    QTest::newRow("empty list") << QVariant(QVariantList()) << QByteArray("[]");
    QTest::newRow("list") << QVariant(
        QVariantList{1, 1.0, "1", true, QVariant(), QVariantList{2, QVariantList()}})
                          << QByteArray("[1, 1.0, \"1\", true, null, [2, []]]");
    QTest::newRow("texts") << QVariant(QStringList{"a", "", QString(QChar(0xDFFF))})
                           << QByteArray("{\"$QStringList\": [\"a\", \"\", {\"$QString\": [57343]}]}");
    QTest::newRow("no texts") << QVariant(QStringList()) << QByteArray("{\"$QStringList\": []}");
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xff", 2)) << QByteArray("{\"$QByteArray\": \"AP8=\"}");
    QTest::newRow("no bytes") << QVariant(QByteArray("")) << QByteArray("{\"$QByteArray\": \"\"}");
    QTest::newRow("map") << QVariant(
        QVariantMap{{"b", QVariantList{1}}, {QString("a") + QChar(0xD800), 2.0f}})
                         << QByteArray(
                                "{\"$QVariantMap\": [[{\"$QString\": [97, 55296]}, {\"$float\": 2.0}], "
                                "[\"b\", [1]]]}");
    QTest::newRow("empty map") << QVariant(QVariantMap()) << QByteArray("{\"$QVariantMap\": []}");
    QTest::newRow("null int") << nullOf(QMetaType::Int) << QByteArray("{\"$null\": \"int\"}");
    QTest::newRow("null double") << nullOf(QMetaType::Double) << QByteArray("{\"$null\": \"double\"}");
    QTest::newRow("null bool") << nullOf(QMetaType::Bool) << QByteArray("{\"$null\": \"bool\"}");
    QTest::newRow("null in a list") << QVariant(QVariantList{nullOf(QMetaType::LongLong)})
                                    << QByteArray("[{\"$null\": \"qlonglong\"}]");
}

void TestJsonValue::writesAndReads()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, json);
    const QByteArray written = valueToJson(value).value_or("");
    QCOMPARE(written, json);
    const Result<QVariant> read = valueFromJson(written);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QVERIFY2(isSame(*read, value), read->typeName());
}

void TestJsonValue::doublesReadBack_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("greatest") << std::numeric_limits<double>::max() << QByteArray("1.7976931348623157e+308");
    QTest::newRow("least normal") << std::numeric_limits<double>::min()
                                  << QByteArray("2.2250738585072014e-308");
    QTest::newRow("greatest denormal") << 2.225073858507201e-308 << QByteArray("2.225073858507201e-308");
    QTest::newRow("1/3") << 1.0 / 3.0 << QByteArray("0.3333333333333333");
    QTest::newRow("2^53 + 2") << 9007199254740994.0 << QByteArray("9007199254740994.0");
    QTest::newRow("1e23") << 1e23 << QByteArray("1e+23");
    QTest::newRow("9.5e-3") << 9.5e-3 << QByteArray("0.0095");
}

void TestJsonValue::doublesReadBack()
{
    QFETCH(double, number);
    QFETCH(QByteArray, json);
    const QByteArray written = valueToJson(number).value_or("");
    QCOMPARE(written, json);
    QVERIFY(isSame(valueFromJson(written).value_or(QVariant()), number));
}

void TestJsonValue::everyCodeUnitReadsBack()
{
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QString text = QChar(ushort(unit)) + QString("x");
        QByteArray json;
        JsonWriter writer(json, JsonWriter::InLine);
        writeText(writer, text);
        const Result<QVariant> read = valueFromJson(json);
        QVERIFY2(read, qPrintable(errorOf(read)));
        QVERIFY2(*read == QVariant(text), json.constData());
    }
}

void TestJsonValue::reads_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("blanks") << QByteArray(" [1 ,\n2\t]\r\n") << QVariant(QVariantList{1, 2});
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF[1]") << QVariant(QVariantList{1});
    QTest::newRow("-0") << QByteArray("-0") << QVariant(0);
    QTest::newRow("1E2") << QByteArray("1E2") << QVariant(100.0);
    QTest::newRow("many digits") << QByteArray("0.1000000000000000055511151231257827") << QVariant(0.1);
    QTest::newRow("escapes") << QByteArray("\"\\u0041\\ud83d\\ude00\\/\\b\\f\"")
                             << QVariant(QString::fromUtf8("A\xF0\x9F\x98\x80/\b\f"));
    QTest::newRow("typed int") << QByteArray("{\"$int\": 5}") << QVariant(5);
    QTest::newRow("typed double") << QByteArray("{\"$double\": 5}") << QVariant(5.0);
    QTest::newRow("2^53") << QByteArray("{\"$double\": 9007199254740992}") << QVariant(9007199254740992.0);
    QTest::newRow("-2^63") << QByteArray("{\"$double\": -9223372036854775808}")
                           << QVariant(-9223372036854775808.0);
    QTest::newRow("bytes without padding")
        << QByteArray("{\"$QByteArray\": \"AP8\"}") << QVariant(QByteArray("\0\xff", 2));
    QTest::newRow("typed bool") << QByteArray("{\"$bool\": true}") << QVariant(true);
    QTest::newRow("typed text") << QByteArray("{\"$QString\": \"a\"}") << QVariant(QString("a"));
    QTest::newRow("typed list") << QByteArray("{\"$QVariantList\": [1]}") << QVariant(QVariantList{1});
    QTest::newRow("typed invalid") << QByteArray("{\"$QVariant\": null}") << QVariant();
}

void TestJsonValue::reads()
{
    QFETCH(QByteArray, json);
    QFETCH(QVariant, value);
    const Result<QVariant> read = valueFromJson(json);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QVERIFY2(isSame(*read, value), read->typeName());
}

void TestJsonValue::refuses_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing") << QByteArray() << "line 1, column 1: *";
    QTest::newRow("no JSON") << QByteArray("[1,\n x]") << "line 2, column 2: *";
    QTest::newRow("more after it") << QByteArray("[1] 2") << "line 1, column 5: *";
    QTest::newRow("NUL after it") << QByteArray("[1]\0[2]", 7)
                                  << "line 1, column 4: there is a NUL byte after the JSON document";
    QTest::newRow("NUL at the end") << QByteArray("[1]\0", 4)
                                    << "line 1, column 4: there is a NUL byte after the JSON document";
    QTest::newRow("NUL at the end of a number")
        << QByteArray("1\0", 2) << "line 1, column 2: there is a NUL byte after the JSON document";
    QTest::newRow("NUL after blanks")
        << QByteArray("[1]\n\0", 5) << "line 2, column 1: there is a NUL byte after the JSON document";
    QTest::newRow("columns count characters") << QByteArray("[\"列表\", x]") << "line 1, column 8: *";
    QTest::newRow("comment") << QByteArray("[1] // one") << "line 1, column 5: *";
    QTest::newRow("comma at the end") << QByteArray("[1,]") << "line 1, column 4: *";
    QTest::newRow("nan") << QByteArray("nan") << "line 1, column 2: *";
    QTest::newRow("UTF-8 cut off") << QByteArray("\"\xE5\x88\"") << "ill-formed UTF-8*";
    QTest::newRow("UTF-8 too long") << QByteArray("\"\xC0\x80\"") << "ill-formed UTF-8*";
    QTest::newRow("surrogate in UTF-8") << QByteArray("\"\xED\xA0\x80\"") << "ill-formed UTF-8*";
    QTest::newRow("lone surrogate") << QByteArray("\"\\ud800\"") << "surrogate*";
    QTest::newRow("raw line end in a text") << QByteArray("\"a\nb\"") << "line 1, column 3: *";
    QTest::newRow("65 bits") << QByteArray("[18446744073709551616]")
                             << "the integer \"18446744073709551616\" does not fit into 64 bits; write it "
                                "with \".0\" for a double";
    QTest::newRow("64 bits, negative")
        << QByteArray("-9223372036854775809") << "does not fit into 64 bits; *";
    QTest::newRow("too large a double") << QByteArray("1e400") << "number overflow*";
    QTest::newRow("key twice") << QByteArray("{\"a\": 1,\n \"a\": 2}")
                               << "line 2, column 4: the object has the key \"a\" already";
    QTest::newRow("object")
        << QByteArray("[1, {\"a\": 1}]")
        << "at /1: an object stands for a value of a special type and has one of these keys: *";
    QTest::newRow("empty object") << QByteArray(
        "{}") << "an object stands for a value of a special type and has one of these keys: *";
    QTest::newRow("two keys")
        << QByteArray("{\"$int\": 1, \"$uint\": 1}")
        << "an object stands for a value of a special type and has one of these keys: *";
    QTest::newRow("unknown type")
        << QByteArray("{\"$QDate\": 1}")
        << "one of these keys: $QVariant, $bool, $int, $uint, $qlonglong, $qulonglong, $long, $ulong, "
           "$short, $ushort, $char, $signed char, $uchar, $double, $float, $QString, $QByteArray, "
           "$QStringList, $QVariantList, $QVariantMap, $null";
    QTest::newRow("NUL in a key")
        << QByteArray("{\"$int\\u0000\": 1}")
        << "an object stands for a value of a special type and has one of these keys: *";
    QTest::newRow("out of range") << QByteArray("[{\"$uint\": -1}]") << "at /0/$uint: -1 is out of range";
    QTest::newRow("int out of range") << QByteArray("{\"$int\": 2147483648}") << "2147483648 is out of range";
    QTest::newRow("short out of range") << QByteArray("{\"$short\": 32768}") << "32768 is out of range";
    QTest::newRow("64 bits out of range")
        << QByteArray("{\"$qlonglong\": 9223372036854775808}") << "9223372036854775808 is out of range";
    QTest::newRow("float out of range")
        << QByteArray("{\"$float\": 1e39}") << "at /$float: the number is out of range";
    QTest::newRow("integer with a fraction")
        << QByteArray("{\"$int\": 1.0}") << "at /$int: this is a double, it should be an integer";
    QTest::newRow("unknown number") << QByteArray("{\"$double\": \"NaN\"}")
                                    << "it should be a number, \"nan\", \"inf\" or \"-inf\"";
    QTest::newRow("bool") << QByteArray("{\"$bool\": 1}")
                          << "at /$bool: this is an integer, it should be true or false";
    QTest::newRow("invalid value") << QByteArray("{\"$QVariant\": 1}") << "it should be null";
    QTest::newRow("text") << QByteArray("{\"$QString\": 1}")
                          << "it should be a string or an array of UTF-16 code units";
    QTest::newRow("code unit") << QByteArray("{\"$QString\": [1, 65536]}")
                               << "at /$QString/1: 65536 is out of range";
    QTest::newRow("texts") << QByteArray("{\"$QStringList\": [\"a\", 1]}")
                           << "at /$QStringList/1: this is an integer, it should be a string";
    QTest::newRow("texts in typed form")
        << QByteArray("{\"$QStringList\": [{\"$int\": 1}]}") << "at /$QStringList/0: this should be a string";
    QTest::newRow("no list of texts")
        << QByteArray("{\"$QStringList\": 1}") << "it should be an array of strings";
    QTest::newRow("no list") << QByteArray("{\"$QVariantList\": 1}") << "it should be an array";
    QTest::newRow("integer between two doubles")
        << QByteArray("{\"$double\": 9007199254740993}")
        << "at /$double: no double is 9007199254740993, the nearest one is 9007199254740992";
    QTest::newRow("integer between two floats")
        << QByteArray("{\"$float\": -16777217}")
        << "at /$float: no float is -16777217, the nearest one is -16777216";
    QTest::newRow("bytes") << QByteArray("{\"$QByteArray\": \"***\"}") << "the string is not in Base64";
    QTest::newRow("bytes as array") << QByteArray("{\"$QByteArray\": [1]}")
                                    << "it should be a string in Base64";
    QTest::newRow("map as object") << QByteArray("{\"$QVariantMap\": {}}")
                                   << "it should be an array of pairs";
    QTest::newRow("no pair") << QByteArray("{\"$QVariantMap\": [[\"a\"]]}")
                             << "at /$QVariantMap/0: this should be an array of a key and a value";
    QTest::newRow("no key") << QByteArray("{\"$QVariantMap\": [[1, 1]]}")
                            << "at /$QVariantMap/0/0: this is an integer, it should be a string";
    QTest::newRow("bad value in a map")
        << QByteArray("{\"$QVariantMap\": [[\"a\", {}]]}") << "at /$QVariantMap/0/1: *";
    QTest::newRow("key of a map twice") << QByteArray("{\"$QVariantMap\": [[\"a\", 1], [\"a\", 2]]}")
                                        << "at /$QVariantMap/1: the map has the key \"a\" already";
    QTest::newRow("null of no type") << QByteArray("{\"$null\": \"nonsense\"}")
                                     << "this should be the name of a type, such as \"int\"";
    QTest::newRow("null of an invalid value")
        << QByteArray("{\"$null\": \"QVariant\"}") << "this should be the name of a type, such as \"int\"";
    QTest::newRow("null as number") << QByteArray("{\"$null\": 1}")
                                    << "this should be the name of a type, such as \"int\"";
}

void TestJsonValue::refuses()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const Result<QVariant> read = valueFromJson(json);
    QVERIFY(!read);
    QVERIFY2(isLike(errorOf(read), '*' + error), qPrintable(errorOf(read)));
}

void TestJsonValue::opaqueValuesDoNotReadBack()
{
    const QByteArray json = valueToJson(QVariant::fromValue(static_cast<QObject *>(this))).value_or("");
    QCOMPARE(json, QByteArray("{\"$opaque\": \"QObject*\"}"));
    const Result<QVariant> read = valueFromJson(json);
    QCOMPARE(errorOf(read), QString("a value of this type was not written and cannot be read back"));
}

void TestJsonValue::nullTextsAreEmptyTexts()
{
    const QByteArray json = valueToJson(QVariantList{QString(), QByteArray()}).value_or("");
    QCOMPARE(json, QByteArray("[\"\", {\"$QByteArray\": \"\"}]"));
}

void TestJsonValue::variableValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("int") << QVariant(1) << VarType::Int << QByteArray("1");
    QTest::newRow("64 bits in an int") << QVariant(1LL << 40) << VarType::Int << QByteArray("1099511627776");
    QTest::newRow("double in an int") << QVariant(1.0) << VarType::Int << QByteArray("{\"$double\": 1.0}");
    QTest::newRow("text in an int") << QVariant("1") << VarType::Int << QByteArray("{\"$QString\": \"1\"}");
    QTest::newRow("invalid in an int") << QVariant() << VarType::Int << QByteArray("{\"$QVariant\": null}");
    QTest::newRow("int in a double") << QVariant(1) << VarType::Double << QByteArray("{\"$int\": 1}");
    QTest::newRow("bool in a text") << QVariant(true) << VarType::String << QByteArray("{\"$bool\": true}");
    QTest::newRow("surrogate in a text")
        << QVariant(QString(QChar(0xD800))) << VarType::String << QByteArray("{\"$QString\": [55296]}");
    QTest::newRow("surrogate in a bool")
        << QVariant(QString(QChar(0xD800))) << VarType::Bool << QByteArray("{\"$QString\": [55296]}");
    QTest::newRow("list in a bool") << QVariant(QVariantList{1}) << VarType::Bool
                                    << QByteArray("{\"$QVariantList\": [1]}");
    QTest::newRow("texts in a list") << QVariant(QStringList{"a"}) << VarType::List
                                     << QByteArray("{\"$QStringList\": [\"a\"]}");
    QTest::newRow("table") << QVariant(QVariantList{QVariant(QVariantList{1}), QVariant(QStringList{"a"})})
                           << VarType::Table << QByteArray("[[1], {\"$QStringList\": [\"a\"]}]");
    QTest::newRow("list in a table") << QVariant(QVariantList{1}) << VarType::Table
                                     << QByteArray("{\"$QVariantList\": [1]}");
    QTest::newRow("null list in a list")
        << nullOf(QMetaType::QVariantList) << VarType::List << QByteArray("{\"$null\": \"QVariantList\"}");
    QTest::newRow("anything, undeclared") << QVariant() << VarType::Undeclared << QByteArray("null");
}

void TestJsonValue::variableValues()
{
    QFETCH(QVariant, value);
    QFETCH(VarType, type);
    QFETCH(QByteArray, json);
    QByteArray written;
    JsonWriter writer(written, JsonWriter::InLine);
    QVERIFY(writeVariableValue(writer, value, type));
    QCOMPARE(written, json);
    QVERIFY(isSame(valueFromJson(written).value_or(QVariant()), value));
}

void TestJsonValue::depthIsBounded()
{
    QVERIFY(valueFromJson(brackets(maxJsonDepth)));
    const Result<QVariant> refused = valueFromJson(brackets(maxJsonDepth + 1));
    QCOMPARE(errorOf(refused),
             QString("line 1, column 513: arrays and objects are nested deeper than 512 levels"));
    QVERIFY(!valueFromJson(brackets(10000)));
    QVERIFY(!valueFromJson(QByteArray("{\"a\":").repeated(100000)));
    QVERIFY(!valueFromJson(QByteArray(10000000, '[')));

    QCOMPARE(valueToJson(nested(maxJsonDepth)).value_or(""), brackets(maxJsonDepth));
    const QString tooDeep = "is nested deeper than 512 levels of JSON";
    QCOMPARE(errorOf(valueToJson(nested(maxJsonDepth + 1))), tooDeep);
    QCOMPARE(errorOf(valueToJson(nested(10000))), tooDeep);
    QByteArray json;
    JsonWriter inDepth(json);
    for (int level = 1; level < maxJsonDepth; ++level)
        inDepth.openArray();
    QCOMPARE(errorOf(writeValue(inDepth, nested(2))), tooDeep);

    // The typed form is nested too, and what is written reads back.
    for (const QVariant &value :
         {QVariant(QStringList{"a"}), QVariant(QVariantMap{{"a", QVariant(QStringList())}}),
          QVariant(QVariantMap{{QString(QChar(0xD800)), 1.0f}}), QVariant(QString(QChar(0xD800))),
          QVariant(1LL)}) {
        for (int depth = maxJsonDepth - 8; depth <= maxJsonDepth; ++depth) {
            json.clear();
            JsonWriter writer(json, JsonWriter::InLine);
            for (int level = 0; level < depth; ++level)
                writer.openArray();
            if (writeValue(writer, value)) {
                const Result<QVariant> read = valueFromJson(json + QByteArray(depth, ']'));
                QVERIFY2(read, qPrintable(errorOf(read)));
            }
        }
    }
}

void TestJsonValue::sizeIsBounded()
{
    // Forty levels of lists that hold the one before twice: small in memory, 2^40 texts in JSON.
    QVariant value = QString(100000, 'x');
    for (int i = 0; i < 40; ++i)
        value = QVariantList{value, value};
    QCOMPARE(errorOf(valueToJson(value)), QString("makes more than 256 MiB of JSON"));
}

QTEST_GUILESS_MAIN(TestJsonValue)
#include "tst_jsonvalue.moc"
