#include "host/plugins/StepRecord.h"
#include "host/scripts/ScriptFile.h"
#include "host/values/JsonWriter.h"
#include "tests/support/CollidingNames.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/IsLike.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

#include <ctime>

using namespace StepHost;

class TestScriptJson : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void readsAScript();
    void readsVariables_data();
    void readsVariables();
    void readsSettings();
    void refuses_data();
    void refuses();
    void refusesFiles_data();
    void refusesFiles();
    void refusesDeepNesting();
    void writesWhatItReads();
    void keepsRecordsOfNewSteps();
    void keepsRecordsWithEmptyTexts();
    void writesNamesThatAScriptCannotDeclare();
    void refusesToWriteDeepNesting();
    void declaresVariables();
    void collidingNamesCostAsOthersDo();

private:
    // Destroyed after the scripts of every test.
    StepCatalogue m_catalogue;
};

void TestScriptJson::initTestCase()
{
    QVERIFY(m_catalogue.addPlugin(TestPaths::listPlugin()));
    QVERIFY(m_catalogue.addPlugin(TestPaths::fixture("HostileSteps")));
}

void TestScriptJson::readsAScript()
{
    const Result<Script> read = readScript(R"({
        "variables": [
            {"name": "names", "type": "list", "value": ["b", "a", 3, 1.0, true, null, [1, 2]]},
            {"name": "$count", "type": "int"}
        ],
        "steps": [
            {"type": "list.sort", "targetVar": "$names", "ascending": false},
            {"type": "list.remove", "enabled": false, "targetVar": " x ", "mode": 1, "value": ""},
            {"enabled": true, "type": "list.clear"}
        ]})",
                                           m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    const Script &script = *read;

    QCOMPARE(int(script.variables.size()), 2);
    QCOMPARE(script.variables[0].name, QString("names"));
    QVERIFY(script.variables[0].type == VarType::List);
    const QVariantList names = script.variables[0].value.toList();
    QCOMPARE(names, (QVariantList{"b", "a", 3, 1.0, true, QVariant(), QVariantList{1, 2}}));
    QCOMPARE(names.at(2).userType(), int(QMetaType::Int));
    QCOMPARE(names.at(3).userType(), int(QMetaType::Double));
    QCOMPARE(script.variables[1].name, QString("count"));
    QVERIFY(script.variables[1].type == VarType::Int);
    QCOMPARE(script.variables[1].value, QVariant(0));

    QCOMPARE(int(script.steps.size()), 3);
    const Operation &sort = *script.steps[0].operation;
    QCOMPARE(sort.typeId(), QString("list.sort"));
    QCOMPARE(sort.property("targetVar"), QVariant("$names"));
    QCOMPARE(sort.property("ascending"), QVariant(false));
    QVERIFY(script.steps[0].enabled);
    const Operation &remove = *script.steps[1].operation;
    QCOMPARE(remove.property("targetVar"), QVariant(" x "));
    QCOMPARE(remove.property("mode"), QVariant(1));
    QCOMPARE(remove.property("index"), QVariant(""));
    QVERIFY(!script.steps[1].enabled);
    QCOMPARE(script.steps[2].operation->typeId(), QString("list.clear"));
    QVERIFY(script.steps[2].enabled);
}

