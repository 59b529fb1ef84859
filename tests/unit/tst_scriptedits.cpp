#include "host/plugins/StepCatalogue.h"
#include "host/scripts/ScriptJson.h"
#include "host/scripts/ScriptMerge.h"
#include "host/scripts/ScriptSearch.h"
#include "host/scripts/VariableUses.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

using namespace StepHost;

/// Changes that go through a whole script: a variable's new name, steps from another script, a text that is replaced.
class TestScriptEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void uses_data();
    void uses();
    void hiddenUses();
    void renames_data();
    void renames();
    void refusesNamesThatAreNotUnderstood_data();
    void refusesNamesThatAreNotUnderstood();
    void merges_data();
    void merges();
    void keepsAReferenceThatBeginsWithADot();
    void finds_data();
    void finds();
    void replaces_data();
    void replaces();

private:
    Script read(const QByteArray &json) const;

    StepCatalogue m_catalogue;
};

void TestScriptEdits::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

Script TestScriptEdits::read(const QByteArray &json) const
{
    Result<Script> script = readScript(json, m_catalogue);
    if (!script)
        QTest::qFail(qPrintable(script.error()), __FILE__, __LINE__);
    return script ? std::move(*script) : Script();
}

void TestScriptEdits::uses_data()
{
    QTest::addColumn<QByteArray>("step");
    QTest::addColumn<QStringList>("used");
    const auto row = [](const char *name, const char *step, const QStringList &used) {
        QTest::newRow(name) << QByteArray(step) << used;
    };
    row("by name", R"({"type": "list.sort", "targetVar": "a"})", {"targetVar a"});
    row("with the mark", R"({"type": "list.sort", "targetVar": "$a"})", {"targetVar a"});
    row("none", R"({"type": "list.sort", "targetVar": ""})", {});
    row("as a value", R"({"type": "list.add", "targetVar": "a", "value": "$b"})", {"targetVar a", "value b"});
    row("as a member", R"({"type": "list.add", "targetVar": "a", "value": "$a.Count"})",
        {"targetVar a", "value a"});
    row("as a literal", R"({"type": "list.add", "targetVar": "a", "value": "b"})", {"targetVar a"});
    row("with a blank in front", R"({"type": "list.add", "targetVar": "a", "value": " $b"})",
        {"targetVar a"});
    row("in a text without an editor", R"({"type": "list.add", "targetVar": "a", "index": "$b"})",
        {"targetVar a"});
    row("as an integer", R"({"type": "list.get", "sourceVar": "a", "index": "$b", "targetVar": "c"})",
        {"sourceVar a", "index b", "targetVar c"});
    row("not enabled", R"({"type": "list.sort", "enabled": false, "targetVar": "a"})", {"targetVar a"});
}

void TestScriptEdits::uses()
{
    QFETCH(QByteArray, step);
    const Script script = read(R"({"steps": [)" + step + "]}");
    QStringList used;
    for (const VariableUse &use : VariableUses::inSteps(stepsOf(script))) {
        QCOMPARE(use.row, 0);
        QVERIFY(use.isShown);
        used.append(use.property + ' ' + use.variable);
    }
    QTEST(used, "used");
}

void TestScriptEdits::hiddenUses()
{
    const Script script = read(R"({"steps": [{"type": "list.clear", "targetVar": "other"},
        {"type": "list.remove", "targetVar": "a", "mode": 0, "index": "$i", "value": "$a"}]})");
    const QVector<VariableUse> uses = VariableUses::ofVariable(stepsOf(script), "a");
    QCOMPARE(uses.size(), 2);
    QCOMPARE(uses.first().row, 1);
    QVERIFY(uses.first().isShown);
    QCOMPARE(uses.last().property, QString("value"));
    QVERIFY(!uses.last().isShown);
    QCOMPARE(VariableUses::namesIn(stepsOf(script)), QStringList({"other", "a", "i"}));
}

void TestScriptEdits::renames_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("renamed");
    QTest::newRow("reference") << "$old"
                               << "$new";
    QTest::newRow("member") << "$old.Count"
                            << "$new.Count";
    QTest::newRow("members") << "$old.Count.old"
                             << "$new.Count.old";
    QTest::newRow("an empty member") << "$old."
                                     << "$new.";
    QTest::newRow("two marks") << "$$old.Rows"
                               << "$$new.Rows";
    QTest::newRow("longer") << "$older"
                            << "$older";
    QTest::newRow("in other letters") << "$Old"
                                      << "$Old";
    QTest::newRow("literal") << "old"
                             << "old";
    QTest::newRow("within a text") << "a $old"
                                   << "a $old";
}

