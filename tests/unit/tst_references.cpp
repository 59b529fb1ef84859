#include "host/scripts/References.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(VarType)

class TestReferences : public QObject
{
    Q_OBJECT

private slots:
    void members_data();
    void members();
    void unknownVariables_data();
    void unknownVariables();
};

void TestReferences::members_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QStringList>("members");
    QTest::newRow("list") << VarType::List << QStringList{"$x.Count", "$x.Rows", "$x.Items"};
    QTest::newRow("table") << VarType::Table << QStringList{"$x.Count", "$x.Rows", "$x.Columns", "$x.Items"};
    QTest::newRow("text") << VarType::String << QStringList{};
    QTest::newRow("undeclared") << VarType::Undeclared << QStringList{};
}

void TestReferences::members()
{
    QFETCH(VarType, type);
    QFETCH(QStringList, members);
    QCOMPARE(memberReferences("$x", type), members);
}

void TestReferences::unknownVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isReference");
    QTest::addColumn<QString>("unknown");
    QTest::newRow("a variable") << "$names" << true << "";
    QTest::newRow("its member") << "$names.Count" << true << "";
    QTest::newRow("another") << "$other" << true << "other";
    QTest::newRow("member of another") << "$other.Count.x" << true << "other";
    QTest::newRow("nothing before the dot") << "$.Count" << true << ".Count";
    QTest::newRow("two marks") << "$$names" << true << "";
    QTest::newRow("the mark alone") << "$" << false << "";
    QTest::newRow("a text") << "other" << false << "";
    QTest::newRow("nothing") << "" << false << "";
}

void TestReferences::unknownVariables()
{
    QFETCH(QString, text);
    QFETCH(QString, unknown);
    VariableScope variables;
    variables.declare("names", VarType::List);
    QTEST(isReference(text), "isReference");
    QCOMPARE(unknownVariable(text, variables), unknown);
}

QTEST_GUILESS_MAIN(TestReferences)
#include "tst_references.moc"
