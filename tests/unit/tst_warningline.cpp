#include "stepkit/WarningLine.h"
#include "tests/support/WarningLog.h"

#include <QtTest>

class TestWarningLine : public QObject
{
    Q_OBJECT

private slots:
    void warnings();
};

void TestWarningLine::warnings()
{
    const WarningLog log;
    warnSkipped("[Tag] 位置：", " a \"quoted\" 文 ");
    warnSkipped("[Tag]", QString(), "end");
    const QStringList expected{R"([Tag] 位置： " a \"quoted\" 文 " ，已跳过)", R"([Tag] "" end)"};
    QCOMPARE(log.take(), expected);
}

QTEST_GUILESS_MAIN(TestWarningLine)
#include "tst_warningline.moc"
