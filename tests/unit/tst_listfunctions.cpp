#include "operations/ListFunctions.h"
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

class Labelled : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Foo READ foo)
    Q_PROPERTY(int Count READ count)

public:
    QString foo() const
    {
        return "a label";
    }
    int count() const
    {
        return 42;
    }
};

class TestListFunctions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void warnings();
    void readListVariable_data();
    void readListVariable();
    void readingSharesTheList();
    void readListPair_data();
    void readListPair();
    void writeListVariable();
    void displayVarName_data();
    void displayVarName();
    void parseValueRef_data();
    void parseValueRef();
    void resolveLiteral_data();
    void resolveLiteral();
    void resolveReference_data();
    void resolveReference();
    void resolveWithoutScope();
    void convertToVarType_data();
    void convertToVarType();
    void parseBoolText_data();
    void parseBoolText();
    void parseListLiteral_data();
    void parseListLiteral();
    void parseTableJson_data();
    void parseTableJson();
    void parseIndexText_data();
    void parseIndexText();
    void reverseList();

private:
    void addConversionToInt();
    void addConversionToDouble();
    void addConversionToString();
    void addConversionToBool();
    void addConversionToList();
    void addConversionToTable();
    void addConversionToUnknownTypes();
};

void TestListFunctions::initTestCase()
{
    QVERIFY((QMetaType::registerConverter<Seven, qlonglong>([](const Seven &) { return 7ll; })));
    QVERIFY((QMetaType::registerConverter<Seven, int>([](const Seven &) { return 7; })));
    QVERIFY((QMetaType::registerConverter<Seven, double>([](const Seven &) { return 7.0; })));
    QVERIFY((QMetaType::registerConverter<Seven, QString>([](const Seven &) { return QString("seven"); })));
}

void TestListFunctions::warnings()
{
    const WarningLog log;
    warnSkipped("[Tag] 位置：", " a \"quoted\" 文 ");
    warnSkipped("[Tag]", QString(), "end");
    QCOMPARE(log.take(), QStringList({R"([Tag] 位置： " a \"quoted\" 文 " ，已跳过)", R"([Tag] "" end)"}));
}

void TestListFunctions::readListVariable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<QVariantList>("read");
    QTest::addColumn<QStringList>("warnings");

    const QStringList silence;
    const QVariantList nothing;
    QTest::newRow("list") << "list" << true << QVariantList{1, "a", list({2})} << silence;
    QTest::newRow("marked name") << "$list" << true << QVariantList{1, "a", list({2})} << silence;
    QTest::newRow("empty list") << "empty" << true << nothing << silence;
    QTest::newRow("string list") << "texts" << true << QVariantList{"a", "b"} << silence;
    QTest::newRow("a list by type, an int by value") << "int in list" << true << nothing << silence;
    QTest::newRow("a list by type, a text by value") << "text in list" << true << nothing << silence;
    QTest::newRow("a list by type, invalid by value") << "nothing in list" << true << nothing << silence;
    QTest::newRow("no name") << "" << false << nothing << silence;
    for (const char *name :
         {"missing", "$missing", "$", "int", "double", "text", "bool", "table", "untyped", "LIST"})
        QTest::newRow(name) << name << false << nothing
                            << QStringList(QString("[ListOp] 变量 \"%1\" 不是列表类型，已跳过").arg(name));
}

void TestListFunctions::readListVariable()
{
    QFETCH(QString, name);
    QFETCH(bool, isRead);
    QFETCH(QVariantList, read);
    QFETCH(QStringList, warnings);

    VariableScope scope;
    scope.set("list", QVariantList{1, "a", list({2})});
    scope.set("empty", QVariantList());
    scope.set("texts", QStringList{"a", "b"});
    for (const char *listName : {"int in list", "text in list", "nothing in list"})
        scope.declare(listName, VarType::List);
    scope.set("int in list", 5);
    scope.set("text in list", "[1]");
    scope.set("nothing in list", QVariant());
    scope.set("int", 1);
    scope.set("double", 1.0);
    scope.set("text", "[1]");
    scope.set("bool", true);
    scope.set("untyped", QVariantMap{{"a", 1}});
    scope.declare("table", VarType::Table);

    const WarningLog log;
    QVariantList out{"before"};
    QCOMPARE(::readListVariable(&scope, name, out), isRead);
    QCOMPARE(shown(out), shown(isRead ? read : QVariantList{"before"}));
    QCOMPARE(log.take(), warnings);

    QVariantList untouched{"before"};
    QVERIFY(!::readListVariable(nullptr, name, untouched));
    QCOMPARE(shown(untouched), shown(QVariantList{"before"}));
    QCOMPARE(log.take(), QStringList());
}

void TestListFunctions::readingSharesTheList()
{
    const QVariantList held{1, 2, 3};
    VariableScope scope;
    scope.set("list", held);
    QVariantList out;
    QVERIFY(::readListVariable(&scope, "list", out));
    QVERIFY(out.isSharedWith(held));
    ::writeListVariable(&scope, "copy", out);
    QVERIFY(scope.get("copy").toList().isSharedWith(held));
}

void TestListFunctions::readListPair_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<QStringList>("warnings");

    const QStringList silence;
    const QString notList("[ListOp] 变量 \"%1\" 不是列表类型，已跳过");
    const QString notTarget("[Tag] 目标变量 \"%1\" 未声明为列表，已跳过");
    QTest::newRow("three lists") << "a"
                                 << "$b"
                                 << "c" << true << silence;
    QTest::newRow("one list") << "a"
                              << "a"
                              << "a" << true << silence;
    QTest::newRow("no name of list A") << ""
                                       << "int"
                                       << "missing" << false << silence;
    QTest::newRow("list A comes first") << "int"
                                        << "int"
                                        << "missing" << false << QStringList(notList.arg("int"));
    QTest::newRow("then the destination") << "a"
                                          << "int"
                                          << "missing" << false << QStringList(notTarget.arg("missing"));
    QTest::newRow("then list B") << "a"
                                 << "int"
                                 << "c" << false << QStringList(notList.arg("int"));
    QTest::newRow("no name of list B") << "a"
                                       << ""
                                       << "c" << false << silence;
    for (const char *target : {"", "int", "double", "text", "bool", "table", "untyped", "$missing"})
        QTest::addRow("destination '%s'", target)
            << "a"
            << "b" << target << false << QStringList(notTarget.arg(target));
}

