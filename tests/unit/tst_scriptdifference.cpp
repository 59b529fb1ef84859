#include "host/plugins/StepCatalogue.h"
#include "host/scripts/BinaryScript.h"
#include "host/scripts/DifferenceReport.h"
#include "host/scripts/ScriptFile.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/FixtureStep.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

class TestScriptDifference : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void steps_data();
    void steps();
    void variables_data();
    void variables();
    void values();
    void forms();
    void recordsThatHoldMore();
    void text();
    void textAtATerminal();
    void json();
    void longScripts();

private:
    Script script(const QByteArray &json) const;
    Script scriptOf(const QString &steps) const;

    StepCatalogue m_catalogue;
};

namespace
{
// Has state that no property shows.
class StateStep : public FixtureStep
{
public:
    explicit StateStep(int state) : FixtureStep("test.state"), m_state(state) { }

    void saveOperation(QDataStream &stream) const override
    {
        stream << m_state;
    }

private:
    int m_state;
};

// Such as "2-" for the second one that was removed, "-1" for the first that was added, "4>2" moved and "1~1" changed.
QString shown(const std::vector<ItemChange> &changes)
{
    QStringList texts;
    for (const ItemChange &change : changes) {
        const QString before = change.before < 0 ? QString() : QString::number(change.before + 1);
        const QString after = change.after < 0 ? QString() : QString::number(change.after + 1);
        const char mark = change.kind == ChangeKind::Moved ? '>'
            : change.kind == ChangeKind::Changed           ? '~'
                                                           : '-';
        texts.append(before + QLatin1Char(mark) + after);
    }
    return texts.join(QLatin1Char(' '));
}
} // namespace

void TestScriptDifference::initTestCase()
{
    QCOMPARE(errorOf(m_catalogue.addPlugin(TestPaths::listPlugin())), QString());
    QCOMPARE(errorOf(m_catalogue.addPlugin(TestPaths::fixture("HostileSteps"))), QString());
}

Script TestScriptDifference::script(const QByteArray &json) const
{
    Result<Script> read = readAnyScript(json, m_catalogue);
    if (!read)
        qFatal("%s", qPrintable(read.error()));
    return std::move(*read);
}

// Each letter is a step: s and S sort, r and R reverse, another variable for a capital; c clears, x is not enabled.
Script TestScriptDifference::scriptOf(const QString &steps) const
{
    QByteArrayList items;
    for (const QChar letter : steps) {
        const char *type = letter.toLower() == 's' ? "list.sort"
            : letter.toLower() == 'r'              ? "list.reverse"
                                                   : "list.clear";
        items.append(QByteArray(R"({"type": ")") + type + R"(", "targetVar": ")"
                     + (letter.isUpper() ? "b" : "a") + R"(", "enabled": )"
                     + (letter == 'x' ? "false" : "true") + '}');
    }
    return script(R"({"steps": [)" + items.join(", ") + "]}");
}

void TestScriptDifference::steps_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("changes");
    const auto row = [](const char *before, const char *after, const char *changes) {
        QTest::newRow(qPrintable(QString("%1 to %2").arg(before, after))) << before << after << changes;
    };
    row("", "", "");
    row("src", "src", "");
    row("", "s", "-1");
    row("s", "", "1-");
    row("src", "sc", "2-");
    row("sc", "src", "-2");
    row("ss", "s", "2-");
    row("srs", "rs", "1-");
    row("srs", "sr", "3-");
    row("src", "rcs", "1>3");
    row("rcs", "src", "3>1");
    row("src", "sRc", "2~2");
    row("src", "ssc", "2- -2");
    row("c", "x", "1~1");
    row("srSc", "src", "3-");
    // Two of one type in one place: the first with the first.
    row("rs", "rSS", "2~2 -3");
    row("sR", "Sr", "1~1 2~2");
    // Of what is left, the only one of its type is the same one, wherever it is; of several none is.
    row("scr", "crS", "1~3");
    row("sscr", "crSS", "1- 2- -3 -4");
}

