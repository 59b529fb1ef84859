#include "host/plugins/PaletteReport.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace StepHost;

/// Compares with the files of tests/golden. `RENEW_GOLDEN=1 tst_palettereport` writes them anew.
class TestPaletteReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void matchesGolden_data();
    void matchesGolden();
    void columnsOfATableAreKept();
    void problemsAreTold();
    void textsOfAPluginHaveABound();

private:
    StepCatalogue m_catalogue;
};

void TestPaletteReport::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(bool(added), qPrintable(errorOf(added)));
}

void TestPaletteReport::matchesGolden_data()
{
    QTest::addColumn<QByteArray>("report");
    QTest::newRow("palette.txt") << paletteToText(m_catalogue);
    QTest::newRow("palette.json") << paletteToJson(m_catalogue);
    QTest::newRow("palette.md") << paletteToMarkdown(m_catalogue);
    QTest::newRow("describe-list.remove.txt") << stepToText(m_catalogue, "list.remove");
    QTest::newRow("describe-list.remove.json") << stepToJson(m_catalogue, "list.remove");
}

void TestPaletteReport::matchesGolden()
{
    QFETCH(QByteArray, report);
    report.replace(m_catalogue.plugins().front()->fileName().toUtf8(), "PLUGIN_FILE");
    QFile golden(TestPaths::source(QStringLiteral("tests/golden/") + QTest::currentDataTag()));
    if (qEnvironmentVariableIsSet("RENEW_GOLDEN")) {
        QVERIFY(golden.open(QIODevice::WriteOnly));
        QCOMPARE(golden.write(report), qint64(report.size()));
        return;
    }
    QVERIFY2(golden.open(QIODevice::ReadOnly), qPrintable(golden.errorString()));
    const QList<QByteArray> expected = golden.readAll().split('\n');
    const QList<QByteArray> actual = report.split('\n');
    for (int i = 0; i < qMin(expected.size(), actual.size()); ++i)
        QCOMPARE(QString::fromUtf8(actual.at(i)), QString::fromUtf8(expected.at(i)));
    QCOMPARE(actual.size(), expected.size());
}

void TestPaletteReport::columnsOfATableAreKept()
{
    // A choice editor's texts are separated by "|" in class info; none may end a Markdown cell.
    const QList<QByteArray> lines = paletteToMarkdown(m_catalogue).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("| `") && !line.contains(".so") && !line.contains(".dll"))
            QVERIFY2(line.count('|') == 7, line.constData());
    }
}

void TestPaletteReport::problemsAreTold()
{
    StepCatalogue catalogue;
    QVERIFY(bool(catalogue.addPlugin(TestPaths::fixture("HostileSteps"))));
    const QString typeId = QStringLiteral("fixture.settings");
    const QString problem = QStringLiteral("the setting \"ratio\" has no label (\"prop_ratio\")");
    QVERIFY(stepToText(catalogue, typeId).contains("\nproblem: " + problem.toUtf8() + '\n'));
    const QJsonObject step = QJsonDocument::fromJson(stepToJson(catalogue, typeId)).object();
    QVERIFY(step["problems"].toArray().contains(problem));
}

void TestPaletteReport::textsOfAPluginHaveABound()
{
    StepCatalogue catalogue;
    QVERIFY(bool(catalogue.addPlugin(TestPaths::fixture("LongManifest"))));
    QCOMPARE(catalogue.plugins().front()->manifest().name.count('x'), 10000000);
    QVERIFY(paletteToText(catalogue).size() < 20002000);
}

QTEST_GUILESS_MAIN(TestPaletteReport)

#include "tst_palettereport.moc"
