#include "host/values/VarTypes.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(VarType)

class TestVarTypes : public QObject
{
    Q_OBJECT

private slots:
    void types_data();
    void types();
    void aWordOfNoType_data();
    void aWordOfNoType();
    void noType();
    void typesOfValues_data();
    void typesOfValues();
    void shapes_data();
    void shapes();
};

void TestVarTypes::types_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<bool>("isDeclarable");
    QTest::addColumn<QVariant>("empty");
    QTest::newRow("int") << VarType::Int << true << QVariant(0);
    QTest::newRow("double") << VarType::Double << true << QVariant(0.0);
    QTest::newRow("string") << VarType::String << true << QVariant("");
    QTest::newRow("bool") << VarType::Bool << true << QVariant(false);
    QTest::newRow("list") << VarType::List << true << QVariant(QVariantList());
    QTest::newRow("table") << VarType::Table << true << QVariant(QVariantList());
    QTest::newRow("undeclared") << VarType::Undeclared << false << QVariant();
}

void TestVarTypes::types()
{
    QFETCH(VarType, type);
    QFETCH(bool, isDeclarable);
    QFETCH(QVariant, empty);
    const QString word = QTest::currentDataTag();
    QCOMPARE(varTypeName(type), word);
    QVERIFY(varTypeFromName(word) == type);
    QCOMPARE(declarableTypes().contains(type), isDeclarable);
    QCOMPARE(declarableTypes().size(), 6);
    QCOMPARE(declarableTypeNames().value(declarableTypes().indexOf(type)), isDeclarable ? word : QString());
    QCOMPARE(declarableTypeNames(), (QStringList{"int", "double", "string", "bool", "list", "table"}));
    QCOMPARE(emptyValueOf(type).userType(), empty.userType());
    QCOMPARE(emptyValueOf(type), empty);
}

void TestVarTypes::aWordOfNoType_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("another case") << "Int";
    QTest::newRow("blank in front") << " int";
    QTest::newRow("empty") << "";
}

void TestVarTypes::aWordOfNoType()
{
    QFETCH(QString, word);
    QVERIFY(!varTypeFromName(word));
}

void TestVarTypes::noType()
{
    QCOMPARE(varTypeName(VarType(7)), QString());
    QVERIFY(!emptyValueOf(VarType(7)).isValid());
}

void TestVarTypes::typesOfValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<VarType>("type");
    QTest::newRow("int") << QVariant(1) << VarType::Int;
    QTest::newRow("64 bits") << QVariant(1LL) << VarType::Int;
    QTest::newRow("double") << QVariant(1.0) << VarType::Double;
    QTest::newRow("text") << QVariant("a") << VarType::String;
    QTest::newRow("bool") << QVariant(true) << VarType::Bool;
    QTest::newRow("list") << QVariant(QVariantList{1}) << VarType::List;
    QTest::newRow("rows") << QVariant(QVariantList{QVariant(QVariantList{1})}) << VarType::List;
    QTest::newRow("map") << QVariant(QVariantMap()) << VarType::Undeclared;
    QTest::newRow("invalid") << QVariant() << VarType::Undeclared;
}

void TestVarTypes::typesOfValues()
{
    QFETCH(QVariant, value);
    QTEST(typeOfValue(value), "type");
}

void TestVarTypes::shapes_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVector<VarType>>("types");
    QTest::newRow("int") << QVariant(1) << QVector<VarType>{VarType::Int};
    QTest::newRow("64 bits") << QVariant(1LL) << QVector<VarType>{VarType::Int};
    QTest::newRow("unsigned 64 bits") << QVariant(1ULL) << QVector<VarType>{VarType::Int};
    QTest::newRow("double") << QVariant(1.0) << QVector<VarType>{VarType::Double};
    QTest::newRow("text") << QVariant("a") << QVector<VarType>{VarType::String};
    QTest::newRow("bool") << QVariant(true) << QVector<VarType>{VarType::Bool};
    QTest::newRow("list") << QVariant(QVariantList{1}) << QVector<VarType>{VarType::List};
    QTest::newRow("empty list") << QVariant(QVariantList())
                                << QVector<VarType>{VarType::List, VarType::Table};
    QTest::newRow("table") << QVariant(QVariantList{QVariant(QVariantList{1})})
                           << QVector<VarType>{VarType::List, VarType::Table};
    QTest::newRow("texts") << QVariant(QStringList{"a"}) << QVector<VarType>{};
    QTest::newRow("invalid") << QVariant() << QVector<VarType>{};
}

void TestVarTypes::shapes()
{
    QFETCH(QVariant, value);
    QFETCH(QVector<VarType>, types);
    for (int type = int(VarType::Int); type <= int(VarType::Table); ++type)
        QCOMPARE(hasShapeOf(value, VarType(type)), types.contains(VarType(type)));
    QVERIFY(hasShapeOf(value, VarType::Undeclared));
}

QTEST_GUILESS_MAIN(TestVarTypes)
#include "tst_vartypes.moc"
