#include "WindowFixture.h"

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

    void faults_data();
    void faults();
};

void TestWorkbenchPlugins::cleanup()
{
    qunsetenv("FIXTURE_FAULT");
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
    constexpr int shortTime = 1000;
    constexpr int longTime = 600000;
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
    QStringList log;
    for (int row = 0; row < fixture.window.log().rowCount(); ++row)
        log.append(fixture.window.log().index(row, LogModel::MessageColumn).data().toString());
    QVERIFY2(log.join('\n').contains(told), qPrintable(log.join('\n')));
}

RUN_TEST_MAIN(QApplication, TestWorkbenchPlugins)
#include "tst_workbenchplugins.moc"