void TestScriptJson::readsVariables_data()
{
    QTest::addColumn<QByteArray>("typeAndValue");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("int, empty") << QByteArray(R"("int")") << QVariant(0);
    QTest::newRow("double, empty") << QByteArray(R"("double")") << QVariant(0.0);
    QTest::newRow("string, empty") << QByteArray(R"("string")") << QVariant(QString(""));
    QTest::newRow("bool, empty") << QByteArray(R"("bool")") << QVariant(false);
    QTest::newRow("list, empty") << QByteArray(R"("list")") << QVariant(QVariantList());
    QTest::newRow("table, empty") << QByteArray(R"("table")") << QVariant(QVariantList());
    QTest::newRow("undeclared, empty") << QByteArray(R"("undeclared")") << QVariant();

    QTest::newRow("int") << QByteArray(R"("int", "value": -7)") << QVariant(-7);
    QTest::newRow("int of 64 bits") << QByteArray(R"("int", "value": 3000000000)") << QVariant(3000000000LL);
    QTest::newRow("double") << QByteArray(R"("double", "value": 1.5)") << QVariant(1.5);
    QTest::newRow("double from an integer") << QByteArray(R"("double", "value": 3)") << QVariant(3.0);
    QTest::newRow("double from 64 bits")
        << QByteArray(R"("double", "value": 3000000000)") << QVariant(3000000000.0);
    QTest::newRow("string") << QByteArray(R"("string", "value": "1")") << QVariant("1");
    QTest::newRow("bool") << QByteArray(R"("bool", "value": true)") << QVariant(true);
    QTest::newRow("list") << QByteArray(R"("list", "value": [1])") << QVariant(QVariantList{1});
    QTest::newRow("table") << QByteArray(R"("table", "value": [[1, "a"], []])")
                           << QVariant(
                                  QVariantList{QVariant(QVariantList{1, "a"}), QVariant(QVariantList())});
    QTest::newRow("a typed form of another kind")
        << QByteArray(R"("int", "value": {"$QString": "a"})") << QVariant("a");
    QTest::newRow("a typed form for a list")
        << QByteArray(R"("list", "value": {"$QStringList": ["a"]})") << QVariant(QStringList{"a"});
}

void TestScriptJson::readsVariables()
{
    QFETCH(QByteArray, typeAndValue);
    QFETCH(QVariant, value);
    const Result<Script> read =
        readScript(R"({"variables": [{"name": "x", "type": )" + typeAndValue + "}]}", m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    const QVariant actual = read->variables[0].value;
    QCOMPARE(actual.userType(), value.userType());
    QCOMPARE(actual, value);
}

void TestScriptJson::readsSettings()
{
    const Result<Script> read = readScript(R"({"steps": [{"type": "fixture.settings",
        "ratio": 2, "size": 5, "words": {"$QStringList": ["a"]}, "anything": [1.0], "color": "Green"},
        {"type": "fixture.settings", "size": 3000000000, "color": 1},
        {"type": "list.add", "value": {"$QString": [55296]}}]})",
                                           m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    const Operation &first = *read->steps[0].operation;
    QCOMPARE(first.property("ratio"), QVariant(2.0));
    QCOMPARE(first.property("size"), QVariant(5LL));
    QCOMPARE(first.property("words"), QVariant(QStringList{"a"}));
    QCOMPARE(first.property("anything"), QVariant(QVariantList{1.0}));
    QCOMPARE(first.property("color").toInt(), 1);
    const Operation &second = *read->steps[1].operation;
    QCOMPARE(second.property("ratio"), QVariant(0.5));
    QCOMPARE(second.property("size"), QVariant(3000000000LL));
    QCOMPARE(second.property("color").toInt(), 1);
    QCOMPARE(read->steps[2].operation->property("value"), QVariant(QString(QChar(0xD800))));
}

