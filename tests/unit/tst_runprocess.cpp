#include "RunWorkerMain.h"

#include "host/running/RunProcess.h"

#include "host/plugins/StepCatalogue.h"
#include "host/running/RunChannel.h"
#include "host/scripts/ScriptJson.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

using namespace StepHost;

Q_DECLARE_METATYPE(StepHost::RunEnd)
Q_DECLARE_METATYPE(StepHost::RunOrder)
Q_DECLARE_METATYPE(StepHost::StepOutcome)

namespace
{
/// A catalogue of the list steps and of the plug-in \a fixture, and a script of them on a scope.
struct Example
{
    explicit Example(const QByteArray &json, const QString &fixture = QString())
    {
        if (!catalogue.addPlugin(TestPaths::listPlugin())
            || (!fixture.isEmpty() && !catalogue.addPlugin(TestPaths::fixture(fixture))))
            QTest::qFail("a plug-in was refused", __FILE__, __LINE__);
        Result<Script> read = readScript(json, catalogue);
        if (!read)
            QTest::qFail(qPrintable(read.error()), __FILE__, __LINE__);
        else
            script = std::move(*read);
        declareVariables(script, scope);
    }

    RunResult run(const RunObserver &observer = RunObserver())
    {
        return RunProcess::run(script, scope, catalogue, observer);
    }

    StepCatalogue catalogue;
    Script script;
    VariableScope scope;
};

/// A step that writes, the step \a type, and another one that writes.
QByteArray around(const char *type)
{
    return QByteArray(R"({"variables": [{"name": "n", "type": "list", "value": [2, 1]}], "steps": [
        {"type": "list.sort", "targetVar": "n"}, {"type": ")")
        + type + R"("}, {"type": "list.clear", "targetVar": "n"}]})";
}
} // namespace

class TestRunProcess : public QObject
{
    Q_OBJECT

private slots:
    void runsAsHere();
    void handsOverEveryKindOfValue();
    void handsBackWhatChanged();
    void leavesOutWhatCannotBeHandedOver();
    void endsAreToldWithTheirStep_data();
    void endsAreToldWithTheirStep();
    void waitsBeforeSteps_data();
    void waitsBeforeSteps();
    void takesVariablesThatWereChangedMeanwhile();
    void waitsOnceItIsWanted();
    void theFirstStepMayEndTheProcess();
    void stopsBetweenSteps();
    void endsAStepThatHangs();
    void tellsOfEachStepAsItBegins();
    void keepsWhatIsPrinted();
    void keepsTheFirstOfMuchThatIsPrinted();
    void refusesAPluginThatIsGone();
    void probesPlugins_data();
    void probesPlugins();
    void longListsTravel();
    void messages();
    void notesThatAreNone();
    void answersThatAreNone();
};

void TestRunProcess::runsAsHere()
{
    const QByteArray json = R"({"variables": [
        {"name": "names", "type": "list", "value": ["b", "a", "b"]}, {"name": "first", "type": "string"}], "steps": [
        {"type": "list.dedup", "targetVar": "names"},
        {"type": "list.clear", "targetVar": "missing"},
        {"type": "list.clear", "targetVar": "names", "enabled": false},
        {"type": "list.get", "sourceVar": "names", "index": "1", "targetVar": "first"}]})";
    Example here(json);
    Example there(json);
    const RunResult expected = runScript(here.script, here.scope);
    const RunResult result = there.run();
    QCOMPARE(int(result.end), int(RunEnd::Completed));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.steps.size(), expected.steps.size());
    for (std::size_t i = 0; i < expected.steps.size(); ++i) {
        QCOMPARE(int(result.steps[i].outcome), int(expected.steps[i].outcome));
        QCOMPARE(result.steps[i].warnings, expected.steps[i].warnings);
    }
    QCOMPARE(there.scope.names(), here.scope.names());
    QCOMPARE(there.scope.get("names"), QVariant(QVariantList{"b", "a"}));
    QCOMPARE(there.scope.get("first"), QVariant("a"));
}