void TestScriptDifference::steps()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const Script first = scriptOf(before);
    const Script second = scriptOf(after);
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(errorOf(difference), QString());
    QCOMPARE(shown(difference->variables), QString());
    QTEST(shown(difference->steps), "changes");
}

void TestScriptDifference::variables_data()
{
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("changes");
    QTest::newRow("the same") << QByteArray(
        R"([{"name": "a", "type": "int", "value": 1}, {"name": "b", "type": "list"}])")
                              << "";
    QTest::newRow("the default said") << QByteArray(
        R"([{"name": "$a", "type": "int", "value": 1}, {"name": "b", "type": "list", "value": []}])")
                                      << "";
    QTest::newRow("another value") << QByteArray(
        R"([{"name": "a", "type": "int", "value": 2}, {"name": "b", "type": "list"}])")
                                   << "1~1";
    QTest::newRow("another type") << QByteArray(
        R"([{"name": "a", "type": "double", "value": 1}, {"name": "b", "type": "list"}])")
                                  << "1~1";
    QTest::newRow("another name") << QByteArray(
        R"([{"name": "c", "type": "int", "value": 1}, {"name": "b", "type": "list"}])")
                                  << "1- -1";
    QTest::newRow("another order") << QByteArray(
        R"([{"name": "b", "type": "list"}, {"name": "a", "type": "int", "value": 1}])")
                                   << "1>2";
    QTest::newRow("none") << QByteArray("[]") << "1- 2-";
}

void TestScriptDifference::variables()
{
    QFETCH(QByteArray, after);
    const Script first =
        script(R"({"variables": [{"name": "a", "type": "int", "value": 1}, {"name": "b", "type": "list"}]})");
    const Script second = script("{\"variables\": " + after + "}");
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(errorOf(difference), QString());
    QTEST(shown(difference->variables), "changes");
}

void TestScriptDifference::values()
{
    const Script first = script(R"({"steps": [{"type": "list.sort", "targetVar": "a"}]})");
    const Script second = script(
        R"({"steps": [{"type": "list.sort", "targetVar": "a", "ascending": false, "enabled": false}]})");
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(difference->steps.size(), std::size_t(1));
    const std::vector<ValueChange> &values = difference->steps[0].values;
    QCOMPARE(values.size(), std::size_t(2));
    QCOMPARE(values[0].name, QString("enabled"));
    QCOMPARE(values[0].before, QByteArray("true"));
    QCOMPARE(values[0].after, QByteArray("false"));
    QCOMPARE(values[1].name, QString("ascending"));
    QCOMPARE(values[1].before, QByteArray("true"));
    QCOMPARE(values[1].after, QByteArray("false"));
}

void TestScriptDifference::forms()
{
    const Script json = script(R"({"variables": [{"name": "a", "type": "list", "value": [1, 1.0, null]}],
        "steps": [{"type": "list.add", "targetVar": "a", "value": {"$QString": ""}}, {"type": "list.clear"}]})");
    const Result<QByteArray> bytes = writeScript(json, ScriptForm::Binary, m_catalogue);
    QCOMPARE(errorOf(bytes), QString());
    const Script binary = script(*bytes);
    const Result<ScriptDifference> difference = differenceOf(json, binary);
    QCOMPARE(shown(difference->variables) + shown(difference->steps), QString());
}

void TestScriptDifference::recordsThatHoldMore()
{
    const auto scriptWith = [](int state) {
        Script script;
        script.steps.push_back({std::make_unique<StateStep>(state), true});
        return script;
    };
    const Script first = scriptWith(1);
    const Result<ScriptDifference> difference = differenceOf(first, scriptWith(2));
    QCOMPARE(shown(difference->steps), QString("1~1"));
    QCOMPARE(difference->steps[0].values.size(), std::size_t(1));
    QCOMPARE(difference->steps[0].values[0].name, QString("(record)"));
    QCOMPARE(difference->steps[0].values[0].before, QByteArray("\"AAAAAQ==\""));
    QVERIFY(differenceOf(first, scriptWith(1))->steps.empty());
}

