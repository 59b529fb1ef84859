#include "host/running/ScriptRunner.h"
#include "host/running/WarningCapture.h"
#include "tests/support/FixtureStep.h"

#include <QtTest>

#include <functional>
#include <stdexcept>
#include <thread>

using namespace StepHost;

namespace
{
// A step that does what the test says.
class LambdaStep : public FixtureStep
{
public:
    using Work = std::function<void(VariableScope *)>;

    explicit LambdaStep(const Work &work) : FixtureStep("test.lambda"), m_work(work) { }

    bool hasScope() const
    {
        return m_variableScope != nullptr;
    }

    void doOperation() const override
    {
        m_work(m_variableScope);
    }

private:
    Work m_work;
};

void writeX(VariableScope *scope)
{
    scope->set("x", scope->get("x").toInt() + 1);
}

void doNothing(VariableScope *) { }

void addStep(Script &script, const LambdaStep::Work &work, bool enabled = true)
{
    script.steps.push_back({std::make_unique<LambdaStep>(work), enabled});
}

QStringList outcomes(const RunResult &result)
{
    QStringList names;
    for (const StepResult &step : result.steps)
        names.append(outcomeName(step.outcome));
    return names;
}

// Keeps what reaches the log while it lives.
class LogProbe
{
public:
    LogProbe()
    {
        lines().clear();
        m_previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { lines().append(text); });
    }
    ~LogProbe()
    {
        qInstallMessageHandler(m_previous);
    }

    static QStringList &lines()
    {
        static QStringList recorded;
        return recorded;
    }

private:
    QtMessageHandler m_previous = nullptr;
};
} // namespace

class TestScriptRunner : public QObject
{
    Q_OBJECT

private slots:
    void runsAnEmptyScript();
    void tellsTheOutcomeOfEachStep();
    void writingTheSameValueCountsAsWriting();
    void attachesTheScopeOnlyForTheRun();
    void collectsWarnings();
    void leavesOtherMessagesAlone();
    void leavesOtherThreadsAlone();
    void capturesMayBeNested();
    void keepsABoundOfWarnings_data();
    void keepsABoundOfWarnings();
    void runsInTwoThreads();
    void stepsThatThrowEndTheRun_data();
    void stepsThatThrowEndTheRun();
    void reportsProgress();
    void stopsBetweenSteps();
    void runsManySteps();
};

void TestScriptRunner::runsAnEmptyScript()
{
    VariableScope scope;
    const RunResult result = runScript(Script(), scope);
    QVERIFY(result.end == RunEnd::Completed);
    QVERIFY(result.steps.empty());
}

void TestScriptRunner::tellsTheOutcomeOfEachStep()
{
    Script script;
    addStep(script, writeX);
    addStep(script, doNothing);
    addStep(script, writeX, false);
    addStep(script, [](VariableScope *) { qWarning("skipped"); });
    addStep(script, [](VariableScope *scope) { scope->set("", 1); });
    addStep(script, [](VariableScope *scope) {
        qWarning("but wrote");
        writeX(scope);
    });
    VariableScope scope;
    const RunResult result = runScript(script, scope);
    QVERIFY(result.end == RunEnd::Completed);
    QCOMPARE(outcomes(result), (QStringList{"wrote", "skipped", "disabled", "skipped", "skipped", "wrote"}));
    QCOMPARE(result.count(StepOutcome::Wrote), 2);
    QCOMPARE(result.count(StepOutcome::Skipped), 3);
    QCOMPARE(result.count(StepOutcome::Disabled), 1);
    QCOMPARE(result.count(StepOutcome::NotRun), 0);
    QCOMPARE(scope.get("x"), QVariant(2));
}

void TestScriptRunner::writingTheSameValueCountsAsWriting()
{
    Script script;
    addStep(script, [](VariableScope *scope) { scope->set("x", scope->get("x")); });
    VariableScope scope;
    scope.set("x", QVariantList());
    QCOMPARE(outcomes(runScript(script, scope)), QStringList{"wrote"});
}

void TestScriptRunner::attachesTheScopeOnlyForTheRun()
{
    Script script;
    VariableScope scope;
    VariableScope *seen = nullptr;
    addStep(script, [&seen](VariableScope *attached) { seen = attached; });
    addStep(script, [](VariableScope *) { throw std::runtime_error(""); });
    runScript(script, scope);
    QCOMPARE(seen, &scope);
    for (const ScriptStep &step : script.steps)
        QVERIFY(!static_cast<LambdaStep &>(*step.operation).hasScope());
}

void TestScriptRunner::collectsWarnings()
{
    Script script;
    addStep(script, [](VariableScope *) {
        qWarning("one");
        qWarning() << "two" << QString::fromUtf8("名字") << "three";
    });
    addStep(script, doNothing);
    addStep(script, [](VariableScope *) { qWarning("four\nfive"); });
    VariableScope scope;
    const LogProbe probe;
    const RunResult result = runScript(script, scope);
    QCOMPARE(result.steps[0].warnings, (QStringList{"one", QString::fromUtf8("two \"名字\" three")}));
    QCOMPARE(result.steps[1].warnings, QStringList());
    QCOMPARE(result.steps[2].warnings, QStringList{"four\nfive"});
    QCOMPARE(probe.lines(), QStringList());
}

void TestScriptRunner::leavesOtherMessagesAlone()
{
    Script script;
    addStep(script, [](VariableScope *) {
        qDebug("a note");
        qInfo("news");
        qCritical("an error");
    });
    VariableScope scope;
    const LogProbe probe;
    const RunResult result = runScript(script, scope);
    qWarning("after the run");
    QCOMPARE(result.steps[0].warnings, QStringList());
    QCOMPARE(probe.lines(), (QStringList{"a note", "news", "an error", "after the run"}));
}