void TestRunProcess::handsOverEveryKindOfValue()
{
    Example example(R"({"steps": [{"type": "list.merge", "listA": "a", "listB": "b", "targetVar": "c"}]})");
    const QVariantList a{1, 1.0, "x", true, QVariant(), qlonglong(1) << 40, QVariantList{QVariantList{}}};
    const QVariantList b{QStringList{"y"}, QByteArray("z"), QVariantMap{{"k", 1}}, qQNaN()};
    example.scope.set("a", a);
    example.scope.set("b", b);
    example.scope.declare("c", VarType::List);
    const RunResult result = example.run();
    QCOMPARE(result.steps.at(0).warnings, QStringList());
    QCOMPARE(int(result.steps.at(0).outcome), int(StepOutcome::Wrote));
    const QVariantList merged = example.scope.get("c").toList();
    QCOMPARE(merged.size(), a.size() + b.size());
    for (int i = 0; i < a.size(); ++i) {
        QCOMPARE(merged.at(i), a.at(i));
        QCOMPARE(merged.at(i).userType(), a.at(i).userType());
    }
    for (int i = 0; i < b.size(); ++i)
        QCOMPARE(merged.at(a.size() + i).userType(), b.at(i).userType());
}

void TestRunProcess::handsBackWhatChanged()
{
    Example example(R"({"variables": [{"name": "i", "type": "int", "value": 7},
        {"name": "n", "type": "list", "value": ["3"]}, {"name": "t", "type": "table", "value": [[1]]}],
        "steps": [{"type": "list.get", "sourceVar": "n", "index": "0", "targetVar": "i"}]})");
    QCOMPARE(int(example.run().steps.at(0).outcome), int(StepOutcome::Wrote));
    QCOMPARE(example.scope.get("i"), QVariant(3));
    QCOMPARE(example.scope.typeOf("i"), VarType::Int);
    QCOMPARE(example.scope.typeOf("t"), VarType::Table);
    QCOMPARE(example.scope.names(), QStringList({"i", "n", "t"}));
}

void TestRunProcess::leavesOutWhatCannotBeHandedOver()
{
    Example example(R"({"steps": [{"type": "fixture.write"}]})", "HostileSteps");
    const RunResult result = example.run();
    QCOMPARE(int(result.end), int(RunEnd::Completed));
    QCOMPARE(example.scope.get("texts"), QVariant(QStringList{"a", "b"}));
    QVERIFY(!example.scope.get("object").isValid());
    QVERIFY2(result.steps.at(0).warnings.join('\n').contains("\"object\""),
             qPrintable(result.steps.at(0).warnings.join('\n')));

    QVariant deep;
    for (int i = 0; i < 2000; ++i)
        deep = QVariantList{deep};
    example.scope.set("deep", deep);
    const RunResult refused = example.run();
    QCOMPARE(int(refused.end), int(RunEnd::NotRun));
    QVERIFY2(refused.error.contains("\"deep\""), qPrintable(refused.error));
}

void TestRunProcess::endsAreToldWithTheirStep_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *type, const char *failure, const char *plugin = "FatalSteps") {
        QTest::newRow(type) << plugin << QByteArray(type) << failure;
    };
#ifdef Q_OS_UNIX
    row("fixture.abort", "abort");
    row("fixture.noexcept", "abort");
    row("fixture.kill", "killed");
    row("fixture.terminate", "terminated");
#ifndef QUILLMAP_SANITIZED
    row("fixture.crash", "segmentation fault");
    row("fixture.recursion", "segmentation fault");
#endif
#endif
    row("fixture.exit", "ended with status"); // Which one is up to sanitizers, too.
    row("fixture.leave", "status 0");
    row("fixture.throw", "out of paper", "HostileSteps");
}

void TestRunProcess::endsAreToldWithTheirStep()
{
    QFETCH(QString, plugin);
    QFETCH(QByteArray, type);
    QFETCH(QString, failure);
    Example example(around(type), plugin);
    QVector<int> told;
    RunObserver observer;
    observer.finished = [&told](int index, const StepResult &) { told.append(index); };
    const RunResult result = example.run(observer);
    QCOMPARE(int(result.end), int(RunEnd::StepFailed));
    QCOMPARE(int(result.steps.at(0).outcome), int(StepOutcome::Wrote));
    QCOMPARE(int(result.steps.at(1).outcome), int(StepOutcome::Failed));
    QVERIFY2(result.steps.at(1).failure.contains(failure), qPrintable(result.steps.at(1).failure));
    QCOMPARE(int(result.steps.at(2).outcome), int(StepOutcome::NotRun));
    // What was done up to there is there.
    QCOMPARE(example.scope.get("n"), QVariant(QVariantList{1, 2}));
    QCOMPARE(told, QVector<int>({0, 1}));
}

