#include "hostapi/VariableScope.h"
#include "stepkit/VariableNames.h"

#include <QtTest>

class TestVariableNames : public QObject
{
    Q_OBJECT

private slots:
    void displayVarName_data();
    void displayVarName();
    void bareVarName_data();
    void bareVarName();
};

void TestVariableNames::displayVarName_data()
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

void TestVariableNames::displayVarName()
{
    QFETCH(QString, name);
    QFETCH(QString, displayed);
    QCOMPARE(::displayVarName(name), displayed);
}

void TestVariableNames::bareVarName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("bare");
    const auto row = [](const char *name, const char *bare) { QTest::addRow("'%s'", name) << name << bare; };
    row("", "");
    row("$", "");
    row("names", "names");
    row("$names", "names");
    row("$$names", "$names");
    row(" $names", " $names");
    row("a$", "a$");
}

void TestVariableNames::bareVarName()
{
    QFETCH(QString, name);
    QFETCH(QString, bare);
    QCOMPARE(::bareVarName(name), bare);

    VariableScope scope;
    scope.set(name, 1);
    QCOMPARE(scope.names(), bare.isEmpty() ? QStringList() : QStringList(bare));
}

QTEST_GUILESS_MAIN(TestVariableNames)
#include "tst_variablenames.moc"