void TestScriptJson::refuses_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");

    const auto variable = [](const char *member) {
        return QByteArray(R"({"variables": [{"name": "a", "type": "int"}, )") + member + "]}";
    };
    const auto step = [](const char *member) {
        return QByteArray(R"({"steps": [{"type": "list.clear"}, )") + member + "]}";
    };

    QTest::newRow("a long wrong token")
        << "{\"steps\": [" + QByteArray(10000000, 'f') + "]}"
        << "line 1, column 13: syntax error while parsing value - invalid literal; last read: '*ff'";
    QTest::newRow("a long text without its end")
        << "{\"steps\": [\"" + QByteArray(10000000, 'f')
        << "line 1, column 10000012: syntax error * missing closing quote; last read: '\"ff* ... (10000088 "
           "characters) ... *ff'";
    QTest::newRow("a long key") << "{\"" + QByteArray(10000000, 'k') + "x\": 1}"
                                << "there is no key \"kkk*kkkx\" (10000001 characters); there are *";
    QTest::newRow("syntax") << QByteArray("{\"steps\": [\n  }") << "line 2, column 3: syntax error*";
    QTest::newRow("no object") << QByteArray("[]") << "this is an array, it should be an object";
    QTest::newRow("unknown key")
        << QByteArray(R"({"step": []})")
        << R"(there is no key "step"; did you mean "steps"? There are "variables", "steps")";
    QTest::newRow("variables") << QByteArray(R"({"variables": {}})")
                               << "at /variables: this is an object, it should be an array";
    QTest::newRow("steps") << QByteArray(R"({"steps": 1})")
                           << "at /steps: this is an integer, it should be an array";

    QTest::newRow("variable") << variable("3")
                              << "at /variables/1: this is an integer, it should be an object";
    QTest::newRow("no name") << variable(R"({"type": "int"})")
                             << R"(at /variables/1: the key "name" is missing)";
    QTest::newRow("no type") << variable(R"({"name": "x"})")
                             << R"(at /variables/1: the key "type" is missing)";
    QTest::newRow("name is no text") << variable(R"({"name": 1, "type": "int"})")
                                     << "at /variables/1/name: this is an integer, it should be a string";
    QTest::newRow("type is no text") << variable(R"({"name": "x", "type": 1})")
                                     << "at /variables/1/type: this is an integer, it should be a string";
    QTest::newRow("key of a variable")
        << variable(R"({"name": "x", "type": "int", "kind": 1})")
        << R"(at /variables/1: there is no key "kind"; there are "name", "type", "value")";
    QTest::newRow("unknown type")
        << variable(R"({"name": "x", "type": "integer"})")
        << "at /variables/1/type: there is no variable type \"integer\"; there are \"int\", "
           "\"double\", \"string\", \"bool\", \"list\", \"table\"";
    QTest::newRow("empty name") << variable(R"({"name": "", "type": "int"})")
                                << "at /variables/1/name: a variable's name cannot be empty";
    QTest::newRow("mark alone") << variable(R"({"name": "$", "type": "int"})")
                                << "at /variables/1/name: a variable's name cannot be empty";
    QTest::newRow("two marks")
        << variable(R"({"name": "$$x", "type": "int"})")
        << R"(at /variables/1/name: the variable's name "$$x" has more than one "$" in front)";
    QTest::newRow("declared twice") << variable(R"({"name": "a", "type": "list"})")
                                    << R"(at /variables/1: the variable "a" is declared already)";
    QTest::newRow("declared with and without mark")
        << variable(R"({"name": "$a", "type": "list"})")
        << R"(at /variables/1: the variable "a" is declared already)";

    QTest::newRow("double for an int")
        << variable(R"({"name": "x", "type": "int", "value": 1.0})")
        << "at /variables/1/value: this is a double, a variable of type int takes an "
           "integer";
    QTest::newRow("text for an int") << variable(R"({"name": "x", "type": "int", "value": "1"})")
                                     << "this is a string, a variable of type int takes an integer";
    QTest::newRow("null for an int") << variable(R"({"name": "x", "type": "int", "value": null})")
                                     << "this is null, a variable of type int takes an integer";
    QTest::newRow("text for a double") << variable(R"({"name": "x", "type": "double", "value": "nan"})")
                                       << "this is a string, a variable of type double takes a number";
    QTest::newRow("integer between two doubles")
        << variable(R"({"name": "x", "type": "double", "value": -9007199254740993})")
        << "at /variables/1/value: no double is -9007199254740993, the nearest one is -9007199254740992";
    QTest::newRow("int for a string") << variable(R"({"name": "x", "type": "string", "value": 1})")
                                      << "this is an integer, a variable of type string takes a string";
    QTest::newRow("int for a bool") << variable(R"({"name": "x", "type": "bool", "value": 1})")
                                    << "this is an integer, a variable of type bool takes true or false";
    QTest::newRow("bool for a list") << variable(R"({"name": "x", "type": "list", "value": true})")
                                     << "this is true, a variable of type list takes an array";
    QTest::newRow("list for a table")
        << variable(R"({"name": "x", "type": "table", "value": [[], 1]})")
        << "this is an array, a variable of type table takes an array of arrays";
    QTest::newRow("object")
        << variable(R"({"name": "x", "type": "list", "value": [1, {"a": 1}]})")
        << "at /variables/1/value/1: an object stands for a value of a special type and has *";

    QTest::newRow("step") << step("[]") << "at /steps/1: this is an array, it should be an object";
    QTest::newRow("step without type") << step("{}") << R"(at /steps/1: the key "type" is missing)";
    QTest::newRow("step type is no text")
        << step(R"({"type": 1})") << "at /steps/1/type: this is an integer, it should be a string";
    QTest::newRow("unknown step type")
        << step(R"({"type": "list.shuffle"})")
        << R"(at /steps/1/type: there is no step type "list.shuffle"; there are "list.add", *, "fixture.brittle")";
    QTest::newRow("step that does not clone")
        << step(R"({"type": "fixture.unclonable"})")
        << "at /steps/1/type: the step cannot be created: its prototype gives no clone";
    QTest::newRow("unknown property")
        << step(R"({"type": "list.sort", "targetvar": "a"})")
        << R"(at /steps/1: there is no property "targetvar"; did you mean "targetVar"? There are "targetVar", "ascending")";
    QTest::newRow("property of every object")
        << step(R"({"type": "list.clear", "objectName": "a"})")
        << R"(there is no property "objectName"; there are "targetVar")";
    QTest::newRow("read-only property")
        << step(R"({"type": "fixture.settings", "fixed": 1})")
        << R"(there is no property "fixed"; there are "ratio", "size", "words", "anything", "color")";
    QTest::newRow("byte order mark in a key")
        << step("{\"type\": \"list.clear\", \"\xEF\xBB\xBF"
                "enabled\": true}")
        << "there is no property \"\\ufeffenabled\"; there are \"targetVar\"";
    QTest::newRow("no properties at all")
        << step(R"({"type": "fixture.throw", "a": 1})") << R"(there is no property "a"; there are none)";
    QTest::newRow("enabled") << step(R"({"type": "list.clear", "enabled": 1})")
                             << "at /steps/1/enabled: this is an integer, it should be true or false";
    QTest::newRow("int for a text")
        << step(R"({"type": "list.clear", "targetVar": 1})")
        << R"(at /steps/1/targetVar: this is an integer, the property "targetVar" takes a value of type QString)";
    QTest::newRow("text for an int") << step(R"({"type": "list.remove", "mode": "1"})")
                                     << R"(this is a string, the property "mode" takes a value of type int)";
    QTest::newRow("integer between two doubles for a double")
        << step(R"({"type": "fixture.settings", "ratio": 9007199254740993})")
        << R"(this is a 64-bit integer, the property "ratio" takes a value of type double)";
    QTest::newRow("64 bits for an int")
        << step(R"({"type": "list.remove", "mode": 3000000000})")
        << R"(this is a 64-bit integer, the property "mode" takes a value of type int)";
    QTest::newRow("null for a text")
        << step(R"({"type": "list.clear", "targetVar": null})")
        << R"(this is null, the property "targetVar" takes a value of type QString)";
    QTest::newRow("int for a bool")
        << step(R"({"type": "list.sort", "ascending": 1})")
        << R"(this is an integer, the property "ascending" takes a value of type bool)";
    QTest::newRow("text for a double")
        << step(R"({"type": "fixture.settings", "ratio": "1"})")
        << R"(this is a string, the property "ratio" takes a value of type double)";
    QTest::newRow("unknown enumerator")
        << step(R"({"type": "fixture.settings", "color": "Blue"})")
        << R"(this is a string, the property "color" takes a value of type Color)";
}