void TestScriptRunner::leavesOtherThreadsAlone()
{
    Script script;
    addStep(script, [](VariableScope *) { std::thread([] { qWarning("from elsewhere"); }).join(); });
    VariableScope scope;
    const LogProbe probe;
    const RunResult result = runScript(script, scope);
    QCOMPARE(result.steps[0].warnings, QStringList());
    QCOMPARE(probe.lines(), QStringList{"from elsewhere"});
}

void TestScriptRunner::capturesMayBeNested()
{
    const LogProbe probe;
    WarningCapture outer;
    qWarning("a");
    {
        WarningCapture inner;
        qWarning("b");
        QCOMPARE(inner.takeLines(), QStringList{"b"});
        QCOMPARE(inner.takeLines(), QStringList());
    }
    qWarning("c");
    QCOMPARE(outer.takeLines(), (QStringList{"a", "c"}));
    QCOMPARE(probe.lines(), QStringList());
}

void TestScriptRunner::keepsABoundOfWarnings_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("kept");
    QTest::newRow("many lines") << 10003 << 1 << 10000;
    QTest::newRow("long lines") << 14 << 1000000 << 10;
    QTest::newRow("as many as there may be") << 10000 << 1 << 10000;
}

void TestScriptRunner::keepsABoundOfWarnings()
{
    QFETCH(int, count);
    QFETCH(int, length);
    QFETCH(int, kept);
    const QString line(length, 'x');
    WarningCapture capture;
    for (const char *round : {"first", "second"}) {
        for (int i = 0; i < count; ++i)
            qWarning().noquote() << line;
        const QStringList lines = capture.takeLines();
        QVERIFY2(lines.at(kept - 1) == line, round);
        QCOMPARE(lines.mid(kept),
                 count > kept ? QStringList(QString("... and %1 more").arg(count - kept)) : QStringList());
    }
}

void TestScriptRunner::runsInTwoThreads()
{
    const auto run = [](const QString &text, RunResult &result) {
        Script script;
        for (int i = 0; i < 1000; ++i)
            addStep(script, [text](VariableScope *) { qWarning() << qPrintable(text); });
        VariableScope scope;
        result = runScript(script, scope);
    };
    const LogProbe probe;
    RunResult a;
    RunResult b;
    std::thread first(run, "a", std::ref(a));
    std::thread second(run, "b", std::ref(b));
    first.join();
    second.join();
    for (int i = 0; i < 1000; ++i) {
        QCOMPARE(a.steps[i].warnings, QStringList{"a"});
        QCOMPARE(b.steps[i].warnings, QStringList{"b"});
    }
    qWarning("after both");
    QCOMPARE(probe.lines(), QStringList{"after both"});
}

void TestScriptRunner::stepsThatThrowEndTheRun_data()
{
    QTest::addColumn<bool>("isStandard");
    QTest::addColumn<QString>("failure");
    QTest::newRow("standard exception") << true << "out of paper";
    QTest::newRow("anything else") << false << "an exception of unknown type";
}

void TestScriptRunner::stepsThatThrowEndTheRun()
{
    QFETCH(bool, isStandard);
    QFETCH(QString, failure);
    Script script;
    addStep(script, writeX);
    addStep(script, [isStandard](VariableScope *scope) {
        writeX(scope);
        qWarning("last words");
        if (isStandard)
            throw std::runtime_error("out of paper");
        throw 42;
    });
    addStep(script, writeX);
    VariableScope scope;
    const RunResult result = runScript(script, scope);
    QVERIFY(result.end == RunEnd::StepFailed);
    QCOMPARE(outcomes(result), (QStringList{"wrote", "failed", "not run"}));
    QCOMPARE(result.steps[1].failure, failure);
    QCOMPARE(result.steps[1].warnings, QStringList{"last words"});
    QCOMPARE(scope.get("x"), QVariant(2));
}

void TestScriptRunner::reportsProgress()
{
    Script script;
    addStep(script, writeX);
    addStep(script, writeX, false);
    addStep(script, doNothing);
    QStringList seen;
    RunObserver observer;
    observer.starting = [&seen](int index) { seen.append(QString("starts %1").arg(index)); };
    observer.progress = [&seen](int done, int total) { seen.append(QString("%1/%2").arg(done).arg(total)); };
    VariableScope scope;
    runScript(script, scope, observer);
    QCOMPARE(seen, (QStringList{"starts 0", "1/3", "2/3", "starts 2", "3/3"}));
}

void TestScriptRunner::stopsBetweenSteps()
{
    Script script;
    for (int i = 0; i < 5; ++i)
        addStep(script, writeX);
    VariableScope scope;
    RunObserver observer;
    observer.shouldStop = [&scope] { return scope.get("x").toInt() == 2; };
    const RunResult result = runScript(script, scope, observer);
    QVERIFY(result.end == RunEnd::Stopped);
    QCOMPARE(outcomes(result), (QStringList{"wrote", "wrote", "not run", "not run", "not run"}));
    QCOMPARE(scope.get("x"), QVariant(2));
}

void TestScriptRunner::runsManySteps()
{
    Script script;
    for (int i = 0; i < 100000; ++i)
        addStep(script, writeX);
    VariableScope scope;
    const RunResult result = runScript(script, scope);
    QCOMPARE(result.count(StepOutcome::Wrote), 100000);
    QCOMPARE(scope.get("x"), QVariant(100000));
}

QTEST_GUILESS_MAIN(TestScriptRunner)
#include "tst_scriptrunner.moc"
