#include "tools/workbench/look/Language.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QtTest>

using namespace Workbench;

class TestLook : public QObject
{
    Q_OBJECT

private slots:
    void toolTipsShowTextsAsTheyStand();
    void languageOfTheSystem_data();
    void languageOfTheSystem();
};

void TestLook::toolTipsShowTextsAsTheyStand()
{
    QCOMPARE(toolTipText("a < b"), QString("a < b"));
    QVERIFY(toolTipText("<b>bold</b>").contains("&lt;b&gt;"));
    QCOMPARE(toolTipText(QString(100000, QLatin1Char('x'))).size(), 1001);
}

void TestLook::languageOfTheSystem_data()
{
    QTest::addColumn<QStringList>("system");
    QTest::addColumn<QString>("code");
    QTest::newRow("Chinese") << QStringList{"zh-Hans-CN", "zh-CN", "zh"} << "zh_CN";
    QTest::newRow("English") << QStringList{"en-US", "en"} << "en";
    QTest::newRow("neither") << QStringList{"de-DE", "de"} << "en";
    QTest::newRow("Chinese as the second choice") << QStringList{"de-DE", "zh-CN", "en"} << "zh_CN";
    QTest::newRow("English before Chinese") << QStringList{"en-GB", "zh-CN"} << "en";
    QTest::newRow("unknown") << QStringList{} << "en";
}

void TestLook::languageOfTheSystem()
{
    QFETCH(QStringList, system);
    QFETCH(QString, code);
    QCOMPARE(Language::codeFor(system), code);
    QVERIFY(Language::codes().contains(code));
}

QTEST_GUILESS_MAIN(TestLook)
#include "tst_look.moc"
