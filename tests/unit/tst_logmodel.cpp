#include "tools/workbench/document/LogModel.h"

#include "tests/support/FixtureStep.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace Workbench;

class TestLogModel : public QObject
{
    Q_OBJECT

private slots:
    void dropsTheOldest();
};

void TestLogModel::dropsTheOldest()
{
    const FixtureStep step("test.step");
    LogModel log;
    log.append("first");
    for (int i = 0; i < 10000; ++i)
        log.appendWarning(QString::number(i), &step, "10000  step");
    QCOMPARE(log.rowCount(), 9001);
    const QModelIndex last = log.index(log.rowCount() - 1, LogModel::MessageColumn);
    QCOMPARE(last.data().toString(), QString("9999"));
    QCOMPARE(last.data(LogModel::StepRole).value<QObject *>(), &step);
    QVERIFY(last.data(LogModel::WarningRole).toBool());
    QCOMPARE(last.siblingAtColumn(LogModel::StepColumn).data().toString(), QString("10000  step"));

    const QAbstractItemModelTester tester(&log);
    log.append("message");
    QCOMPARE(log.index(log.rowCount() - 1, LogModel::StepColumn).data().toString(), QString());
    log.clear();
    QCOMPARE(log.rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestLogModel)
#include "tst_logmodel.moc"