void TestListFunctions::readListPair()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(QString, target);
    QFETCH(bool, isRead);
    QFETCH(QStringList, warnings);

    VariableScope scope;
    scope.set("a", QVariantList{1});
    scope.set("b", QVariantList{2});
    scope.set("c", QVariantList{3});
    scope.set("int", 1);
    scope.set("double", 1.0);
    scope.set("text", "c");
    scope.set("bool", true);
    scope.set("untyped", QVariant());
    scope.declare("table", VarType::Table);

    const WarningLog log;
    ListPair lists;
    QCOMPARE(::readListPair(&scope, a, b, target, "[Tag] 目标变量", lists), isRead);
    QCOMPARE(log.take(), warnings);
    if (isRead) {
        QCOMPARE(shown(lists.a), shown(scope.get(a)));
        QCOMPARE(shown(lists.b), shown(scope.get(b)));
    }
    QVERIFY(!::readListPair(nullptr, a, b, target, "[Tag] 目标变量", lists));
    QCOMPARE(log.take(), QStringList());
}

void TestListFunctions::writeListVariable()
{
    VariableScope scope;
    ::writeListVariable(&scope, "empty", {});
    QCOMPARE(shown(scope.get("empty")), QString("[]"));
    ::writeListVariable(&scope, "$nested", {list({list({1})})});
    QCOMPARE(shown(scope.get("nested")), QString("[[[int 1]]]"));
    ::writeListVariable(nullptr, "empty", {1});
    QCOMPARE(scope.names(), QStringList({"empty", "nested"}));
}

void TestListFunctions::displayVarName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("displayed");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("plain") << "names"
                           << "$names";
    QTest::newRow("marked") << "$names"
                            << "$names";
    QTest::newRow("marked twice") << "$$names"
                                  << "$$names";
    QTest::newRow("the mark alone") << "$"
                                    << "$";
    QTest::newRow("blank") << " "
                           << "$ ";
    QTest::newRow("a blank before the mark") << " $n"
                                             << "$ $n";
    QTest::newRow("a mark inside") << "a$"
                                   << "$a$";
}