void TestRunProcess::waitsBeforeSteps_data()
{
    QTest::addColumn<QVector<RunOrder>>("orders");
    QTest::addColumn<RunEnd>("end");
    QTest::addColumn<QVector<StepOutcome>>("outcomes");
    const auto wrote = StepOutcome::Wrote;
    const auto notRun = StepOutcome::NotRun;
    const auto goOn = RunOrder::GoOn;
    QTest::newRow("go on") << QVector<RunOrder>{goOn, goOn, goOn} << RunEnd::Completed
                           << QVector<StepOutcome>{wrote, wrote, wrote};
    QTest::newRow("pass over") << QVector<RunOrder>{goOn, RunOrder::PassOver, goOn} << RunEnd::Completed
                               << QVector<StepOutcome>{wrote, notRun, wrote};
    QTest::newRow("stop") << QVector<RunOrder>{goOn, RunOrder::Stop} << RunEnd::Stopped
                          << QVector<StepOutcome>{wrote, notRun, notRun};
}

void TestRunProcess::waitsBeforeSteps()
{
    QFETCH(QVector<RunOrder>, orders);
    for (const bool isHere : {true, false}) {
        Example example(around("list.sort"));
        example.script.steps.at(1).operation->setProperty("targetVar", "n");
        QVector<int> asked;
        RunObserver observer;
        observer.before = [&](int index, VariableScope &variables) {
            // What the steps before did is there.
            if (index > 0 && variables.get("n") != QVariant(QVariantList{1, 2}))
                QTest::qFail("the variables are those of before", __FILE__, __LINE__);
            asked.append(index);
            return orders.at(index);
        };
        const RunResult result =
            isHere ? runScript(example.script, example.scope, observer) : example.run(observer);
        QTEST(result.end, "end");
        QVector<StepOutcome> outcomes;
        for (const StepResult &step : result.steps)
            outcomes.append(step.outcome);
        QTEST(outcomes, "outcomes");
        QCOMPARE(asked, QVector<int>({0, 1, 2}).mid(0, orders.size()));
    }
}

void TestRunProcess::takesVariablesThatWereChangedMeanwhile()
{
    for (const bool isHere : {true, false}) {
        Example example(R"({"variables": [{"name": "n", "type": "list", "value": [2, 1]},
            {"name": "gone", "type": "int"}], "steps": [{"type": "list.sort", "targetVar": "n"},
            {"type": "list.merge", "listA": "n", "listB": "made", "targetVar": "n"}]})");
        RunObserver observer;
        observer.before = [](int index, VariableScope &variables) {
            if (index == 1) {
                variables.set("n", QVariantList{"x"});
                variables.set("made", QVariantList{"y"});
                variables.remove("gone");
            }
            return RunOrder::GoOn;
        };
        const RunResult result =
            isHere ? runScript(example.script, example.scope, observer) : example.run(observer);
        QCOMPARE(int(result.steps.at(1).outcome), int(StepOutcome::Wrote));
        QCOMPARE(example.scope.get("n"), QVariant(QVariantList{"x", "y"}));
        QCOMPARE(example.scope.names(), QStringList({"n", "made"}));
    }
}

void TestRunProcess::waitsOnceItIsWanted()
{
    // So many that the process waits for them to be told before it comes to the end.
    constexpr int stepCount = 20000;
    QByteArray json = R"({"variables": [{"name": "n", "type": "list"}], "steps": [)";
    for (int i = 0; i < stepCount; ++i)
        json += QByteArray(i > 0 ? "," : "") + R"({"type": "list.sort", "targetVar": "n"})";
    Example example(json + "]}");
    bool isWanted = false;
    int waitedBefore = -1;
    RunObserver observer;
    observer.starting = [&isWanted](int) { isWanted = true; };
    observer.wantsToWait = [&isWanted] { return isWanted; };
    observer.before = [&waitedBefore](int index, VariableScope &) {
        waitedBefore = index;
        return RunOrder::Stop;
    };
    const RunResult result = example.run(observer);
    QCOMPARE(int(result.end), int(RunEnd::Stopped));
    QVERIFY(waitedBefore > 0);
    QCOMPARE(result.count(StepOutcome::Wrote), waitedBefore);
    QCOMPARE(int(result.steps.back().outcome), int(StepOutcome::NotRun));
}

