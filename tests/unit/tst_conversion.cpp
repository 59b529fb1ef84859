#include "stepkit/Conversion.h"
#include "tests/support/ShowValue.h"
#include "tests/support/WarningLog.h"

#include <QDate>
#include <QUrl>
#include <QtTest>

#include <climits>
#include <limits>

Q_DECLARE_METATYPE(VarType)

struct Opaque
{
};
Q_DECLARE_METATYPE(Opaque)

// A user type that Qt can convert to every type that the tests below ask for.
struct Seven
{
};
Q_DECLARE_METATYPE(Seven)

Q_DECLARE_METATYPE(QList<int>)

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

QVariant list(const QVariantList &elements)
{
    return QVariant(elements);
}

QVariant nullVariant(QMetaType::Type type)
{
    return QVariant(static_cast<QVariant::Type>(type));
}
} // namespace

class TestConversion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void convertToVarType_data();
    void convertToVarType();

private:
    void addConversionToInt();
    void addConversionToDouble();
    void addConversionToString();
    void addConversionToBool();
    void addConversionToList();
    void addConversionToTable();
    void addConversionToUnknownTypes();
};

void TestConversion::initTestCase()
{
    QVERIFY((QMetaType::registerConverter<Seven, qlonglong>([](const Seven &) { return 7ll; })));
    QVERIFY((QMetaType::registerConverter<Seven, int>([](const Seven &) { return 7; })));
    QVERIFY((QMetaType::registerConverter<Seven, double>([](const Seven &) { return 7.0; })));
    QVERIFY((QMetaType::registerConverter<Seven, QString>([](const Seven &) { return QString("seven"); })));
}

void TestConversion::convertToVarType_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QVariant>("result");

    struct Empty
    {
        VarType type;
        QVariant result;
    };
    const Empty empties[] = {
        {VarType::Int, 0},
        {VarType::Double, 0.0},
        {VarType::String, QString()},
        {VarType::Bool, false},
        {VarType::List, QVariantList()},
        {VarType::Table, QVariantList()},
        {VarType::Undeclared, QVariant()},
        {VarType(7), QVariant()},
        {VarType(-1), QVariant()},
        {VarType(INT_MAX), QVariant()},
        {VarType(INT_MIN), QVariant()},
    };
    for (const Empty &empty : empties) {
        const auto row = [&empty](const char *name, const QVariant &value) {
            QTest::addRow("to %d: %s", int(empty.type), name) << empty.type << value << true << empty.result;
        };
        row("invalid", QVariant());
        row("null text", QString());
        row("empty text", "");
        row("null int", nullVariant(QMetaType::Int));
        row("null double", nullVariant(QMetaType::Double));
        row("null bool", nullVariant(QMetaType::Bool));
        row("null list", nullVariant(QMetaType::QVariantList));
        row("null byte array", QByteArray());
        row("null date", QDate());
        row("null pointer", QVariant::fromValue(nullptr));
    }
    addConversionToInt();
    addConversionToDouble();
    addConversionToString();
    addConversionToBool();
    addConversionToList();
    addConversionToTable();
    addConversionToUnknownTypes();
}

void TestConversion::addConversionToInt()
{
    const auto row = [](const char *name, const QVariant &value, bool accepted, int result) {
        QTest::addRow("to int: %s", name) << VarType::Int << value << accepted << QVariant(result);
    };
    row("true", true, true, 1);
    row("false", false, true, 0);
    row("int", -7, true, -7);
    row("double 7.9 is rounded", 7.9, true, 8);
    row("double -7.9 is rounded", -7.9, true, -8);
    row("double 0.5", 0.5, true, 1);
    row("float", 2.25f, true, 2);
    row("64 bit", 5ll, true, 5);
    row("64 bit, out of range", 0x100000002ll, true, 2);
    row("unsigned", 4000000000u, true, -294967296);
    row("unsigned 64 bit", 6ull, true, 6);
    row("char", QChar('A'), true, 65);
    row("byte array", QByteArray("12"), true, 12);
    row("byte array that is no number", QByteArray("12abc"), true, 0);
    row("converter of a user type", QVariant::fromValue(Seven()), true, 7);
    row("text 12", "12", true, 12);
    row("text with blanks", " 12 ", true, 12);
    row("text +12", "+12", true, 12);
    row("text 7.9 is truncated", "7.9", true, 7);
    row("text -7.9 is truncated", "-7.9", true, -7);
    row("text 3.7", "3.7", true, 3);
    row("text 1e3", "1e3", true, 1000);
    row("text 1e-9", "1e-9", true, 0);
    row("text 2147483647", "2147483647", true, INT_MAX);
    row("text 2147483647.9", "2147483647.9", true, INT_MAX);
    row("text 2147483648", "2147483648", true, INT_MIN);
    row("text -2147483647.5", "-2147483647.5", true, INT_MIN + 1);
    row("text -2147483648", "-2147483648", true, INT_MIN);
    row("text -2147483648.9", "-2147483648.9", true, INT_MIN);
    row("text -2147483649", "-2147483649", true, INT_MIN);
    row("text 1e300", "1e300", true, INT_MIN);
    row("text -1e300", "-1e300", true, INT_MIN);
    row("text inf", "inf", true, INT_MIN);
    row("text -inf", "-inf", true, INT_MIN);
    row("text nan", "nan", true, INT_MIN);
    for (const char *text : {"abc", "12abc", "0x10", " ", "true", "1e400", "1,5", "[1]", "是"})
        row(QString("text '%1'").arg(text).toUtf8(), text, false, 0);
    row("list", list({1}), false, 0);
    row("empty list", list({}), false, 0);
    row("string list", QStringList("1"), false, 0);
    row("map", QVariantMap{{"a", 1}}, false, 0);
    row("url", QUrl("1"), false, 0);
    row("user type", QVariant::fromValue(Opaque()), false, 0);
}

