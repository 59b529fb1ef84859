#include "tests/support/StepctlFolder.h"

#include <QtTest>

#include <memory>

namespace
{
const char cleanScript[] = R"({"variables": [{"name": "names", "type": "list", "value": ["b", "a"]}],
    "steps": [{"type": "list.sort", "targetVar": "names"}]})";

const char faultyScript[] = R"({"variables": [{"name": "names", "type": "list"}],
    "steps": [{"type": "list.sort", "targetVar": "names"}, {"type": "list.clear", "targetVar": "nmaes"},
              {"type": "list.reverse", "targetVar": "", "enabled": false}]})";
} // namespace

/// What stepctl does with scripts without running them.
class TestStepctlScripts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void lints();
    void lintsAsJson();
    void comparesScripts();
    void refuses_data();
    void refuses();
    void readsScriptsFromStandardInput();
    void asksForMeantVariables();

private:
    std::unique_ptr<StepctlFolder> m_folder;
};

void TestStepctlScripts::init()
{
    m_folder = std::make_unique<StepctlFolder>();
    m_folder->write("clean.json", cleanScript);
    m_folder->write("faulty.json", faultyScript);
}

void TestStepctlScripts::lints()
{
    const Run clean = m_folder->run({"lint", "clean.json"});
    QCOMPARE(clean.errors, QString());
    QCOMPARE(clean.output, QString("1 step: no problems\n"));
    QCOMPARE(clean.status, 0);

    const Run faulty = m_folder->run({"lint", "faulty.json", "--isolate"});
    QCOMPARE(faulty.errors, QString());
    QCOMPARE(
        faulty.output,
        QString::fromUtf8("faulty.json: step 2 (list.clear): 目标列表: There is no variable “nmaes” yet. "
                          "Did you mean \"names\"?\n"
                          "3 steps: 1 problem\n"));
    QCOMPARE(faulty.status, 1);
}

void TestStepctlScripts::lintsAsJson()
{
    const Run faulty = m_folder->run({"lint", "faulty.json", "--format", "json"});
    QCOMPARE(faulty.status, 1);
    QCOMPARE(faulty.output, QString::fromUtf8(R"json({
  "file": "faulty.json",
  "steps": 3,
  "problems": [
    {"step": 2, "type": "list.clear", "property": "targetVar", "text": "目标列表: There is no variable “nmaes” yet.", "missing": "nmaes", "missingType": "list", "suggestion": "names"}
  ]
}
)json"));
}

void TestStepctlScripts::comparesScripts()
{
    QCOMPARE(m_folder->run({"convert", "clean.json", "clean.qms"}).status, 0);
    const Run same = m_folder->run({"diff", "clean.json", "clean.qms"});
    QCOMPARE(same.errors, QString());
    QCOMPARE(same.output, QString("no differences\n"));
    QCOMPARE(same.status, 0);

    const Run text = m_folder->run({"diff", "clean.qms", "faulty.json", "--isolate"});
    QCOMPARE(text.errors, QString());
    QVERIFY2(text.output.contains("value: [\"b\", \"a\"] -> []\n")
                 && text.output.endsWith("\nvariables: 1 changed; steps: 2 added\n"),
             qPrintable(text.output));
    QCOMPARE(text.status, 1);
    const Run json = m_folder->run({"diff", "clean.qms", "faulty.json", "--format", "json"});
    QVERIFY2(json.output.contains(
                 R"("name": "names", "values": [{"name": "value", "before": ["b", "a"], "after": []}])"),
             qPrintable(json.output));
    QCOMPARE(json.status, 1);
}

void TestStepctlScripts::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("no script to lint") << QStringList{"lint"} << "script is required";
    QTest::newRow("a missing script") << QStringList{"lint", "missing.json"} << "missing.json: ";
    QTest::newRow("a bad script") << QStringList{"lint", "bad.json"}
                                  << "bad.json: at /steps/0: there is no property \"targetvar\"; "
                                     "did you mean \"targetVar\"? There are \"targetVar\", \"ascending\"\n";
    QTest::newRow("one script to compare") << QStringList{"diff", "clean.json"} << "after is required";
    QTest::newRow("the first is bad") << QStringList{"diff", "bad.json", "clean.json"} << "bad.json: at ";
    QTest::newRow("the second is bad") << QStringList{"diff", "clean.json", "bad.json"} << "bad.json: at ";
    QTest::newRow("standard input twice")
        << QStringList{"diff", "-", "-"} << "diff: standard input can be read only once\n";
    QTest::newRow("a mistyped command")
        << QStringList{"lnit", "clean.json"}
        << "there is no command \"lnit\"; did you mean \"lint\"? There are \"run\", ";
    QTest::newRow("an unknown command")
        << QStringList{"fly"} << "there is no command \"fly\"; there are \"run\", ";
    QTest::newRow("a mistyped option")
        << QStringList{"lint", "clean.json", "--fromat=json"} << "--fromat=json; did you mean --format?\n";
    QTest::newRow("a mistyped value")
        << QStringList{"lint", "clean.json", "--format", "jsno"}
        << "--format: there is no value \"jsno\"; did you mean \"json\"? There are "
           "\"text\", \"json\"\n";
    QTest::newRow("a mistyped type")
        << QStringList{"describe", "list.srot"}
        << "there is no step type \"list.srot\"; did you mean \"list.sort\"? There are \"list.add\", ";
    QTest::newRow("a mistyped check") << QStringList{"explain", "clone.parnet"}
                                      << "explain: there is no check \"clone.parnet\"; did you mean "
                                         "\"clone.parent\"? stepctl check --list shows them all\n";
}

void TestStepctlScripts::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    m_folder->write("bad.json", QByteArray(cleanScript).replace("targetVar", "targetvar"));
    const Run result = m_folder->run(arguments);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith("stepctl: ") && result.errors.contains(error),
             qPrintable(result.errors));
}

void TestStepctlScripts::readsScriptsFromStandardInput()
{
    for (const QStringList &more : {QStringList(), QStringList("--isolate")}) {
        const Run run = m_folder->run(QStringList{"run", "-"} + more, cleanScript);
        QCOMPARE(run.errors, QString());
        QVERIFY2(run.output.contains("names = [\"a\", \"b\"]\n"), qPrintable(run.output));
    }
    QVERIFY(m_folder->run({"lint", "-"}, faultyScript).output.startsWith("-: step 2 (list.clear): "));
    QCOMPARE(m_folder->run({"diff", "clean.json", "-"}, cleanScript).output, QString("no differences\n"));
    const Run twice = m_folder->run({"run", "-", "--list", "names=@-"}, cleanScript);
    QCOMPARE(twice.errors, QString("stepctl: --list names=@-: standard input can be read only once\n"));
}

void TestStepctlScripts::asksForMeantVariables()
{
    const Run mistyped = m_folder->run({"run", "clean.json", "--set", "nams=[1]", "--set", "other=1"});
    QCOMPARE(mistyped.errors,
             QString("stepctl: the script does not use a variable \"nams\", which is added; did you mean "
                     "\"names\"?\n"));
    QCOMPARE(mistyped.status, 0);
    // The second step looks for it.
    const Run wanted = m_folder->run({"run", "faulty.json", "--set", "nmaes=[1]"});
    QCOMPARE(wanted.errors, QString());
    QCOMPARE(wanted.status, 0);
}

QTEST_GUILESS_MAIN(TestStepctlScripts)
#include "tst_stepctl_scripts.moc"
