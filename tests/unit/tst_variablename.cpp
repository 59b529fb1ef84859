#include "host/values/VariableName.h"

#include "hostapi/VariableScope.h"

#include <QtTest>

using namespace StepHost;

class TestVariableName : public QObject
{
    Q_OBJECT

private slots:
    void takesTheMarkOffOnce_data();
    void takesTheMarkOffOnce();
    void referencesAreWhatScopesKnow_data();
    void referencesAreWhatScopesKnow();
    void variableNames_data();
    void variableNames();
};

void TestVariableName::takesTheMarkOffOnce_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasMark");
    QTest::newRow("plain") << "x"
                           << "x" << false;
    QTest::newRow("with mark") << "$x"
                               << "x" << true;
    QTest::newRow("two marks") << "$$x"
                               << "$x" << true;
    QTest::newRow("mark inside") << "x$y"
                                 << "x$y" << false;
    QTest::newRow("blank in front") << " $x"
                                    << " $x" << false;
    QTest::newRow("mark alone") << "$"
                                << "" << true;
    QTest::newRow("empty") << ""
                           << "" << false;
}

void TestVariableName::takesTheMarkOffOnce()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QFETCH(bool, hasMark);
    QCOMPARE(withoutMark(text), name);
    QCOMPARE(StepHost::hasMark(text), hasMark);
}

void TestVariableName::referencesAreWhatScopesKnow_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"x", "$", "$x", "$$x", "x.y", " x"})
        QTest::newRow(name) << QString(name);
}

void TestVariableName::referencesAreWhatScopesKnow()
{
    QFETCH(QString, name);
    QCOMPARE(withoutMark(referenceTo(name)), name);
    VariableScope scope;
    scope.set(referenceTo(name), 1);
    QCOMPARE(scope.names(), QStringList(name));
    QCOMPARE(scope.get(referenceTo(name)), QVariant(1));
}

void TestVariableName::variableNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isGood");
    QTest::newRow("plain") << "x" << true;
    QTest::newRow("with mark") << "$x" << true;
    QTest::newRow("mark inside") << "x$" << true;
    QTest::newRow("blank") << " " << true;
    QTest::newRow("Chinese") << QString::fromUtf8("名字") << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("mark alone") << "$" << false;
    QTest::newRow("two marks") << "$$" << false;
    QTest::newRow("two marks and a name") << "$$x" << false;
}

void TestVariableName::variableNames()
{
    QFETCH(QString, name);
    QFETCH(bool, isGood);
    QCOMPARE(variableNameError(name).isEmpty(), isGood);
    QCOMPARE(isVariableName(withoutMark(name)), isGood);
}

QTEST_GUILESS_MAIN(TestVariableName)
#include "tst_variablename.moc"
