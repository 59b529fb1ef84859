#include "host/running/RunReport.h"
#include "tests/support/FixtureStep.h"

#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

namespace
{
// The text of a step is all that a report asks it for.
class TextStep : public FixtureStep
{
public:
    explicit TextStep(const QString &text) : FixtureStep("test.text"), m_text(text) { }

    QString toString() const override
    {
        return m_text;
    }

private:
    QString m_text;
};

// A run of four steps, as it might have been.
struct Example
{
    Script script;
    RunResult result;
    std::vector<ScriptVariable> variables;
    std::vector<ScriptVariable> before;

    Example()
    {
        for (const char *text : {"one", "two\n\x1b[2J", "three", "four"})
            script.steps.push_back({std::make_unique<TextStep>(text), true});
        result.steps.resize(4);
        result.steps[0].outcome = StepOutcome::Wrote;
        result.steps[1].outcome = StepOutcome::Skipped;
        result.steps[1].warnings = QStringList{"first \"a\"", "second\r\n"};
        result.steps[2].outcome = StepOutcome::Failed;
        result.steps[2].failure = "out of paper";
        variables = {{QString::fromUtf8("名字"), VarType::List, QVariantList{"a", 1, 1.0}},
                     {"a\tb", VarType::Undeclared, QVariant()}};
        before = {{"x", VarType::Int, 1}};
    }

    RunReport report(bool withBefore = false) const
    {
        return {script, result, variables, withBefore ? &before : nullptr};
    }
};
} // namespace

class TestRunReport : public QObject
{
    Q_OBJECT

private slots:
    void text();
    void textWithBefore();
    void textOfNothing();
    void textAtATerminal();
    void json();
    void jsonWithBefore();
    void jsonOfNothing();
    void refusesDeepNesting();
    void listsTheVariablesOfAScope();
};

void TestRunReport::text()
{
    const Example example;
    const Result<QByteArray> text = reportToText(example.report());
    QCOMPARE(errorOf(text), QString());
    QCOMPARE(QString::fromUtf8(*text),
             QString::fromUtf8("Steps\n"
                               "  1  wrote     one\n"
                               "  2  skipped   two\\n\\u001b[2J\n"
                               "               first \"a\"\n"
                               "               second\\r\\n\n"
                               "  3  failed    three\n"
                               "               out of paper\n"
                               "  4  not run   four\n"
                               "\n"
                               "Variables\n"
                               "  list    名字 = [\"a\", 1, 1.0]\n"
                               "  undeclared  a\\tb = null\n"
                               "\n"
                               "4 steps: 1 wrote, 1 skipped, 1 failed, 1 not run\n"));
}

void TestRunReport::textWithBefore()
{
    const Example example;
    const Result<QByteArray> text = reportToText(example.report(true));
    QCOMPARE(errorOf(text), QString());
    QVERIFY(text->startsWith("Variables before\n  int     x = 1\n\nSteps\n"));
    QVERIFY(text->contains("\nVariables after\n  list "));
}

void TestRunReport::textOfNothing()
{
    const Script script;
    const RunResult result;
    const std::vector<ScriptVariable> variables;
    QCOMPARE(reportToText({script, result, variables}).value_or(""),
             QByteArray("Steps\n\nVariables\n\nno steps\n"));
}

