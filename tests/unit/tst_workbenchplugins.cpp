#include "WindowFixture.h"

#include "host/running/StepTrial.h"
#include "tools/workbench/document/PluginStart.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

using namespace Workbench;

/// Whatever plug-ins do, the window and the script stay, and the log says what it was.
class TestWorkbenchPlugins : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void cleanupTestCase();

    void faults_data();
    void faults();
    void settings_data();
    void settings();
    void scripts_data();
    void scripts();

private:
    struct Tried;

    Tried &tried();

    std::unique_ptr<Tried> m_tried;
};

namespace
{
constexpr int shortTime = 1000;
constexpr int longTime = 600000;

QString logOf(WindowFixture &fixture)
{
    QStringList lines;
    for (int row = 0; row < fixture.window.log().rowCount(); ++row)
        lines.append(fixture.window.log().index(row, LogModel::MessageColumn).data().toString());
    return lines.join('\n');
}
} // namespace

/// A window in which settings are tried, with the step `fixture.moment`.
struct TestWorkbenchPlugins::Tried
{
    Tried() : trial(catalogue), window(catalogue)
    {
        window.window.document().setTrial(trial);
        window.place("fixture.moment");
    }

    ScriptDocument &document()
    {
        return window.window.document();
    }

    QString fault()
    {
        return window.script().step(0).property("fault").toString();
    }

    struct Catalogue : StepHost::StepCatalogue
    {
        Catalogue()
        {
            if (!addPlugin(TestPaths::fixture("FaultyMoments")))
                QTest::qFail("the plug-in was refused", __FILE__, __LINE__);
        }
    };

    Catalogue catalogue;
    StepHost::StepTrial trial;
    WindowFixture window;
};

TestWorkbenchPlugins::Tried &TestWorkbenchPlugins::tried()
{
    if (!m_tried)
        m_tried = std::make_unique<Tried>();
    m_tried->window.window.log().clear();
    return *m_tried;
}

void TestWorkbenchPlugins::cleanup()
{
    qunsetenv("FIXTURE_FAULT");
}

void TestWorkbenchPlugins::cleanupTestCase()
{
    m_tried.reset();
}

void TestWorkbenchPlugins::faults_data()
{
    QTest::addColumn<bool>("isRefused");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *name, bool isRefused, const char *told) {
        QTest::newRow(name) << isRefused << told;
    };
    constexpr char printed[] = "printed: printed on standard output";
    constexpr char crashed[] = "the process crashed: abort, while ";
    constexpr char exited[] = "the process was ended with status 3, while ";
    constexpr char hung[] = "it took longer than 1 s";
    for (const char *moment : {"load", "texts", "clone"}) {
        for (const auto &fault : {std::pair("crash", crashed), {"exit", exited}, {"hang", hung}})
            row((QByteArray(moment) + ':' + fault.first).constData(), true, fault.second);
        row((QByteArray(moment) + ":print").constData(), false, printed);
#ifndef QUILLMAP_SANITIZED // Which would tell of it.
        row((QByteArray(moment) + ":leak").constData(), false, "Run completed");
#endif
    }
    row("load:throw", true, "is refused: it threw an exception: out of paper");
    row("texts:throw", false,
        "the texts of the step \"fixture.moment\": it threw an exception: out of paper");
    row("clone:throw", true, "the plug-in gives no copy of the step \"fixture.moment\"");
    row("run:crash", false, "The step failed: the process crashed: abort");
    row("run:exit", false, "The step failed: the process was ended with status 3");
    row("run:hang", false, "The step failed: it was stopped in the middle");
    row("run:throw", false, "The step failed: out of paper");
    row("run:leak", false, "Run completed");
    row("run:print", false, "The plug-ins printed: printed on standard output");
}

void TestWorkbenchPlugins::faults()
{
    QFETCH(bool, isRefused);
    QFETCH(QString, told);
    const QByteArray fault = QTest::currentDataTag();
    qputenv("FIXTURE_FAULT", fault);
    StepHost::StepCatalogue catalogue;
    const auto added = catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    const QStringList remarks = PluginStart::load(catalogue, {{TestPaths::fixture("FaultyMoments")}, {}},
                                                  isRefused && fault.endsWith("hang") ? shortTime : longTime);

    WindowFixture fixture(catalogue);
    for (const QString &remark : remarks)
        fixture.window.log().appendWarning(remark);
    fixture.setVariable("names", QVariantList{"b", "a"}, VarType::List);
    fixture.place("list.sort", {{"targetVar", "names"}});
    fixture.place("fixture.moment");
    QCOMPARE(fixture.script().rowCount(), isRefused ? 1 : 2);
    fixture.window.session().runAll();
    if (fault == "run:hang") {
        const QModelIndex step = fixture.script().index(1);
        QTRY_VERIFY_WITH_TIMEOUT(step.data(ScriptModel::RunningRole).toBool(), 60000);
        fixture.window.session().stop();
        fixture.window.session().stop();
    }
    QTRY_VERIFY_WITH_TIMEOUT(!fixture.window.session().isRunning(), 60000);

    QVERIFY(fixture.window.isVisible());
    QCOMPARE(fixture.script().rowCount(), isRefused ? 1 : 2);
    QCOMPARE(fixture.script().index(0).data(ScriptModel::OutcomeRole).toInt(),
             int(StepHost::StepOutcome::Wrote));
    QVERIFY2(logOf(fixture).contains(told), qPrintable(logOf(fixture)));
}