void TestConversion::addConversionToDouble()
{
    const auto row = [](const char *name, const QVariant &value, bool accepted, double result) {
        QTest::addRow("to double: %s", name) << VarType::Double << value << accepted << QVariant(result);
    };
    row("true", true, true, 1.0);
    row("false", false, true, 0.0);
    row("int", -7, true, -7.0);
    row("double", 7.9, true, 7.9);
    row("negative zero", -0.0, true, -0.0);
    row("nan", notANumber, true, notANumber);
    row("infinity", infinity, true, infinity);
    row("float", 2.25f, true, 2.25);
    row("64 bit", 0x100000002ll, true, 4294967298.0);
    row("unsigned 64 bit", ULLONG_MAX, true, 18446744073709551616.0);
    row("byte array", QByteArray("1.5"), true, 1.5);
    row("byte array that is no number", QByteArray("x"), true, 0.0);
    row("converter of a user type", QVariant::fromValue(Seven()), true, 7.0);
    row("text 7.9", "7.9", true, 7.9);
    row("text with blanks", " 7.9 ", true, 7.9);
    row("text 2147483648", "2147483648", true, 2147483648.0);
    row("text 1e300", "1e300", true, 1e300);
    row("text inf", "inf", true, infinity);
    row("text nan", "nan", true, notANumber);
    row("text -0", "-0", true, -0.0);
    for (const char *text : {"abc", "12abc", "0x10", " ", "true", "1e400", "1,5"})
        row(QString("text '%1'").arg(text).toUtf8(), text, false, 0.0);
    row("char", QChar('A'), false, 0.0);
    row("list", list({1}), false, 0.0);
    row("empty list", list({}), false, 0.0);
    row("string list", QStringList("1"), false, 0.0);
    row("map", QVariantMap{{"a", 1}}, false, 0.0);
    row("date", QDate(2020, 1, 2), false, 0.0);
    row("user type", QVariant::fromValue(Opaque()), false, 0.0);
}

void TestConversion::addConversionToString()
{
    const auto row = [](const char *name, const QVariant &value, bool accepted, const QString &result) {
        QTest::addRow("to text: %s", name) << VarType::String << value << accepted << QVariant(result);
    };
    row("text", "abc", true, "abc");
    row("blanks", "  ", true, "  ");
    row("int", 5, true, "5");
    row("double", 2.5, true, "2.5");
    row("whole double", 3.0, true, "3");
    row("nan", notANumber, true, "nan");
    row("true", true, true, "true");
    row("false", false, true, "false");
    row("64 bit", LLONG_MIN, true, "-9223372036854775808");
    row("char", QChar(0x8868), true, "表");
    row("byte array", QByteArray("表"), true, "表");
    row("empty byte array", QByteArray(""), true, QString(""));
    row("date", QDate(2020, 1, 2), true, "2020-01-02");
    row("string list of one", QStringList("a"), true, "a");
    row("string list of two", QStringList({"a", "b"}), true, QVariant(QStringList({"a", "b"})).toString());
    row("map", QVariantMap{{"a", 1}}, true, QVariant(QVariantMap{{"a", 1}}).toString());
    row("user type", QVariant::fromValue(Opaque()), true, QVariant::fromValue(Opaque()).toString());
    row("converter of a user type", QVariant::fromValue(Seven()), true, "seven");
    row("list", list({1}), false, QString());
    row("empty list", list({}), false, QString());
    row("table", list({list({1})}), false, QString());
}

