#include "stepkit/ValueRef.h"
#include "tests/support/ShowValue.h"
#include "tests/support/WarningLog.h"

#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(VarType)

struct Opaque
{
};
Q_DECLARE_METATYPE(Opaque)

Q_DECLARE_METATYPE(QList<int>)

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

QVariant list(const QVariantList &elements)
{
    return QVariant(elements);
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

class TestValueRef : public QObject
{
    Q_OBJECT

private slots:
    void parseValueRef_data();
    void parseValueRef();
    void resolveLiteral_data();
    void resolveLiteral();
    void resolveReference_data();
    void resolveReference();
    void resolveWithoutScope();
    void resolveValueAs_data();
    void resolveValueAs();
    void resolveInteger_data();
    void resolveInteger();
};

void TestValueRef::parseValueRef_data()
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

void TestValueRef::parseValueRef()
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

void TestValueRef::resolveLiteral_data()
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

void TestValueRef::resolveLiteral()
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

void TestValueRef::resolveReference_data()
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

void TestValueRef::resolveReference()
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

void TestValueRef::resolveWithoutScope()
{
    for (const char *text : {"$a", "$a.Count", "$a.Items", "$a.Foo"})
        QVERIFY(!::resolveValueRef(::parseValueRef(text), nullptr).isValid());
}

void TestValueRef::resolveValueAs_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isResolved");
    QTest::addColumn<QVariant>("value");

    const auto row = [](VarType type, const char *text, const QVariant &value) {
        QTest::addRow("'%s' as %d", text, int(type)) << type << text << true << value;
    };
    row(VarType::String, "007", "007");
    row(VarType::String, " a ", " a ");
    row(VarType::String, "", QString());
    row(VarType::String, "$", "$");
    row(VarType::String, "$number", "7.5");
    row(VarType::String, "$list.Count", "2");
    row(VarType::Int, "7.9", 7);
    row(VarType::Int, "$number", 8);
    row(VarType::Int, "$list.Count", 2);
    row(VarType::Double, "1e3", 1000.0);
    row(VarType::Bool, "是", true);
    row(VarType::Bool, "$number", true);
    row(VarType::List, "[1, a]", QVariantList{1.0, "a"});
    row(VarType::List, "$list", QVariantList{1, "a"});
    row(VarType::Table, "$list", list({list({1, "a"})}));
    row(VarType::Int, "$empty", 0);
    row(VarType::Undeclared, "a", "a");

    const auto refuse = [](VarType type, const char *text) {
        QTest::addRow("'%s' is not %d", text, int(type)) << type << text << false << QVariant();
    };
    refuse(VarType::String, "$list");
    refuse(VarType::String, "$missing");
    refuse(VarType::String, "$list.Foo");
    refuse(VarType::String, "$nothing");
    refuse(VarType::Int, "abc");
    refuse(VarType::Int, "$list");
    refuse(VarType::Bool, "maybe");
    refuse(VarType::List, "1, 2");
    refuse(VarType::Undeclared, "$missing");
}

void TestValueRef::resolveValueAs()
{
    QFETCH(VarType, type);
    QFETCH(QString, text);
    QFETCH(bool, isResolved);
    QFETCH(QVariant, value);
    VariableScope scope;
    scope.set("number", 7.5);
    scope.set("list", QVariantList{1, "a"});
    scope.set("empty", "");
    scope.set("nothing", QVariant());
    const std::optional<QVariant> resolved = ::resolveValueAs(text, type, &scope);
    QCOMPARE(resolved.has_value(), isResolved);
    QCOMPARE(shown(resolved.value_or(QVariant())), shown(value));
    const bool isLiteral = !::parseValueRef(text).isVariable;
    QCOMPARE(::resolveValueAs(text, type, nullptr).has_value(), isLiteral && isResolved);
}

void TestValueRef::resolveInteger_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    const auto row = [](const char *text, int number) {
        QTest::addRow("'%s'", text) << text << true << number;
    };
    row("12", 12);
    row(" -3 ", -3);
    row("$int", 5);
    row("$whole", 4);
    row("$text", 6);
    row("$list.Count", 2);
    for (const char *text :
         {"", " ", "abc", "1.5", "2147483648", "$", "$half", "$missing", "$list", "$true", " $int"})
        QTest::addRow("no number: '%s'", text) << text << false << 0;
}

void TestValueRef::resolveInteger()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    VariableScope scope;
    scope.set("int", 5);
    scope.set("whole", 4.0);
    scope.set("half", 0.5);
    scope.set("text", " 6 ");
    scope.set("true", true);
    scope.set("list", QVariantList{1, "a"});
    QCOMPARE(::resolveInteger(text, &scope).has_value(), isNumber);
    QCOMPARE(::resolveInteger(text, &scope).value_or(0), number);
}

QTEST_GUILESS_MAIN(TestValueRef)
#include "tst_valueref.moc"
