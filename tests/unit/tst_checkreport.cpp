#include "host/checks/CheckReport.h"
#include "tests/support/TestPaths.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(CheckVerdict)
Q_DECLARE_METATYPE(QVector<CheckOutcome>)

namespace
{
PluginReport sampleReport()
{
    return {"/plugins/libA.so",
            {{"library.loads", CheckOutcome::Passed, QString(), 12},
             {"clone.parent", CheckOutcome::Failed, "A: clone(parent) has \"no\" parent <&>", 1500},
             {"icon.size", CheckOutcome::Warning, "rather large", 3},
             {"icon.renders", CheckOutcome::Skipped, "images cannot be drawn here", 4},
             {"texts.pure", CheckOutcome::Crashed, QString("bad ") + QChar(1) + QChar(0xd800), 5},
             {"texts.quiet", CheckOutcome::TimedOut, "no end", 6}},
            "com.example.A",
            "1.2.3",
            QDateTime(QDate(2024, 2, 29), QTime(12, 30), Qt::UTC)};
}
} // namespace

/// The verdict on results, and the forms that they are told in.
class TestCheckReport : public QObject
{
    Q_OBJECT

private slots:
    void verdicts_data();
    void verdicts();
    void textReport_data();
    void textReport();
    void jsonReportHoldsEverything();
    void junitReportIsWellFormed();
    void junitReportIsValid_data();
    void junitReportIsValid();
};

void TestCheckReport::verdicts_data()
{
    QTest::addColumn<QVector<CheckOutcome>>("outcomes");
    QTest::addColumn<CheckVerdict>("verdict");
    QTest::addColumn<QString>("line");
    using O = CheckOutcome;
    const auto row = [](const char *name, const QVector<O> &outcomes, CheckVerdict verdict,
                        const char *line) { QTest::newRow(name) << outcomes << verdict << QString(line); };
    row("all passed", {O::Passed, O::Passed}, CheckVerdict::Passed, "passed: 2 passed");
    row("a warning", {O::Passed, O::Warning}, CheckVerdict::Passed, "passed: 1 passed, 1 warning");
    row("skipped", {O::Passed, O::Skipped}, CheckVerdict::Passed, "passed: 1 passed, 1 skipped");
    row("failed", {O::Passed, O::Failed, O::Failed}, CheckVerdict::Failed, "failed: 1 passed, 2 failed");
    row("not loadable", {O::Failed, O::Skipped}, CheckVerdict::NotLoadable,
        "not loadable: 1 skipped, 1 failed");
    row("crashed", {O::Passed, O::Failed, O::Crashed}, CheckVerdict::Crashed,
        "crashed: 1 passed, 1 failed, 1 crashed");
    row("timed out", {O::Passed, O::TimedOut}, CheckVerdict::Crashed, "crashed: 1 passed, 1 timed out");
}

void TestCheckReport::verdicts()
{
    QFETCH(QVector<CheckOutcome>, outcomes);
    QFETCH(CheckVerdict, verdict);
    QFETCH(QString, line);
    PluginReport report{"p", {}};
    for (int i = 0; i < outcomes.size(); ++i)
        report.results.append({pluginChecks().at(i).id, outcomes.at(i), QString(), 1});
    QVERIFY(verdictOf({report}) == verdict);
    QCOMPARE(verdictLine({report}), line);
    const PluginReport passed{"q", {{"library.loads", CheckOutcome::Passed, QString(), 1}}};
    QVERIFY(verdictOf({passed, report}) == verdict);
    QVERIFY(verdictOf({report, passed}) == verdict);
}

void TestCheckReport::textReport_data()
{
    QTest::addColumn<bool>("isVerbose");
    QTest::addColumn<bool>("isOnlyFailed");
    QTest::addColumn<QString>("passed");
    const QString waived = "  passed    clone.class: waived, known (odd)\n";
    QTest::newRow("plain") << false << false
                           << waived + "  passed    library: 1 check\n  passed    clone: 1 of 2 checks\n";
    QTest::newRow("verbose") << true << false << "  passed    library.loads\n" + waived;
    QTest::newRow("only what failed") << false << true << QString();
}

void TestCheckReport::textReport()
{
    QFETCH(bool, isVerbose);
    QFETCH(bool, isOnlyFailed);
    QFETCH(QString, passed);
    PluginReport report = sampleReport();
    report.results.insert(1, {"clone.class", CheckOutcome::Passed, "waived, known (odd)", 1});
    CheckReportOptions options;
    options.isVerbose = isVerbose;
    options.isOnlyFailed = isOnlyFailed;
    QCOMPARE(StepHost::textReport({report}, options),
             QString("/plugins/libA.so: com.example.A 1.2.3\n"
                     "  crashed   texts.pure: bad \\u0001\\ud800\n"
                     "  timed out texts.quiet: no end\n"
                     "  failed    clone.parent: A: clone(parent) has \"no\" parent <&>\n"
                     "  warning   icon.size: rather large\n"
                     "  skipped   icon.renders: images cannot be drawn here\n")
                 + passed + "crashed: 2 passed, 1 warning, 1 skipped, 1 failed, 1 crashed, 1 timed out\n");
}

