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
    void unknownMembers_data();
    void unknownMembers();
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

void TestReferences::unknownMembers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("member");
    QTest::addColumn<bool>("isUnknown");
    QTest::newRow("none") << "$names"
                          << "" << false;
    QTest::newRow("known") << "$names.Count"
                           << "Count" << false;
    QTest::newRow("in other letters") << "$names.rows"
                                      << "rows" << false;
    QTest::newRow("columns of a list") << "$names.Columns"
                                       << "Columns" << false;
    QTest::newRow("unknown") << "$names.Size"
                             << "Size" << true;
    QTest::newRow("of a member") << "$names.Count.x"
                                 << "Count.x" << true;
    QTest::newRow("nothing behind the dot") << "$names."
                                            << "" << false;
    QTest::newRow("of a table") << "$cells.Columns"
                                << "Columns" << false;
    QTest::newRow("of what has none") << "$count.Count"
                                      << "Count" << true;
    QTest::newRow("of a value of any type") << "$thing.Count"
                                            << "Count" << false;
    QTest::newRow("of no variable") << "$other.Size"
                                    << "Size" << false;
    QTest::newRow("no reference") << "names.Size"
                                  << "" << false;
}

void TestReferences::unknownMembers()
{
    QFETCH(QString, text);
    VariableScope variables;
    variables.declare("names", VarType::List);
    variables.declare("cells", VarType::Table);
    variables.declare("count", VarType::Int);
    variables.set("thing", QVariant());
    QTEST(memberOf(text), "member");
    QTEST(hasUnknownMember(text, variables), "isUnknown");
}

QTEST_GUILESS_MAIN(TestReferences)
#include "tst_references.moc"