void TestListFunctions::displayVarName()
{
    QFETCH(QString, name);
    QFETCH(QString, displayed);
    QCOMPARE(::displayVarName(name), displayed);
}

void TestListFunctions::parseValueRef_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isVariable");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("member");

    for (const char *literal : {"", "$", "abc", " $a", "a$b", "3", "a.b", "＄a"})
        QTest::addRow("literal '%s'", literal) << literal << false << ""
                                               << "";
    QTest::newRow("name") << "$a" << true << "a"
                          << "";
    QTest::newRow("two marks") << "$$a" << true << "$a"
                               << "";
    QTest::newRow("two marks alone") << "$$" << true << "$"
                                     << "";
    QTest::newRow("blanks stay") << "$ a " << true << " a "
                                 << "";
    QTest::newRow("a blank name") << "$ " << true << " "
                                  << "";
    QTest::newRow("member") << "$a.b" << true << "a"
                            << "b";
    QTest::newRow("member with a dot") << "$a.b.c" << true << "a"
                                       << "b.c";
    QTest::newRow("empty member") << "$a." << true << "a"
                                  << "";
    QTest::newRow("member that is a dot") << "$a.." << true << "a"
                                          << ".";
    QTest::newRow("blank member") << "$a. " << true << "a"
                                  << " ";
    QTest::newRow("a dot first") << "$.x" << true << ".x"
                                 << "";
    QTest::newRow("a dot first and a second one") << "$.x.y" << true << ".x.y"
                                                  << "";
    QTest::newRow("a dot alone") << "$." << true << "."
                                 << "";
    QTest::newRow("wide letters") << "$列表.数" << true << "列表"
                                  << "数";
}

void TestListFunctions::parseValueRef()
{
    QFETCH(QString, text);
    QFETCH(bool, isVariable);
    QFETCH(QString, name);
    QFETCH(QString, member);
    const ValueRef ref = ::parseValueRef(text);
    QCOMPARE(ref.isVariable, isVariable);
    QCOMPARE(ref.variableName, name);
    QCOMPARE(ref.member, member);
    QCOMPARE(ref.literal, isVariable ? QString() : text);

    const ValueRef blank;
    QVERIFY(!blank.isVariable);
    QVERIFY(blank.variableName.isEmpty() && blank.member.isEmpty() && blank.literal.isEmpty());
}

void TestListFunctions::resolveLiteral_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("3") << "3" << QVariant(3.0);
    QTest::newRow("-2.5") << "-2.5" << QVariant(-2.5);
    QTest::newRow("1e3") << "1e3" << QVariant(1000.0);
    QTest::newRow("+1") << "+1" << QVariant(1.0);
    QTest::newRow(".5") << ".5" << QVariant(0.5);
    QTest::newRow("-0") << "-0" << QVariant(-0.0);
    QTest::newRow("blanks around a number") << " 3 " << QVariant(3.0);
    QTest::newRow("nan") << "nan" << QVariant(notANumber);
    QTest::newRow("inf") << "inf" << QVariant(infinity);
    QTest::newRow("-inf") << "-inf" << QVariant(-infinity);
    for (const char *text :
         {"0x10", "abc", "", " ", "true", "[1,2]", "1,5", "1.5.2", "$", " $a", "1e400", "３"})
        QTest::addRow("text '%s'", text) << text << QVariant(QString(text));
}

void TestListFunctions::resolveLiteral()
{
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    VariableScope scope;
    scope.set("a", 1);
    scope.set("3", 1);
    const ValueRef ref = ::parseValueRef(text);
    QCOMPARE(shown(::resolveValueRef(ref, &scope)), shown(value));
    QCOMPARE(shown(::resolveValueRef(ref, nullptr)), shown(value));
}