void TestCheckReport::jsonReportHoldsEverything()
{
    const PluginReport sample = sampleReport();
    CheckReportOptions options;
    options.seed = 7;
    options.programVersion = "2.3.4";
    QJsonParseError error;
    const QJsonObject report =
        QJsonDocument::fromJson(jsonReport({sample, sample}, options), &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QCOMPARE(report["verdict"].toString(), QString("crashed"));
    QCOMPARE(report["seed"].toInt(), 7);
    QCOMPARE(report["stepctl"].toString(), QString("2.3.4"));
    QCOMPARE(report["plugins"].toArray().size(), 2);
    const QJsonObject plugin = report["plugins"].toArray().at(1).toObject();
    QCOMPARE(plugin["file"].toString(), sample.fileName);
    QCOMPARE(plugin["id"].toString(), sample.pluginId);
    QCOMPARE(plugin["version"].toString(), sample.version);
    QCOMPARE(plugin["verdict"].toString(), QString("crashed"));
    const QJsonArray checks = plugin["checks"].toArray();
    QCOMPARE(checks.size(), sample.results.size());
    const QJsonObject check = checks.at(1).toObject();
    QCOMPARE(check["id"].toString(), QString("clone.parent"));
    QCOMPARE(check["protects"].toString(), findPluginCheck("clone.parent")->protects);
    QCOMPARE(check["outcome"].toString(), QString("failed"));
    QCOMPARE(check["reason"].toString(), sample.results.at(1).reason);
    QCOMPARE(check["milliseconds"].toInt(), 1500);
}

void TestCheckReport::junitReportIsWellFormed()
{
    const PluginReport sample = sampleReport();
    CheckReportOptions options;
    options.seed = 7;
    options.programVersion = "2.3.4";
    QXmlStreamReader xml(junitReport({sample, sample}, options));
    int suites = 0;
    QStringList properties;
    QStringList elements;
    QStringList cases;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == QLatin1String("testsuite")) {
            QCOMPARE(attributes.value("name").toString(),
                     suites++ == 0 ? QString("libA.so") : QString("libA.so#2"));
            QCOMPARE(attributes.value("package").toString(), sample.fileName);
            QCOMPARE(attributes.value("timestamp").toString(), QString("2024-02-29T12:30:00"));
            QVERIFY(!attributes.value("hostname").isEmpty());
            QCOMPARE(attributes.value("tests").toInt(), 6);
            QCOMPARE(attributes.value("failures").toInt(), 1);
            QCOMPARE(attributes.value("errors").toInt(), 2);
            QCOMPARE(attributes.value("skipped").toInt(), 1);
            QCOMPARE(attributes.value("time").toString(), QString("1.530"));
        } else if (xml.name() == QLatin1String("testcase")) {
            cases.append(attributes.value("classname") + '/' + attributes.value("name"));
        } else if (xml.name() == QLatin1String("failure")) {
            QCOMPARE(attributes.value("message").toString(), sample.results.at(1).reason);
        } else if (xml.name() == QLatin1String("error")
                   && attributes.value("type") == QLatin1String("crashed")) {
            QCOMPARE(attributes.value("message").toString(), QString("bad \\u0001\\ud800"));
        } else if (xml.name() == QLatin1String("property")) {
            properties.append(attributes.value("name") + '=' + attributes.value("value"));
        }
        elements.append(xml.name().toString());
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    const QStringList suite{"testsuite", "properties", "property", "property", "property",   "property",
                            "testcase",  "testcase",   "failure",  "testcase", "testcase",   "skipped",
                            "testcase",  "error",      "testcase", "error",    "system-out", "system-err"};
    QCOMPARE(elements, QStringList{"testsuites"} + suite + suite);
    QCOMPARE(cases.mid(0, 2), QStringList({"libA.so.library/loads", "libA.so.clone/parent"}));
    QCOMPARE(QSet<QString>(cases.begin(), cases.end()).size(), cases.size());
    QCOMPARE(properties.mid(0, 4),
             QStringList({"plugin=com.example.A", "version=1.2.3", "seed=7", "stepctl=2.3.4"}));
}

void TestCheckReport::junitReportIsValid_data()
{
    QTest::addColumn<QString>("schema");
    QTest::newRow("as Ant has it") << TestPaths::source("tests/schemas/junit-ant.xsd");
    QTest::newRow("as Jenkins has it") << TestPaths::source("tests/schemas/junit-jenkins.xsd");
}

void TestCheckReport::junitReportIsValid()
{
    QFETCH(QString, schema);
    const QString xmllint = QStandardPaths::findExecutable("xmllint");
    if (xmllint.isEmpty())
        QSKIP("there is no xmllint, of the package libxml2-utils");
    PluginReport odd = sampleReport();
    odd.fileName = "  ";
    odd.pluginId = QString(QChar(0xffff)) + "<&>\n";
    odd.version.clear();
    odd.results.first().milliseconds = 12345678;
    CheckReportOptions strict;
    strict.isStrict = true;
    PluginReport empty = sampleReport();
    empty.results.clear();
    const QVector<PluginReport> reports{sampleReport(), sampleReport(), odd, empty};
    for (const CheckReportOptions &options : {CheckReportOptions(), strict}) {
        QProcess process;
        process.start(xmllint, {"--noout", "--schema", schema, "-"});
        process.write(junitReport(reports, options));
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(-1));
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardError());
    }
}

QTEST_GUILESS_MAIN(TestCheckReport)

#include "tst_checkreport.moc"