void TestScriptJson::refuses()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const Result<Script> read = readScript(json, m_catalogue);
    QVERIFY(!read);
    QVERIFY2(isLike(errorOf(read), '*' + error), qPrintable(errorOf(read)));
}

void TestScriptJson::refusesFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no file") << "/no/such/script.json";
    QTest::newRow("a folder") << QDir::tempPath();
    QTest::newRow("no script") << TestPaths::listPlugin();
}

void TestScriptJson::refusesFiles()
{
    QFETCH(QString, file);
    const Result<Script> read = readScriptFile(file, m_catalogue);
    QVERIFY(!read);
    QVERIFY2(errorOf(read).startsWith(file + ": "), qPrintable(errorOf(read)));
    QVERIFY2(errorOf(read).size() > file.size() + 10, qPrintable(errorOf(read)));
}

void TestScriptJson::refusesDeepNesting()
{
    for (const int depth : {513, 10000, 1000000}) {
        const QByteArray value = QByteArray(depth, '[') + QByteArray(depth, ']');
        const Result<Script> read = readScript(
            R"({"variables": [{"name": "x", "type": "list", "value": )" + value + "}]}", m_catalogue);
        QVERIFY2(errorOf(read).contains("nested deeper than 512 levels"), qPrintable(errorOf(read)));
    }
}