void TestListFunctions::resolveReference_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    const QVariant list3 = list({1, "b", list({})});
    const QVariant table = list({list({1, 2}), list({3, 4, 5})});
    const QVariant nothing;
    QTest::newRow("int") << "$int" << QVariant(5);
    QTest::newRow("bool") << "$bool" << QVariant(true);
    QTest::newRow("text") << "$text" << QVariant("3");
    QTest::newRow("list") << "$list" << list3;
    QTest::newRow("empty member") << "$list." << list3;
    QTest::newRow("string list") << "$texts" << QVariant(QStringList{"a", "b"});
    QTest::newRow("invalid") << "$nothing" << nothing;
    QTest::newRow("unknown") << "$missing" << nothing;
    QTest::newRow("unknown with a member") << "$missing.Count" << nothing;
    // The text and the scope take off one mark each: two marks refer to "int", three to "$int".
    QTest::newRow("two marks") << "$$int" << QVariant(5);
    QTest::newRow("three marks") << "$$$int" << QVariant(6);

    QTest::newRow("Rows") << "$list.Rows" << QVariant(3);
    QTest::newRow("Count") << "$list.Count" << QVariant(3);
    QTest::newRow("Items") << "$list.Items" << list3;
    QTest::newRow("ROWS") << "$list.ROWS" << QVariant(3);
    QTest::newRow("cOUNT") << "$list.cOUNT" << QVariant(3);
    QTest::newRow("items") << "$list.items" << list3;
    QTest::newRow("columns") << "$table.columns" << QVariant(3);
    QTest::newRow("a blank after the member") << "$list.Rows " << nothing;
    QTest::newRow("Foo of a list") << "$list.Foo" << nothing;
    QTest::newRow("two members") << "$list.Items.Count" << nothing;

    QTest::newRow("Rows of an empty list") << "$empty.Rows" << QVariant(0);
    QTest::newRow("Items of an empty list") << "$empty.Items" << list({});
    QTest::newRow("Columns of an empty list") << "$empty.Columns" << nothing;
    QTest::newRow("Columns of a flat list") << "$flat.Columns" << nothing;
    QTest::newRow("Columns of a table") << "$table.Columns" << QVariant(3);
    QTest::newRow("Columns of empty rows") << "$empty rows.Columns" << QVariant(0);
    QTest::newRow("Columns, the first row is the longest") << "$first row.Columns" << QVariant(2);
    QTest::newRow("Columns, the first row is a text") << "$late row.Columns" << nothing;
    QTest::newRow("Columns of string lists") << "$rows of texts.Columns" << QVariant(2);

    QTest::newRow("Count of a string list") << "$texts.Count" << QVariant(2);
    QTest::newRow("Items of a string list") << "$texts.Items" << QVariant(QStringList{"a", "b"});
    QTest::newRow("Columns of a string list") << "$texts.Columns" << nothing;
    QTest::newRow("Count of a registered container") << "$ints.Count" << QVariant(3);
    QTest::newRow("Count of an int") << "$int.Count" << nothing;
    QTest::newRow("Count of a text") << "$text.Count" << nothing;
    QTest::newRow("Count of a map") << "$map.Count" << nothing;
    QTest::newRow("Items of an int") << "$int.Items" << nothing;

    QTest::newRow("property of an object") << "$object.Foo" << QVariant("a label");
    QTest::newRow("property in other case") << "$object.foo" << nothing;
    QTest::newRow("property named as a member") << "$object.Count" << QVariant(42);
    QTest::newRow("property in UTF-8") << "$object.名称" << QVariant("a label");
    QTest::newRow("dynamic property") << "$object.a.b" << QVariant(7);
    QTest::newRow("objectName") << "$object.objectName" << QVariant("label object");
    QTest::newRow("no such property") << "$object.Rows" << nothing;
    QTest::newRow("property of a derived pointer") << "$derived.Foo" << QVariant("a label");
    QTest::newRow("property of a null object") << "$null object.Foo" << nothing;
    QTest::newRow("property of a user type") << "$opaque.Foo" << nothing;
}