void TestRunReport::textAtATerminal()
{
    Example example;
    const QVariantList numbers{100, 200, 300, 400, 500};
    example.variables = {{QString::fromUtf8("名字"), VarType::List, numbers},
                         {"t", VarType::Table, QVariantList{QVariant(numbers), QVariant(numbers)}},
                         {"s", VarType::String, QString(1000, 'x')},
                         {"n", VarType::Int, 1}};
    RunReport report = example.report();
    report.look = {40, true};
    const Result<QByteArray> text = reportToText(report);
    QCOMPARE(errorOf(text), QString());
    QCOMPARE(QString::fromUtf8(*text),
             QString::fromUtf8("Steps\n"
                               "  1  \x1b[32mwrote   \x1b[0m  one\n"
                               "  2  \x1b[33mskipped \x1b[0m  two\\n\\u001b[2J\n"
                               "               first \"a\"\n"
                               "               second\\r\\n\n"
                               "  3  \x1b[31mfailed  \x1b[0m  three\n"
                               "               out of paper\n"
                               "  4  \x1b[33mnot run \x1b[0m  four\n"
                               "\n"
                               "Variables\n"
                               "  list    名字 = [100, 200, ... (5 elements)\n"
                               "  table   t = [[100, 200, 3 ... (2 rows)\n"
                               "  string  s = \"xxxxxxxxx ... (1002 characters)\n"
                               "  int     n = 1\n"
                               "\n"
                               "4 steps: 1 wrote, 1 skipped, 1 failed, 1 not run\n"));
}

void TestRunReport::json()
{
    const Example example;
    const Result<QByteArray> json = reportToJson(example.report());
    QCOMPARE(errorOf(json), QString());
    QCOMPARE(QString::fromUtf8(*json), QString::fromUtf8(R"({
  "variables": [
    {"name": "名字", "type": "list", "value": ["a", 1, 1.0]},
    {"name": "a\tb", "type": "undeclared", "value": null}
  ],
  "steps": [
    {"type": "test.text", "summary": "one", "outcome": "wrote", "warnings": []},
    {"type": "test.text", "summary": "two\n\u001b[2J", "outcome": "skipped", "warnings": ["first \"a\"", "second\r\n"]},
    {"type": "test.text", "summary": "three", "outcome": "failed", "warnings": [], "failure": "out of paper"},
    {"type": "test.text", "summary": "four", "outcome": "not run", "warnings": []}
  ]
}
)"));
}

void TestRunReport::jsonWithBefore()
{
    const Example example;
    const Result<QByteArray> json = reportToJson(example.report(true));
    QCOMPARE(errorOf(json), QString());
    QVERIFY(
        json->startsWith("{\n  \"before\": [\n    {\"name\": \"x\", \"type\": \"int\", \"value\": 1}\n  ],\n"
                         "  \"variables\": [\n"));
}

void TestRunReport::jsonOfNothing()
{
    const Script script;
    const RunResult result;
    const std::vector<ScriptVariable> variables;
    QCOMPARE(reportToJson({script, result, variables}).value_or(""),
             QByteArray("{\n  \"variables\": [],\n  \"steps\": []\n}\n"));
}

void TestRunReport::refusesDeepNesting()
{
    Example example;
    QVariant deep = QVariantList();
    for (int i = 0; i < 10000; ++i)
        deep = QVariantList{deep};
    example.before = {{"deep", VarType::List, deep}};
    const QString error = "the value of \"deep\" is nested deeper than 512 levels of JSON";
    QCOMPARE(errorOf(reportToText(example.report(true))), error);
    QCOMPARE(errorOf(reportToJson(example.report(true))), error);
    example.variables = example.before;
    QCOMPARE(errorOf(reportToText(example.report())), error);
    QCOMPARE(errorOf(reportToJson(example.report())), error);
}

void TestRunReport::listsTheVariablesOfAScope()
{
    VariableScope scope;
    scope.declare("b", VarType::List);
    scope.set("a", 1.5);
    scope.set("$$c", "text");
    const std::vector<ScriptVariable> variables = variablesOf(scope);
    QCOMPARE(int(variables.size()), 3);
    QCOMPARE(variables[0].name, QString("b"));
    QVERIFY(variables[0].type == VarType::List);
    QCOMPARE(variables[0].value, QVariant(QVariantList()));
    QCOMPARE(variables[1].name, QString("a"));
    QVERIFY(variables[1].type == VarType::Double);
    QCOMPARE(variables[1].value, QVariant(1.5));
    QCOMPARE(variables[2].name, QString("$c"));
    QVERIFY(variables[2].type == VarType::String);
    QCOMPARE(variables[2].value, QVariant("text"));
}

QTEST_GUILESS_MAIN(TestRunReport)
#include "tst_runreport.moc"