void TestScriptJson::writesWhatItReads()
{
    const QByteArray json = R"({
  "variables": [
    {"name": "names", "type": "list", "value": ["b", 3, 1.0, true, null, [1, {"$double": "nan"}]]},
    {"name": "rows", "type": "table", "value": [[1], {"$QStringList": ["a"]}]},
    {"name": "odd", "type": "int", "value": {"$QString": "a"}},
    {"name": "map", "type": "undeclared", "value": {"$QVariantMap": [["a", 1]]}}
  ],
  "steps": [
    {"type": "list.remove", "enabled": false, "targetVar": "$names", "mode": 1, "index": "", "value": "a\nb"},
    {"type": "list.sort", "targetVar": {"$QString": [55296]}, "ascending": false},
    {"type": "fixture.settings", "ratio": 0.5, "size": {"$qlonglong": 7}, "words": {"$QStringList": []}, "anything": null, "color": "Green"}
  ]
}
)";
    const Result<Script> read = readScript(json, m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    const Result<QByteArray> written = writeScript(*read);
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(*written, json);

    const Result<QByteArray> empty = writeScript(Script());
    QCOMPARE(*empty, QByteArray("{\n  \"variables\": [],\n  \"steps\": []\n}\n"));
    QVERIFY(readScript(*empty, m_catalogue));
}

// In a record a text that was never set differs from one that was set to nothing.
void TestScriptJson::keepsRecordsOfNewSteps()
{
    const QStringList types = m_catalogue.typeIds().filter("list.");
    QCOMPARE(types.size(), 10);
    for (const QString &type : types) {
        Script script;
        script.steps.resize(1);
        script.steps[0].operation.reset(m_catalogue.create(type, nullptr));
        const Result<Script> read = readScript(writeScript(script).value_or(""), m_catalogue);
        QVERIFY2(read, qPrintable(errorOf(read)));
        QCOMPARE(recordOf(*read->steps[0].operation).toHex(), recordOf(*script.steps[0].operation).toHex());
    }
}