void TestListFunctions::resolveReference()
{
    QFETCH(QString, text);
    QFETCH(QVariant, value);

    Labelled object;
    object.setObjectName("label object");
    object.setProperty("a.b", 7);
    object.setProperty("名称", "a label");
    VariableScope scope;
    scope.set("int", 5);
    scope.set("$$int", 6);
    scope.set("bool", true);
    scope.set("text", "3");
    scope.set("nothing", QVariant());
    scope.set("list", list({1, "b", list({})}));
    scope.set("empty", QVariantList());
    scope.set("flat", QVariantList{1, 2});
    scope.set("texts", QStringList{"a", "b"});
    scope.set("table", list({list({1, 2}), list({3, 4, 5})}));
    scope.set("empty rows", list({list({}), list({})}));
    scope.set("first row", list({list({1, 2}), list({3}), "not a row", QVariant()}));
    scope.set("late row", list({"text", list({1})}));
    scope.set("rows of texts", list({QStringList("a"), QStringList({"a", "b"})}));
    scope.set("ints", QVariant::fromValue(QList<int>{1, 2, 3}));
    scope.set("map", QVariantMap{{"Count", 9}});
    scope.set("object", QVariant::fromValue(static_cast<QObject *>(&object)));
    scope.set("derived", QVariant::fromValue(&object));
    scope.set("null object", QVariant::fromValue(static_cast<QObject *>(nullptr)));
    scope.set("opaque", QVariant::fromValue(Opaque()));

    const WarningLog log;
    QCOMPARE(shown(::resolveValueRef(::parseValueRef(text), &scope)), shown(value));
    QCOMPARE(log.take(), QStringList());
}

void TestListFunctions::resolveWithoutScope()
{
    for (const char *text : {"$a", "$a.Count", "$a.Items", "$a.Foo"})
        QVERIFY(!::resolveValueRef(::parseValueRef(text), nullptr).isValid());
}

void TestListFunctions::convertToVarType_data()
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

void TestListFunctions::addConversionToInt()
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

void TestListFunctions::addConversionToDouble()
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

void TestListFunctions::addConversionToString()
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

void TestListFunctions::addConversionToBool()
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

void TestListFunctions::addConversionToList()
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

void TestListFunctions::addConversionToTable()
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

void TestListFunctions::addConversionToUnknownTypes()
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

void TestListFunctions::convertToVarType()
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

void TestListFunctions::parseBoolText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("recognised");
    QTest::addColumn<bool>("truth");
    for (const char *text : {"true", "TRUE", "True", "1", "yes", "YES", "是", "y", "Y", " true ", "\t是\n"})
        QTest::newRow(text) << text << true << true;
    for (const char *text : {"false", "FALSE", "0", "no", "No", "否", "n", "N", "", "   ", "\n", " false "})
        QTest::addRow("'%s'", text) << text << true << false;
    for (const char *text :
         {"maybe", "2", "-1", "1.0", "0.0", "10", "t", "f", "on", "off", "ｙ", "true false", "不"})
        QTest::newRow(text) << text << false << false;
}

void TestListFunctions::parseBoolText()
{
    QFETCH(QString, text);
    QFETCH(bool, recognised);
    QFETCH(bool, truth);
    for (const bool before : {false, true}) {
        bool out = before;
        QCOMPARE(::parseBoolText(text, &out), recognised);
        QCOMPARE(out, recognised ? truth : before);
    }
    QCOMPARE(::parseBoolText(text, nullptr), recognised);
}

void TestListFunctions::parseListLiteral_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasBrackets");
    QTest::addColumn<QVariantList>("elements");
    QTest::newRow("mixed") << "[1, a, ,2]" << true << QVariantList{1.0, "a", 2.0};
    QTest::newRow("empty") << "[]" << true << QVariantList();
    QTest::newRow("blanks inside") << "[  \t ]" << true << QVariantList();
    QTest::newRow("commas only") << "[,,, ,]" << true << QVariantList();
    QTest::newRow("blanks around") << " \n[ x ]\t" << true << QVariantList{"x"};
    QTest::newRow("numbers") << "[-2.5,1e3,+7,.5]" << true << QVariantList{-2.5, 1000.0, 7.0, 0.5};
    QTest::newRow("nan and inf") << "[nan,inf]" << true << QVariantList{notANumber, infinity};
    QTest::newRow("texts that look like others")
        << "[true,0x10,null]" << true << QVariantList{"true", "0x10", "null"};
    QTest::newRow("no quoting") << "[\"a\",'b,c']" << true << QVariantList{"\"a\"", "'b", "c'"};
    QTest::newRow("no nesting") << "[[1,2],[3]]" << true << QVariantList{"[1", "2]", "[3]"};
    QTest::newRow("inner blanks stay") << "[a b , c]" << true << QVariantList{"a b", "c"};
    QTest::newRow("no reference") << "[$a]" << true << QVariantList{"$a"};
    QTest::newRow("wide comma") << "[1，2]" << true << QVariantList{"1，2"};
    for (const char *text : {"", " ", "[", "]", "[1", "1]", "1,2", "][", "[1]x", "x[1]", "(1)"})
        QTest::addRow("no brackets: '%s'", text) << text << false << QVariantList();
}

