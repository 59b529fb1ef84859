#include "host/checks/CheckSteps.h"

#include <QtTest>

using namespace StepHost;

class TestCheckSteps : public QObject
{
    Q_OBJECT

private slots:
    void aSnapshotTellsEveryChange_data();
    void aSnapshotTellsEveryChange();
};

void TestCheckSteps::aSnapshotTellsEveryChange_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "x";
    QTest::newRow("with the mark") << "$x";
    QTest::newRow("named with the mark") << "$$x";
    QTest::newRow("named like the mark") << "$$";
}

void TestCheckSteps::aSnapshotTellsEveryChange()
{
    QFETCH(QString, name);
    VariableScope scope;
    scope.set(name, 1);
    const QByteArray before = snapshotOf(scope);
    QCOMPARE(snapshotOf(VariableScope(scope)), before);
    scope.set(name, 2);
    const QByteArray changed = snapshotOf(scope);
    QVERIFY(changed != before);
    scope.declare(name, VarType::Double);
    scope.set(name, 2);
    const QByteArray retyped = snapshotOf(scope);
    QVERIFY(retyped != changed);
    scope.remove(name);
    QVERIFY(snapshotOf(scope) != retyped);
}

QTEST_GUILESS_MAIN(TestCheckSteps)
#include "tst_checksteps.moc"
