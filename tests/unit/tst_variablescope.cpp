#include "hostapi/VariableScope.h"

#include "tests/support/CollidingNames.h"

#include <QtTest>

#include <ctime>

Q_DECLARE_METATYPE(VarType)

class TestVariableScope : public QObject
{
    Q_OBJECT

private slots:
    void declareGivesTheEmptyValue_data();
    void declareGivesTheEmptyValue();
    void declareRefuses_data();
    void declareRefuses();
    void declareReplaces();
    void setDeclaresWithTheTypeOfTheValue_data();
    void setDeclaresWithTheTypeOfTheValue();
    void setKeepsTheDeclaredType();
    void unknownNames_data();
    void unknownNames();
    void oneLeadingMarkIsNotPartOfTheName();
    void namesKeepTheOrderOfDeclaration();
    void removeForgetsTheVariable();
    void valuesReadBeforeAreNotChanged();
    void writesAreCounted();
    void collidingNamesCostAsOthersDo();
    void removingCostsTheSameAtEachPlace();
};

void TestVariableScope::declareGivesTheEmptyValue_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << VarType::Int << QVariant(0);
    QTest::newRow("double") << VarType::Double << QVariant(0.0);
    QTest::newRow("string") << VarType::String << QVariant(QString(""));
    QTest::newRow("bool") << VarType::Bool << QVariant(false);
    QTest::newRow("list") << VarType::List << QVariant(QVariantList());
    QTest::newRow("table") << VarType::Table << QVariant(QVariantList());
}

void TestVariableScope::declareGivesTheEmptyValue()
{
    QFETCH(VarType, type);
    QFETCH(QVariant, value);
    VariableScope scope;
    QVERIFY(scope.declare("x", type));
    QVERIFY(scope.contains("x"));
    QCOMPARE(scope.typeOf("x"), type);
    QCOMPARE(scope.get("x").userType(), value.userType());
    QCOMPARE(scope.get("x"), value);
}

void TestVariableScope::declareRefuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<VarType>("type");
    QTest::newRow("empty name") << "" << VarType::Int;
    QTest::newRow("the mark alone") << "$" << VarType::Int;
    QTest::newRow("undeclared") << "x" << VarType::Undeclared;
    QTest::newRow("type 7") << "x" << VarType(7);
    QTest::newRow("type -1") << "x" << VarType(-1);
}

void TestVariableScope::declareRefuses()
{
    QFETCH(QString, name);
    QFETCH(VarType, type);
    VariableScope scope;
    QVERIFY(!scope.declare(name, type));
    QVERIFY(scope.names().isEmpty());
}

void TestVariableScope::declareReplaces()
{
    VariableScope scope;
    scope.set("a", 5);
    scope.set("b", 6);
    QVERIFY(scope.declare("$a", VarType::List));
    QCOMPARE(scope.typeOf("a"), VarType::List);
    QCOMPARE(scope.get("a"), QVariant(QVariantList()));
    QCOMPARE(scope.names(), QStringList({"a", "b"}));
}

void TestVariableScope::setDeclaresWithTheTypeOfTheValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<VarType>("type");
    QTest::newRow("int") << QVariant(1) << VarType::Int;
    QTest::newRow("unsigned") << QVariant(1u) << VarType::Int;
    QTest::newRow("64 bit") << QVariant(qlonglong(1)) << VarType::Int;
    QTest::newRow("unsigned 64 bit") << QVariant(qulonglong(1)) << VarType::Int;
    QTest::newRow("short") << QVariant::fromValue(short(1)) << VarType::Int;
    QTest::newRow("unsigned short") << QVariant::fromValue(ushort(1)) << VarType::Int;
    QTest::newRow("long") << QVariant::fromValue(1l) << VarType::Int;
    QTest::newRow("unsigned long") << QVariant::fromValue(1ul) << VarType::Int;
    QTest::newRow("char") << QVariant::fromValue('a') << VarType::Int;
    QTest::newRow("signed char") << QVariant::fromValue(static_cast<signed char>(1)) << VarType::Int;
    QTest::newRow("unsigned char") << QVariant::fromValue(uchar(1)) << VarType::Int;
    QTest::newRow("double") << QVariant(1.0) << VarType::Double;
    QTest::newRow("float") << QVariant(1.0f) << VarType::Double;
    QTest::newRow("text") << QVariant("1") << VarType::String;
    QTest::newRow("bool") << QVariant(true) << VarType::Bool;
    QTest::newRow("list") << QVariant(QVariantList{1}) << VarType::List;
    QTest::newRow("list of lists") << QVariant(QVariantList{QVariant(QVariantList{1})}) << VarType::List;
    QTest::newRow("string list") << QVariant(QStringList("a")) << VarType::List;
    QTest::newRow("invalid") << QVariant() << VarType::Undeclared;
    QTest::newRow("map") << QVariant(QVariantMap{{"a", 1}}) << VarType::Undeclared;
}

void TestVariableScope::setDeclaresWithTheTypeOfTheValue()
{
    QFETCH(QVariant, value);
    QFETCH(VarType, type);
    VariableScope scope;
    scope.set("x", value);
    QVERIFY(scope.contains("x"));
    QCOMPARE(scope.typeOf("x"), type);
    QCOMPARE(scope.get("x").userType(), value.userType());
    QCOMPARE(scope.get("x"), value);
}

void TestVariableScope::setKeepsTheDeclaredType()
{
    VariableScope scope;
    scope.declare("x", VarType::List);
    scope.set("x", 5);
    QCOMPARE(scope.typeOf("x"), VarType::List);
    QCOMPARE(scope.get("x"), QVariant(5));

    scope.set("y", QVariant());
    scope.set("y", 5);
    QCOMPARE(scope.typeOf("y"), VarType::Int);
}