void TestListFunctions::parseListLiteral()
{
    QFETCH(QString, text);
    QFETCH(bool, hasBrackets);
    QFETCH(QVariantList, elements);
    QVariantList out{"before"};
    QCOMPARE(::parseListLiteral(text, &out), hasBrackets);
    QCOMPARE(shown(out), shown(hasBrackets ? elements : QVariantList{"before"}));
    QCOMPARE(::parseListLiteral(text, nullptr), hasBrackets);
}

void TestListFunctions::parseTableJson_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariantList>("rows");
    const QVariantList none;
    QTest::newRow("rows") << R"([["a","b"],["c"]])" << QVariantList{list({"a", "b"}), list({"c"})};
    QTest::newRow("blanks around") << " \n[[\"a\"]]\t " << QVariantList{list({"a"})};
    QTest::newRow("wide blanks around") << "　[[\"a\"]]　" << QVariantList{list({"a"})};
    QTest::newRow("cells that are no texts")
        << R"([[1,1.5,true,null,{"a":"b"},["c"],"d"]])" << QVariantList{list({"", "", "", "", "", "", "d"})};
    QTest::newRow("empty rows") << "[[],[]]" << QVariantList{list({}), list({})};
    QTest::newRow("no rows") << "[]" << none;
    QTest::newRow("escapes") << R"([["\u5217\n","表"]])" << QVariantList{list({"列\n", "表"})};
    QTest::newRow("a late element that is no row") << R"([["a"],["b"],5])" << none;
    QTest::newRow("a first element that is no row") << R"(["a",["b"]])" << none;
    QTest::newRow("an object as a row") << R"([["a"],{"0":"b"}])" << none;
    QTest::newRow("null as a row") << R"([["a"],null])" << none;
    for (const char *text :
         {"", "   ", "abc", "{}", R"({"a":[["b"]]})", "5", "\"a\"", "[[1]", "[[1],]", "[['a']]", "[[1]]x"})
        QTest::addRow("no table: '%s'", text) << text << none;
}

void TestListFunctions::parseTableJson()
{
    QFETCH(QString, text);
    QFETCH(QVariantList, rows);
    const QVariantList parsed = ::parseTableJson(text);
    QCOMPARE(parsed.size(), rows.size());
    QCOMPARE(parsed, rows);
    for (const QVariant &row : parsed) {
        QCOMPARE(row.userType(), int(QMetaType::QVariantList));
        for (const QVariant &cell : row.toList())
            QCOMPARE(cell.userType(), int(QMetaType::QString));
    }
}

void TestListFunctions::parseIndexText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    QTest::newRow("0") << "0" << true << 0;
    QTest::newRow("blanks around") << " \t2\n" << true << 2;
    QTest::newRow("plus sign") << "+3" << true << 3;
    QTest::newRow("minus sign") << "-5" << true << -5;
    QTest::newRow("leading zeros") << "007" << true << 7;
    QTest::newRow("greatest") << "2147483647" << true << INT_MAX;
    QTest::newRow("least") << "-2147483648" << true << INT_MIN;
    for (const char *text : {"", " ", "1.5", "1.0", "abc", "$i", "0x10", "1e3", "2147483648", "-2147483649",
                             "1 2", "１", "--1", "1,000"})
        QTest::addRow("'%s'", text) << text << false << 0;
}

void TestListFunctions::parseIndexText()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    int out = 99;
    QCOMPARE(::parseIndexText(text, out), isNumber);
    QCOMPARE(out, number);
}

void TestListFunctions::reverseList()
{
    QVariantList elements;
    for (int size = 0; size < 8; ++size) {
        const QVariantList before = elements;
        QVariantList turned = elements;
        ::reverseList(turned);
        QCOMPARE(elements, before);
        QCOMPARE(turned.size(), size);
        for (int i = 0; i < size; ++i)
            QCOMPARE(shown(turned.at(i)), shown(elements.at(size - 1 - i)));
        elements.append(size % 2 ? QVariant(size) : QVariant(QString::number(size)));
    }
}

QTEST_GUILESS_MAIN(TestListFunctions)
#include "tst_listfunctions.moc"