void TestConversion::addConversionToBool()
{
    const auto row = [](const char *name, const QVariant &value, bool accepted, bool result) {
        QTest::addRow("to bool: %s", name) << VarType::Bool << value << accepted << QVariant(result);
    };
    row("true", true, true, true);
    row("false", false, true, false);
    row("text 是", "是", true, true);
    row("text 否", "否", true, false);
    row("text Yes", "Yes", true, true);
    row("text 0", "0", true, false);
    row("text 1", "1", true, true);
    row("blanks", "  ", true, false);
    row("text maybe", "maybe", false, false);
    row("text 2", "2", false, false);
    row("text 0.0", "0.0", false, false);
    row("0", 0, true, false);
    row("2", 2, true, true);
    row("0.5", 0.5, true, true);
    row("1e-300", 1e-300, true, true);
    row("0.0", 0.0, true, false);
    row("-0.0", -0.0, true, false);
    row("nan", notANumber, true, true);
    row("infinity", -infinity, true, true);
    row("float", 0.0f, true, false);
    row("64 bit", 0x100000000ll, true, true);
    row("byte array 2", QByteArray("2"), true, true);
    row("byte array 0", QByteArray("0"), true, false);
    row("byte array true", QByteArray("true"), true, false);
    row("converter of a user type", QVariant::fromValue(Seven()), true, true);
    row("list", list({true}), false, false);
    row("empty list", list({}), false, false);
    row("string list", QStringList("true"), false, false);
    row("map", QVariantMap{{"a", 1}}, false, false);
    row("date", QDate(2020, 1, 2), false, false);
    row("user type", QVariant::fromValue(Opaque()), false, false);
}

void TestConversion::addConversionToList()
{
    const auto row = [](const char *name, const QVariant &value, bool accepted, const QVariant &result) {
        QTest::addRow("to list: %s", name) << VarType::List << value << accepted << result;
    };
    const QVariant empty = QVariantList();
    const auto same = [&row](const char *name, const QVariant &value) { row(name, value, true, value); };
    same("list", list({1, "a"}));
    same("empty list", empty);
    same("table", list({list({1})}));
    same("string list", QStringList({"a", "b"}));
    same("registered container", QVariant::fromValue(QList<int>{1, 2}));
    row("text [1, a, ,2]", "[1, a, ,2]", true, list({1.0, "a", 2.0}));
    row("text []", "[]", true, empty);
    row("text [1] and blanks", "[1] \t", true, list({1.0}));
    row("a blank first", " [1]", false, empty);
    row("no closing bracket", "[1", false, empty);
    row("the bracket alone", "[", false, empty);
    row("no bracket", "1,2", false, empty);
    row("blanks", " ", false, empty);
    for (const QVariant &value :
         {QVariant(1), QVariant(1.5), QVariant(true), QVariant(QByteArray("[1]")), QVariant(QChar('[')),
          QVariant(QDate(2020, 1, 2)), QVariant(QVariantMap{{"a", 1}}), QVariant::fromValue(Opaque())})
        row(value.typeName(), value, false, empty);
}

void TestConversion::addConversionToTable()
{
    const auto row = [](const char *name, const QVariant &value, const QVariant &result) {
        QTest::addRow("to table: %s", name) << VarType::Table << value << true << result;
    };
    const QVariant empty = QVariantList();
    const QVariant table = list({list({1}), list({2, 3})});
    row("table", table, table);
    row("a list whose first element is a list", list({list({}), 5}), list({list({}), 5}));
    row("flat list", list({1, 2}), list({list({1, 2})}));
    row("a list whose first element is no list", list({5, list({})}), list({list({5, list({})})}));
    row("a list of string lists", list({QStringList("a")}), list({list({QStringList("a")})}));
    row("empty list", empty, list({empty}));
    row(R"(text [[1,"a"],["b"]])", R"([[1,"a"],["b"]])", list({list({QString(), "a"}), list({"b"})}));
    row(R"(text [["a"],5])", R"([["a"],5])", empty);
    row("text abc", "abc", empty);
    row("text [1,2]", "[1,2]", empty);
    row("blanks", "  ", empty);
    for (const QVariant &value :
         {QVariant(1), QVariant(1.5), QVariant(true), QVariant(QStringList("a")),
          QVariant(QByteArray("[[]]")), QVariant(QDate(2020, 1, 2)), QVariant(QVariantMap{{"a", 1}}),
          QVariant::fromValue(QList<int>{1}), QVariant::fromValue(Opaque())})
        row(value.typeName(), value, empty);
}

void TestConversion::addConversionToUnknownTypes()
{
    const QVariant values[] = {1,
                               2.5,
                               true,
                               "abc",
                               " ",
                               list({1}),
                               list({}),
                               QStringList("a"),
                               QByteArray("x"),
                               QVariant::fromValue(Opaque())};
    for (const int type : {0, 7, 8, -1, INT_MAX, INT_MIN}) {
        for (const QVariant &value : values)
            QTest::addRow("to %d: %s", type, qUtf8Printable(shown(value)))
                << VarType(type) << value << true << value;
    }
}

void TestConversion::convertToVarType()
{
    QFETCH(VarType, type);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    QFETCH(QVariant, result);

    const WarningLog log;
    bool ok = !accepted;
    const QVariant converted = ::convertToVarType(value, type, &ok);
    QCOMPARE(ok, accepted);
    QCOMPARE(shown(converted), shown(result));
    QCOMPARE(shown(::convertToVarType(value, type, nullptr)), shown(converted));
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(TestConversion)
#include "tst_conversion.moc"