void TestVariableScope::unknownNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("unknown") << "missing";
    QTest::newRow("other case") << "KNOWN";
    QTest::newRow("empty") << "";
    QTest::newRow("the mark alone") << "$";
    QTest::newRow("two marks") << "$$known";
}

void TestVariableScope::unknownNames()
{
    QFETCH(QString, name);
    VariableScope scope;
    scope.set("known", 1);
    scope.set("", 1);
    scope.set("$", 1);
    QVERIFY(!scope.contains(name));
    QVERIFY(!scope.get(name).isValid());
    QCOMPARE(scope.typeOf(name), VarType::Undeclared);
    QVERIFY(!scope.remove(name));
    QCOMPARE(scope.names(), QStringList("known"));
}

void TestVariableScope::oneLeadingMarkIsNotPartOfTheName()
{
    VariableScope scope;
    scope.set("$names", 1);
    QCOMPARE(scope.names(), QStringList("names"));
    QCOMPARE(scope.get("names"), QVariant(1));
    scope.set("names", 2);
    QCOMPARE(scope.get("$names"), QVariant(2));
    QCOMPARE(scope.typeOf("$names"), VarType::Int);

    scope.set("$$a", 3);
    QCOMPARE(scope.get("$$a"), QVariant(3));
    QVERIFY(!scope.contains("$a"));
}

void TestVariableScope::namesKeepTheOrderOfDeclaration()
{
    VariableScope scope;
    scope.declare("z", VarType::Int);
    scope.set("a", 1);
    scope.declare("m", VarType::List);
    scope.set("z", 2);
    QCOMPARE(scope.names(), QStringList({"z", "a", "m"}));
}

void TestVariableScope::removeForgetsTheVariable()
{
    VariableScope scope;
    scope.declare("a", VarType::List);
    scope.set("b", 1);
    QVERIFY(scope.remove("$a"));
    QVERIFY(!scope.contains("a"));
    QCOMPARE(scope.typeOf("a"), VarType::Undeclared);
    QCOMPARE(scope.names(), QStringList("b"));
    scope.set("a", 1);
    QCOMPARE(scope.typeOf("a"), VarType::Int);
    QCOMPARE(scope.names(), QStringList({"b", "a"}));
}

void TestVariableScope::valuesReadBeforeAreNotChanged()
{
    VariableScope scope;
    scope.set("a", QVariantList{1, 2});
    VariableScope copy = scope;
    const QVariant before = scope.get("a");
    scope.set("a", QVariantList{3});
    QCOMPARE(before, QVariant(QVariantList{1, 2}));
    QCOMPARE(copy.get("a"), QVariant(QVariantList{1, 2}));
    const VariableScope moved = std::move(copy);
    QCOMPARE(moved.get("a"), QVariant(QVariantList{1, 2}));

    VariableScope assigned;
    assigned.set("b", 1);
    assigned = scope;
    QCOMPARE(assigned.names(), QStringList("a"));
    QCOMPARE(assigned.get("a"), QVariant(QVariantList{3}));
    assigned = VariableScope();
    QVERIFY(assigned.names().isEmpty());
    QCOMPARE(scope.get("a"), QVariant(QVariantList{3}));
}

void TestVariableScope::writesAreCounted()
{
    VariableScope scope;
    QCOMPARE(scope.writeCount(), 0ULL);
    scope.set("x", 1);
    QCOMPARE(scope.writeCount(), 1ULL);
    scope.set("$x", 1);
    QCOMPARE(scope.writeCount(), 2ULL);
    scope.set("", 1);
    scope.set("$", 1);
    scope.declare("y", VarType::List);
    scope.get("y");
    scope.remove("y");
    QCOMPARE(scope.writeCount(), 2ULL);
    VariableScope copy = scope;
    copy.set("x", 2);
    QCOMPARE(copy.writeCount(), 3ULL);
    QCOMPARE(scope.writeCount(), 2ULL);
}

// Half a second of the processor, or a minute where names are found by their hash value.
void TestVariableScope::collidingNamesCostAsOthersDo()
{
    const QStringList names = CollidingNames::make(40000);
    if (names.size() < 40000)
        QSKIP("How this Qt computes the hash of a text is not known here.");
    const std::clock_t start = std::clock();
    VariableScope scope;
    for (const QString &name : names)
        QVERIFY(scope.declare(name, VarType::Int));
    for (const QString &name : names) {
        scope.set(name, 1);
        QCOMPARE(scope.get(name), QVariant(1));
    }
    QCOMPARE(scope.names(), names);
    QVERIFY((std::clock() - start) / CLOCKS_PER_SEC < 5);
}

// A quarter of a second of the processor, or half a minute where each name is looked for from the first one on.
void TestVariableScope::removingCostsTheSameAtEachPlace()
{
    constexpr int count = 100000;
    VariableScope scope;
    for (int i = 0; i < count; ++i)
        scope.set(QString::number(i), i);
    const std::clock_t start = std::clock();
    for (int i = count - 1; i > 1; --i)
        QVERIFY(scope.remove(QString::number(i)));
    scope.set("new", 1);
    QCOMPARE(scope.names(), QStringList({"0", "1", "new"}));
    QVERIFY(scope.remove("0"));
    scope.set("0", 1);
    QCOMPARE(scope.names(), QStringList({"1", "new", "0"}));
    QVERIFY((std::clock() - start) / CLOCKS_PER_SEC < 5);
}

QTEST_GUILESS_MAIN(TestVariableScope)
#include "tst_variablescope.moc"