void TestScriptEdits::renames()
{
    QFETCH(QString, value);
    Script script = read(R"({"steps": [{"type": "list.sort", "targetVar": "$old"},
        {"type": "list.sort", "targetVar": "older"}, {"type": "list.add", "targetVar": "old"}]})");
    script.steps[2].operation->setProperty("value", value);
    const auto changes = VariableUses::renamed(stepsOf(script), "old", "new");
    QVERIFY2(changes, qPrintable(errorOf(changes)));
    QCOMPARE(changes->at(0).row, 0);
    QCOMPARE(changes->at(0).value, QVariant("$new"));
    QCOMPARE(changes->at(1).row, 2);
    QCOMPARE(changes->at(1).value, QVariant("new"));
    QTEST(changes->size() > 2 ? changes->at(2).value.toString() : value, "renamed");
}

void TestScriptEdits::refusesNamesThatAreNotUnderstood_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("a dot") << "$old"
                           << "a.b" << true;
    QTest::newRow("a dot in front") << "$old"
                                    << ".b" << false;
    QTest::newRow("a dot in front, of a member") << "$old.Count"
                                                 << ".b" << true;
    QTest::newRow("a dot, but no reference") << "old"
                                             << "a.b" << false;
}

void TestScriptEdits::refusesNamesThatAreNotUnderstood()
{
    QFETCH(QString, value);
    QFETCH(QString, name);
    QFETCH(bool, isRefused);
    Script script = read(R"({"steps": [{"type": "list.add", "targetVar": "old"}]})");
    script.steps[0].operation->setProperty("value", value);
    const auto changes = VariableUses::renamed(stepsOf(script), "old", name);
    QCOMPARE(!changes, isRefused);
    if (isRefused)
        QVERIFY2(changes.error().contains(value) && changes.error().contains("1"),
                 qPrintable(changes.error()));
}

void TestScriptEdits::merges_data()
{
    QTest::addColumn<QByteArray>("incoming");
    QTest::addColumn<bool>("renames");
    QTest::addColumn<QStringList>("clashing");
    QTest::addColumn<QStringList>("merged");
    QTest::addColumn<QString>("target");
    const auto row = [](const char *name, const char *incoming, bool renames, const QStringList &clashing,
                        const QStringList &merged, const char *target) {
        QTest::newRow(name) << QByteArray(incoming) << renames << clashing << merged << target;
    };
    row("missing", R"({"name": "b", "type": "int", "value": 3})", true, {}, {"a=1", "a2=", "b=3"}, "a");
    row("the same", R"({"name": "a", "type": "int", "value": 1})", true, {}, {"a=1", "a2="}, "a");
    row("another value, here", R"({"name": "a", "type": "int", "value": 2})", false, {"a"}, {"a=1", "a2="},
        "a");
    row("another value, renamed", R"({"name": "a", "type": "int", "value": 2})", true, {"a"},
        {"a=1", "a2=", "a3=2"}, "a3");
    row("another type, renamed", R"({"name": "a", "type": "string", "value": "1"})", true, {"a"},
        {"a=1", "a2=", "a3=1"}, "a3");
    row("the name is used", R"({"name": "a3", "type": "int"}, {"name": "a", "type": "int", "value": 2})",
        true, {"a"}, {"a=1", "a2=", "a3=0", "a4=2"}, "a4");
}

void TestScriptEdits::merges()
{
    QFETCH(QByteArray, incoming);
    QFETCH(bool, renames);
    VariableScope variables;
    variables.declare("a", VarType::Int);
    variables.set("a", 1);
    variables.declare("a2", VarType::String);
    Script script =
        read(R"({"variables": [)" + incoming + R"(], "steps": [{"type": "list.sort", "targetVar": "a"}]})");
    QTEST(clashingVariables(script, variables), "clashing");
    const auto merged = mergeVariables(script, variables, renames ? Clash::BringRenamed : Clash::UsePresent);
    QVERIFY2(merged, qPrintable(errorOf(merged)));
    QStringList found;
    for (const QString &name : merged->names())
        found.append(name + '=' + merged->get(name).toString());
    QTEST(found, "merged");
    QTEST(script.steps[0].operation->property("targetVar").toString(), "target");
}

void TestScriptEdits::keepsAReferenceThatBeginsWithADot()
{
    VariableScope variables;
    variables.set("a", 1);
    variables.set(".b", 1);
    Script script =
        read(R"({"variables": [{"name": "a", "type": "int", "value": 2}, {"name": ".b", "type": "int"}],
        "steps": [{"type": "list.add", "targetVar": "a", "value": "$.b"}]})");
    const auto merged = mergeVariables(script, variables, Clash::BringRenamed);
    QVERIFY2(merged, qPrintable(errorOf(merged)));
    QCOMPARE(script.steps[0].operation->property("targetVar").toString(), QString("a2"));
    QCOMPARE(script.steps[0].operation->property("value").toString(), QString("$.b2"));
}