void TestRunProcess::theFirstStepMayEndTheProcess()
{
    Example example(R"({"steps": [{"type": "fixture.leave"}]})", "FatalSteps");
    const RunResult result = example.run();
    QCOMPARE(int(result.end), int(RunEnd::StepFailed));
    QCOMPARE(result.error, QString());
    QCOMPARE(int(result.steps.at(0).outcome), int(StepOutcome::Failed));
}

void TestRunProcess::stopsBetweenSteps()
{
    // So many that the process waits for them to be told before it comes to the end.
    constexpr int stepCount = 20000;
    QByteArray json = R"({"variables": [{"name": "n", "type": "list"}], "steps": [)";
    for (int i = 0; i < stepCount; ++i)
        json += QByteArray(i > 0 ? "," : "") + R"({"type": "list.sort", "targetVar": "n"})";
    Example example(json + "]}");
    bool hasBegun = false;
    RunObserver observer;
    observer.starting = [&hasBegun](int) { hasBegun = true; };
    observer.shouldStop = [&hasBegun] { return hasBegun; };
    const RunResult result = example.run(observer);
    QCOMPARE(int(result.end), int(RunEnd::Stopped));
    QCOMPARE(int(result.steps.front().outcome), int(StepOutcome::Wrote));
    QCOMPARE(int(result.steps.back().outcome), int(StepOutcome::NotRun));
    QCOMPARE(result.count(StepOutcome::Failed), 0);
}

void TestRunProcess::endsAStepThatHangs()
{
    Example example(around("fixture.hang"), "FatalSteps");
    bool hangs = false;
    RunObserver observer;
    observer.starting = [&hangs](int index) { hangs = index == 1; };
    observer.shouldEnd = [&hangs] { return hangs; };
    const RunResult result = example.run(observer);
    QCOMPARE(int(result.end), int(RunEnd::Stopped));
    QCOMPARE(int(result.steps.at(1).outcome), int(StepOutcome::Failed));
    QVERIFY2(result.steps.at(1).failure.contains("stopped"), qPrintable(result.steps.at(1).failure));
    QCOMPARE(example.scope.get("n"), QVariant(QVariantList{1, 2}));
}

void TestRunProcess::tellsOfEachStepAsItBegins()
{
    Example example(around("list.sort"));
    QVector<int> begun;
    QVector<int> done;
    RunObserver observer;
    observer.starting = [&begun](int index) { begun.append(index); };
    observer.progress = [&done](int count, int) { done.append(count); };
    example.run(observer);
    QCOMPARE(begun, QVector<int>({0, 1, 2}));
    QCOMPARE(done, QVector<int>({1, 2, 3}));
}

void TestRunProcess::keepsWhatIsPrinted()
{
    Example example(R"({"steps": [{"type": "fixture.print"}]})", "HostileSteps");
    const RunResult result = example.run();
    QCOMPARE(int(result.end), int(RunEnd::Completed));
    QCOMPARE(result.printed, QByteArray("printed on standard output"));
}

void TestRunProcess::keepsTheFirstOfMuchThatIsPrinted()
{
    constexpr int stepCount = 500;
    QByteArray json = R"({"steps": [{"type": "fixture.moment"})";
    for (int i = 1; i < stepCount; ++i)
        json += R"(,{"type": "fixture.moment"})";
    Example example(json + "]}", "FaultyMoments");
    qputenv("FIXTURE_FAULT", "run:print");
    const RunResult result = example.run();
    qunsetenv("FIXTURE_FAULT");
    QCOMPARE(int(result.end), int(RunEnd::Completed));
    QCOMPARE(result.printed.size(), 10000);
    QVERIFY(result.printed.startsWith("printed on standard output"));
}

void TestRunProcess::refusesAPluginThatIsGone()
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath("Sound" + TestPaths::moduleSuffix());
    QVERIFY(QFile::copy(TestPaths::fixture("Sound"), copy));
    StepCatalogue catalogue;
    const auto added = catalogue.addPlugin(copy);
    QVERIFY2(added, qPrintable(errorOf(added)));
    Script script;
    ScriptStep step;
    step.operation.reset(catalogue.create(catalogue.typeIds().constFirst(), nullptr));
    script.steps.push_back(std::move(step));
    if (!QFile::remove(copy))
        QSKIP("the system keeps the file of a library that is loaded");
    VariableScope scope;
    const RunResult result = RunProcess::run(script, scope, catalogue);
    QCOMPARE(int(result.end), int(RunEnd::NotRun));
    QVERIFY2(result.error.contains("Sound"), qPrintable(result.error));
}

