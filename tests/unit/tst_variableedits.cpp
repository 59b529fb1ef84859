#include "host/scripts/VariableEdits.h"
#include "host/values/ItemValue.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(VarType)

class TestVariableEdits : public QObject
{
    Q_OBJECT

private slots:
    void addsAndRenames_data();
    void addsAndRenames();
    void retypes_data();
    void retypes();
    void setsTexts_data();
    void setsTexts();
};

void TestVariableEdits::addsAndRenames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("renamed");
    QTest::newRow("new") << "c" << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("with the mark") << "$c" << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("blanks around") << " c " << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("taken") << "b" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("taken, with the mark") << "$b" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("empty") << "" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("the mark alone") << "$" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("two marks") << "$$c" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("two marks alone") << "$$" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
}

void TestVariableEdits::addsAndRenames()
{
    QFETCH(QString, name);
    QFETCH(bool, accepted);
    QFETCH(QStringList, added);
    QFETCH(QStringList, renamed);
    VariableScope scope;
    scope.declare("a", VarType::List);
    scope.set("a", QVariantList{1});
    scope.set("b", "text");

    const auto more = VariableEdits::add(scope, name, VarType::Bool);
    QCOMPARE(bool(more), accepted);
    if (accepted)
        QCOMPARE(more->typeOf("c"), VarType::Bool);
    else
        QVERIFY(!more.error().isEmpty());
    QCOMPARE(more.value_or(scope).names(), added);

    const auto result = VariableEdits::rename(scope, "a", name);
    QCOMPARE(bool(result), accepted);
    const VariableScope other = result.value_or(scope);
    QCOMPARE(other.names(), renamed);
    QCOMPARE(other.typeOf(renamed.first()), VarType::List);
    QCOMPARE(other.get(renamed.first()), QVariant(QVariantList{1}));
    QCOMPARE(other.get("b"), QVariant("text"));
    QCOMPARE(scope.names(), QStringList({"a", "b"}));
    QVERIFY(!scope.contains(VariableEdits::freeName(scope, "b%1")));
}

void TestVariableEdits::retypes_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariant>("to");
    const QVariant list(QVariantList{1, "a"});
    const QVariant table(QVariantList{QVariant(QVariantList{1})});
    QTest::newRow("int to double") << QVariant(3) << VarType::Double << QVariant(3.0);
    QTest::newRow("text to int") << QVariant("12") << VarType::Int << QVariant(12);
    QTest::newRow("word to int") << QVariant("word") << VarType::Int << QVariant(0);
    QTest::newRow("bool to text") << QVariant(true) << VarType::String << QVariant("true");
    QTest::newRow("text to bool") << QVariant("no") << VarType::Bool << QVariant(false);
    QTest::newRow("table to list") << table << VarType::List << table;
    QTest::newRow("rows to table") << table << VarType::Table << table;
    QTest::newRow("list to table") << list << VarType::Table << QVariant(QVariantList{});
    QTest::newRow("text to list") << QVariant("x") << VarType::List << QVariant(QVariantList{});
    QTest::newRow("list to int") << list << VarType::Int << QVariant(0);
}

void TestVariableEdits::retypes()
{
    QFETCH(QVariant, from);
    QFETCH(VarType, type);
    QFETCH(QVariant, to);
    VariableScope scope;
    scope.set("x", from);
    scope.set("y", 1);
    scope = VariableEdits::retype(scope, "x", type);
    QCOMPARE(scope.typeOf("x"), type);
    QVERIFY2(ItemValue::same(scope.get("x"), to), qPrintable(ItemValue::summary(scope.get("x"))));
    QCOMPARE(scope.names(), QStringList({"x", "y"}));
}

void TestVariableEdits::setsTexts_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << VarType::Int << "5" << QVariant(5);
    QTest::newRow("no int") << VarType::Int << "5.5" << QVariant();
    QTest::newRow("double") << VarType::Double << "5" << QVariant(5.0);
    QTest::newRow("text") << VarType::String << " 5" << QVariant(" 5");
    QTest::newRow("bool") << VarType::Bool << "true" << QVariant(true);
    QTest::newRow("no bool") << VarType::Bool << "2" << QVariant();
    QTest::newRow("list") << VarType::List << "[1]" << QVariant();
}

void TestVariableEdits::setsTexts()
{
    QFETCH(VarType, type);
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    VariableScope scope;
    scope.declare("x", type);
    const auto changed = VariableEdits::setText(scope, "x", text);
    QCOMPARE(bool(changed), value.isValid());
    if (changed)
        QVERIFY(ItemValue::same(changed->get("x"), value));
    else
        QVERIFY(!changed.error().isEmpty());
}

QTEST_GUILESS_MAIN(TestVariableEdits)
#include "tst_variableedits.moc"