void TestScriptJson::keepsRecordsWithEmptyTexts()
{
    Script script;
    script.steps.resize(1);
    script.steps[0].operation.reset(m_catalogue.create("list.add", nullptr));
    Operation &step = *script.steps[0].operation;
    step.setProperty("targetVar", "");
    step.setProperty("value", QString());
    const QByteArray json = writeScript(script).value_or(QByteArray());
    QVERIFY2(json.contains(R"("targetVar": {"$QString": ""}, "value": "")"), json.constData());
    const Result<Script> read = readScript(json, m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(recordOf(*read->steps[0].operation).toHex(), recordOf(step).toHex());
}

void TestScriptJson::writesNamesThatAScriptCannotDeclare()
{
    QByteArray json;
    JsonWriter writer(json);
    QVERIFY(writeVariables(writer.openObject().key("variables"), {{"$x", VarType::Int, 1}}));
    writer.close();
    const Result<Script> read = readScript(json, m_catalogue);
    QCOMPARE(errorOf(read),
             QString(R"(at /variables/0/name: the variable's name "$$x" has more than one "$" in front)"));
}

void TestScriptJson::refusesToWriteDeepNesting()
{
    QVariant value = QVariantList();
    for (int i = 0; i < 10000; ++i)
        value = QVariantList{value};
    Script script;
    script.variables.push_back({"deep", VarType::List, value});
    QCOMPARE(errorOf(writeScript(script)),
             QString("the value of \"deep\" is nested deeper than 512 levels of JSON"));

    script.variables.clear();
    script.steps.resize(1);
    script.steps[0].operation.reset(m_catalogue.create("fixture.settings", nullptr));
    script.steps[0].operation->setProperty("anything", value);
    QCOMPARE(errorOf(writeScript(script)),
             QString("the property \"anything\" is nested deeper than 512 levels of JSON"));
}

void TestScriptJson::declaresVariables()
{
    const Result<Script> read = readScript(R"({"variables": [
        {"name": "$b", "type": "table", "value": [[1]]},
        {"name": "a", "type": "int", "value": {"$QString": "x"}},
        {"name": "map", "type": "undeclared", "value": {"$QVariantMap": []}},
        {"name": "nothing", "type": "undeclared"}]})",
                                           m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    Script script;
    script.variables = read->variables;
    script.variables.push_back({"$x", VarType::Int, 1});
    VariableScope scope;
    declareVariables(script, scope);
    QCOMPARE(scope.names(), (QStringList{"b", "a", "map", "nothing", "$x"}));
    QVERIFY(scope.typeOf("b") == VarType::Table);
    QCOMPARE(scope.get("b"), QVariant(QVariantList{QVariant(QVariantList{1})}));
    QVERIFY(scope.typeOf("a") == VarType::Int);
    QCOMPARE(scope.get("a"), QVariant("x"));
    QVERIFY(scope.typeOf("map") == VarType::Undeclared);
    QCOMPARE(scope.get("map"), QVariant(QVariantMap()));
    QVERIFY(scope.typeOf("nothing") == VarType::Undeclared);
    QVERIFY(!scope.get("nothing").isValid());
}

// Five seconds of the processor at most, or a minute where names are found by their hash value.
void TestScriptJson::collidingNamesCostAsOthersDo()
{
    const QStringList names = CollidingNames::make(40000);
    if (names.size() < 40000)
        QSKIP("How this Qt computes the hash of a text is not known here.");
    QByteArray variables;
    for (const QString &name : names)
        variables += R"({"name": ")" + name.toUtf8() + R"(", "type": "int"},)";
    variables.chop(1);
    const std::clock_t start = std::clock();
    const Result<Script> read = readScript(R"({"variables": [)" + variables + "]}", m_catalogue);
    QVERIFY2(read, qPrintable(errorOf(read)));
    QCOMPARE(read->variables.size(), std::size_t(names.size()));
    QVERIFY((std::clock() - start) / CLOCKS_PER_SEC < 5);
}

QTEST_GUILESS_MAIN(TestScriptJson)
#include "tst_scriptjson.moc"