void TestScriptEdits::finds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("matchesCase");
    QTest::addColumn<bool>("isWhole");
    QTest::addColumn<QStringList>("hits");
    const auto row = [](const char *name, const char *text, bool matchesCase, bool isWhole,
                        const QStringList &hits) {
        QTest::newRow(name) << QString::fromUtf8(text) << matchesCase << isWhole << hits;
    };
    row("nothing", "", false, false, {});
    row("a setting and a name", "names", false, false, {"0 targetVar", "1 targetVar", "name names"});
    row("whole", "names", false, true, {"1 targetVar", "name names"});
    row("in other letters", "NAMES", false, false, {"0 targetVar", "1 targetVar", "name names"});
    row("in just these letters", "NAMES", true, false, {});
    row("a type", "list.sort", false, false, {"0 "});
    row("a step's name", "列表排序", false, false, {"0 "});
    row("a value", "bob", false, false, {"2 in names"});
    row("a number", "42", false, true, {"1 in count"});
    row("a choice", "按索引值", false, false, {"1 mode"});
    row("a hidden setting", "hidden", false, false, {});
}

void TestScriptEdits::finds()
{
    QFETCH(QString, text);
    QFETCH(bool, matchesCase);
    QFETCH(bool, isWhole);
    const Script script =
        read(R"({"variables": [{"name": "names", "type": "list", "value": ["Bob", ["bobby", 1]]},
        {"name": "count", "type": "int", "value": 42}], "steps": [{"type": "list.sort", "targetVar": "$names"},
        {"type": "list.remove", "targetVar": "names", "mode": 0, "value": "hidden"}]})");
    VariableScope variables;
    declareVariables(script, variables);
    SearchPattern pattern;
    pattern.text = text;
    pattern.caseSensitivity = matchesCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    pattern.isWhole = isWhole;
    QStringList found;
    for (const SearchHit &hit : findInScript({stepsOf(script), variables}, pattern)) {
        if (hit.place == SearchHit::VariableName)
            found.append("name " + hit.variable);
        else if (hit.place == SearchHit::Value)
            found.append(QString::number(hit.count) + " in " + hit.variable);
        else
            found.append(QString::number(hit.row) + ' ' + hit.property);
        QVERIFY2(pattern.isIn(hit.text), qPrintable(hit.text));
    }
    QTEST(found, "hits");
}

void TestScriptEdits::replaces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("texts");
    const QStringList same{"$names", "$names.Count", "Bob", "bobby", "42"};
    QTest::newRow("in settings") << "names"
                                 << "people" << 2
                                 << QStringList{"$people", "$people.Count", "Bob", "bobby", "42"};
    QTest::newRow("in values") << "bob"
                               << "Ann" << 2 << QStringList{"$names", "$names.Count", "Ann", "Annby", "42"};
    QTest::newRow("by nothing") << "bob"
                                << "" << 2 << QStringList{"$names", "$names.Count", "", "by", "42"};
    QTest::newRow("by itself") << "Bob"
                               << "Bob" << 1 << QStringList{"$names", "$names.Count", "Bob", "Bobby", "42"};
    QTest::newRow("no number") << "42"
                               << "43" << 0 << same;
    QTest::newRow("no choice") << QString::fromUtf8("按索引值") << "x" << 0 << same;
    QTest::newRow("nothing") << ""
                             << "x" << 0 << same;
}

void TestScriptEdits::replaces()
{
    QFETCH(QString, text);
    QFETCH(QString, replacement);
    Script script =
        read(R"({"variables": [{"name": "names", "type": "list", "value": ["Bob", ["bobby", 42]]}],
        "steps": [{"type": "list.sort", "targetVar": "$names"},
        {"type": "list.add", "targetVar": "other", "value": "$names.Count"}]})");
    VariableScope variables;
    declareVariables(script, variables);
    SearchPattern pattern;
    pattern.text = text;
    const Replacement replaced = replaceInScript({stepsOf(script), variables}, pattern, replacement);
    QTEST(replaced.count, "count");
    for (const SettingChange &change : replaced.settings)
        script.steps[std::size_t(change.row)].operation->setProperty(change.property.toUtf8(), change.value);
    const QVariantList names = replaced.variables.get("names").toList();
    const QVariantList inner = names.at(1).toList();
    const QStringList texts{script.steps[0].operation->property("targetVar").toString(),
                            script.steps[1].operation->property("value").toString(), names.at(0).toString(),
                            inner.at(0).toString(), inner.at(1).toString()};
    QTEST(texts, "texts");
    QCOMPARE(replaced.variables.names(), QStringList{"names"});
}

QTEST_GUILESS_MAIN(TestScriptEdits)
#include "tst_scriptedits.moc"