void TestScriptDifference::text()
{
    const Script first =
        script(R"({"variables": [{"name": "n", "type": "int", "value": 1}, {"name": "a\n", "type": "list"}],
        "steps": [{"type": "list.clear", "targetVar": "a"}, {"type": "list.reverse", "targetVar": "a"},
                  {"type": "list.sort", "targetVar": "a"}]})");
    const Script second = script(R"({"variables": [{"name": "n", "type": "int", "value": 2}],
        "steps": [{"type": "list.reverse", "targetVar": "a"},
                  {"type": "list.sort", "targetVar": "a", "ascending": false}, {"type": "list.clear", "targetVar": "a"},
                  {"type": "list.dedup", "targetVar": "a"}]})");
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(QString::fromUtf8(differenceToText({first, second, *difference})),
             QString::fromUtf8("Variables\n"
                               "  changed  1  n\n"
                               "              value: 1 -> 2\n"
                               "  removed  2  a\\n\n"
                               "              type: \"list\"\n"
                               "              value: []\n"
                               "\n"
                               "Steps\n"
                               "  changed  3 -> 2  列表排序: $a (desc)\n"
                               "                   ascending: true -> false\n"
                               "  moved    1 -> 3  列表清空: $a\n"
                               "  added    4       列表去重: $a\n"
                               "\n"
                               "variables: 1 removed, 1 changed; steps: 1 added, 1 moved, 1 changed\n"));
    const ScriptDifference none;
    QCOMPARE(differenceToText({first, first, none}), QByteArray("no differences\n"));
}

void TestScriptDifference::textAtATerminal()
{
    const Script first =
        script(R"({"variables": [{"name": "a", "type": "list", "value": ["one", "two", "three", "four"]}]})");
    const Script second = script(R"({"variables": [{"name": "a", "type": "list", "value": [1]}]})");
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(differenceToText({first, second, *difference}, {60, true}),
             QByteArray("Variables\n"
                        "  \x1b[33mchanged\x1b[0m  1  a\n"
                        "              value: [\"one\", \"two\", \"three\", \"four\"] -> [1]\n"
                        "\n"
                        "variables: 1 changed\n"));
}

void TestScriptDifference::json()
{
    const Script first = script(R"({"variables": [{"name": "n", "type": "int", "value": 1}],
        "steps": [{"type": "list.clear", "targetVar": "a"}, {"type": "list.clear", "targetVar": "b"}]})");
    const Script second = script(R"({"variables": [{"name": "n", "type": "int", "value": 2}],
        "steps": [{"type": "list.clear", "targetVar": "b"}]})");
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(QString::fromUtf8(differenceToJson({first, second, *difference})), QString::fromUtf8(R"json({
  "variables": [
    {"change": "changed", "before": 1, "after": 1, "name": "n", "values": [{"name": "value", "before": 1, "after": 2}]}
  ],
  "steps": [
    {"change": "removed", "before": 1, "type": "list.clear", "summary": "列表清空: $a", "values": [{"name": "enabled", "before": true}, {"name": "targetVar", "before": "a"}]}
  ]
}
)json"));
}

void TestScriptDifference::longScripts()
{
    // Each step as another one of a few kinds, and none where it was.
    const int size = 20000;
    QString before;
    QString after;
    for (int i = 0; i < size; ++i) {
        before += QLatin1Char("srcSRC"[i * 7919 % 6]);
        after += QLatin1Char("srcSRC"[i * 104729 % 5]);
    }
    const Script first = scriptOf(before);
    const Script second = scriptOf(after);
    const Result<ScriptDifference> difference = differenceOf(first, second);
    QCOMPARE(errorOf(difference), QString());
    QVERIFY(!difference->steps.empty());
    QVERIFY(differenceOf(first, first)->steps.empty());
}

QTEST_APPLESS_MAIN(TestScriptDifference)
#include "tst_scriptdifference.moc"