void TestRunProcess::probesPlugins_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("remark");
    const auto row = [](const char *name, const QString &plugin, const char *reason, const char *remark) {
        QTest::newRow(name) << plugin << reason << remark;
    };
    row("sound", TestPaths::listPlugin(), "", "");
    row("throws in texts", TestPaths::fixture("ThrowingTexts"), "", "it threw an exception");
    row("refused", TestPaths::fixture("NoMetadata"), "", "");
    row("crashes in a text", TestPaths::fixture("FatalSteps"), "fixture.summary", "");
    row("exits in a text", TestPaths::fixture("ExitingTexts"), "ended with status", "");
}

void TestRunProcess::probesPlugins()
{
    QFETCH(QString, plugin);
    QFETCH(QString, reason);
    QFETCH(QString, remark);
    const auto probed = RunProcess::probe(plugin);
    QCOMPARE(bool(probed), reason.isEmpty());
    if (!probed) {
        QVERIFY2(probed.error().contains(reason), qPrintable(probed.error()));
        return;
    }
    QCOMPARE(probed->isEmpty(), remark.isEmpty());
    QVERIFY2(probed->join('\n').contains(remark), qPrintable(probed->join('\n')));
}

void TestRunProcess::longListsTravel()
{
    Example example(R"({"steps": [{"type": "list.reverse", "targetVar": "n"}]})");
    QVariantList items;
    for (int i = 0; i < 100000; ++i)
        items.append(i);
    example.scope.set("n", items);
    QCOMPARE(int(example.run().steps.at(0).outcome), int(StepOutcome::Wrote));
    QCOMPARE(example.scope.get("n").toList().size(), items.size());
    QCOMPARE(example.scope.get("n").toList().constFirst(), QVariant(99999));
}

void TestRunProcess::messages()
{
    MessageReader reader;
    const QByteArray stream =
        MessageReader::framed("first") + MessageReader::framed("") + MessageReader::framed("third");
    QByteArrayList messages;
    for (const char byte : stream) {
        reader.append(QByteArray(1, byte));
        while (const std::optional<QByteArray> message = reader.next())
            messages.append(*message);
    }
    QCOMPARE(messages, QByteArrayList({"first", "", "third"}));
    QVERIFY(!reader.isBroken());
    reader.append("\xff\xff\xff\xff");
    QVERIFY(!reader.next());
    QVERIFY(reader.isBroken());
}

void TestRunProcess::answersThatAreNone()
{
    RunAnswer answer;
    answer.kind = RunAnswer::Order;
    answer.order = RunOrder::PassOver;
    answer.variables.push_back({"n", VarType::List, QVariantList{1}});
    answer.removed.append("m");
    const QByteArray bytes = packAnswer(answer);
    const std::optional<RunAnswer> read = unpackAnswer(bytes);
    QVERIFY(read);
    QCOMPARE(int(read->order), int(RunOrder::PassOver));
    QCOMPARE(read->variables.at(0).value, QVariant(QVariantList{1}));
    QCOMPARE(read->removed, QStringList{"m"});
    for (int size = 0; size < bytes.size(); ++size)
        QVERIFY2(!unpackAnswer(bytes.left(size)), qPrintable(QString::number(size)));
    QVERIFY(!unpackAnswer(bytes + '\0'));
    constexpr int orderAt = 4; // The last of its four bytes.
    for (const int at : {0, orderAt}) {
        QByteArray unknown = bytes;
        unknown[at] = 9;
        QVERIFY(!unpackAnswer(unknown));
    }
}

void TestRunProcess::notesThatAreNone()
{
    RunNote note;
    note.kind = RunNote::Finished;
    note.index = 1;
    note.result.outcome = StepOutcome::Wrote;
    note.variables.push_back({"n", VarType::List, QVariantList{1}});
    const QByteArray bytes = packNote(note);
    QCOMPARE(unpackNote(bytes)->variables.at(0).value, QVariant(QVariantList{1}));
    for (int size = 0; size < bytes.size(); ++size)
        QVERIFY2(!unpackNote(bytes.left(size)), qPrintable(QString::number(size)));
    QVERIFY(!unpackNote(bytes + '\0'));
    QByteArray unknown = bytes;
    unknown[0] = char(RunNote::KindCount);
    QVERIFY(!unpackNote(unknown));
    QVERIFY(!unpackRequest("x"));
}

RUN_TEST_MAIN(QCoreApplication, TestRunProcess)
#include "tst_runprocess.moc"