void TestWorkbenchPlugins::settings_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *name, bool isTaken, const char *told) {
        QTest::newRow(name) << isTaken << told;
    };
    constexpr char keeps[] = "Step 1 keeps its setting “fault”: ";
    const std::pair<const char *, const char *> moments[] = {
        {"write", "the setting \"fault\" of step 1 (fixture.moment) was changed"},
        {"texts", "the texts of step 1 (fixture.moment) were made"},
        {"clone", "step 1 (fixture.moment) was copied"},
        {"save", "step 1 (fixture.moment) was saved"},
    };
    const std::pair<const char *, const char *> ends[] = {
        {"crash", "the process crashed: abort"},
        {"exit", "the process was ended with status 3"},
    };
    for (const auto &[moment, work] : moments) {
        for (const auto &[fault, end] : ends)
            row((QByteArray(moment) + ':' + fault).constData(), false,
                (QByteArray(keeps) + end + ", while " + work).constData());
    }
    for (const auto &[moment, work] : {moments[0], moments[3]})
        row((QByteArray(moment) + ":throw").constData(), false,
            (QByteArray(keeps) + "it threw an exception: out of paper, while " + work).constData());
    row("write:hang", false, (QByteArray(keeps) + "it took longer than 1 s, while " + moments[0].second));
    row("read:crash", false, (QByteArray(keeps) + ends[0].second + ", while " + moments[3].second));
    row("clone:throw", false, "“fault”: the plug-in gives no copy of step 1 (fixture.moment)");
    row("texts:throw", true, "the texts of step 1 (fixture.moment): it threw an exception: out of paper");
}

void TestWorkbenchPlugins::settings()
{
    QFETCH(bool, isTaken);
    QFETCH(QString, told);
    const QString fault = QTest::currentDataTag();
    Tried &tried = this->tried();
    tried.trial.setTimeLimit(longTime);
    tried.document().setSetting(0, "fault", "none");
    QTRY_COMPARE_WITH_TIMEOUT(tried.fault(), QString("none"), longTime);
    tried.trial.setTimeLimit(fault.endsWith("hang") ? shortTime : longTime);
    tried.document().setSetting(0, "fault", fault);
    QTRY_VERIFY2_WITH_TIMEOUT(logOf(tried.window).contains(told), qPrintable(logOf(tried.window)), 60000);
    QCOMPARE(tried.fault(), isTaken ? fault : QString("none"));
    QVERIFY(tried.window.window.isVisible());
    QCOMPARE(tried.window.script().rowCount(), 1);
}

void TestWorkbenchPlugins::scripts_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<QString>("told");
    QTest::newRow("write:crash") << false
                                 << "the process crashed: abort, while step 2 (fixture.moment) was read";
    QTest::newRow("texts:crash")
        << false << "the process crashed: abort, while the texts of step 2 (fixture.moment) were made";
    QTest::newRow("texts:hang")
        << false << "it took longer than 1 s, while the texts of step 2 (fixture.moment) were made";
    QTest::newRow("write:throw")
        << false << "it threw an exception: out of paper, while step 2 (fixture.moment) was read";
    QTest::newRow("clone:throw") << true << "the plug-in gives no copy of step 2 (fixture.moment)";
    QTest::newRow("none") << true << "";
}

void TestWorkbenchPlugins::scripts()
{
    QFETCH(bool, isTaken);
    QFETCH(QString, told);
    const QByteArray fault = QTest::currentDataTag();
    Tried &tried = this->tried();
    const QByteArray script =
        R"({"steps": [{"type": "fixture.moment"}, {"type": "fixture.moment", "fault": ")" + fault + R"("}]})";
    const QString fileName = tried.window.folder.filePath("script.json");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.close();
    // The process of the row before may be gone.
    tried.trial.setTimeLimit(longTime);
    bool isReady = false;
    tried.document().whenTried({}, [&isReady](const QString &) { isReady = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isReady, longTime);
    tried.trial.setTimeLimit(fault.endsWith("hang") ? shortTime : longTime);

    std::optional<QString> error;
    tried.document().openTried(fileName, [&error](const QString &text) { error = text; });
    QTRY_VERIFY_WITH_TIMEOUT(error, 60000);
    QCOMPARE(error->isEmpty(), isTaken);
    QVERIFY2((*error + logOf(tried.window)).contains(told), qPrintable(*error + logOf(tried.window)));
    QVERIFY(tried.window.window.isVisible());

    if (fault.endsWith("hang"))
        return; // One second of that is enough.
    const int rows = tried.window.script().rowCount();
    tried.document().insertScript(script, rows);
    if (isTaken)
        QTRY_COMPARE_WITH_TIMEOUT(tried.window.script().rowCount(), rows + 2, 60000);
    else
        QTRY_VERIFY_WITH_TIMEOUT(logOf(tried.window).contains("These steps are not placed: " + told), 60000);
    QVERIFY(isTaken || tried.window.script().rowCount() == rows);
}

RUN_TEST_MAIN(QApplication, TestWorkbenchPlugins)
#include "tst_workbenchplugins.moc"
