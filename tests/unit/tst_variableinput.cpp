#include "host/scripts/VariableInput.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/IsLike.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(VarType)

class TestVariableInput : public QObject
{
    Q_OBJECT

private slots:
    void assignsDeclared_data();
    void assignsDeclared();
    void refusesDeclared_data();
    void refusesDeclared();
    void addsNew_data();
    void addsNew();
    void refusesNew_data();
    void refusesNew();
    void assignsLists();
    void refusesLists();
    void assignsFiles();
};

void TestVariableInput::assignsDeclared_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << VarType::Int << "5" << QVariant(5);
    QTest::newRow("int with blanks") << VarType::Int << " -5 " << QVariant(-5);
    QTest::newRow("double") << VarType::Double << "5" << QVariant(5.0);
    QTest::newRow("nan") << VarType::Double << "{\"$double\": \"inf\"}" << QVariant(qInf());
    QTest::newRow("text") << VarType::String << "abc" << QVariant("abc");
    QTest::newRow("empty text") << VarType::String << "" << QVariant("");
    QTest::newRow("text that looks like a number") << VarType::String << "5" << QVariant("5");
    QTest::newRow("text that looks like JSON") << VarType::String << "\"5\"" << QVariant("\"5\"");
    QTest::newRow("bool") << VarType::Bool << "false" << QVariant(false);
    QTest::newRow("list") << VarType::List << "[1, \"a\"]" << QVariant(QVariantList{1, "a"});
    QTest::newRow("table") << VarType::Table << "[[1]]" << QVariant(QVariantList{QVariant(QVariantList{1})});
}

void TestVariableInput::assignsDeclared()
{
    QFETCH(VarType, type);
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    for (const char *name : {"x", "$x"}) {
        Script script;
        script.variables = {{"w", VarType::Int, 1}, {"x", type, QVariant()}};
        QCOMPARE(errorOf(assignText(script, name, text)), QString());
        QCOMPARE(int(script.variables.size()), 2);
        QVERIFY(script.variables[1].type == type);
        QCOMPARE(script.variables[1].value.userType(), value.userType());
        QCOMPARE(script.variables[1].value, value);
    }
}

void TestVariableInput::refusesDeclared_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("text for an int") << VarType::Int << "abc"
                                     << "\"abc\" is no JSON value; a variable of type int takes an integer";
    QTest::newRow("nothing for an int") << VarType::Int << ""
                                        << "\"\" is no JSON value; a variable of type int takes an integer";
    QTest::newRow("double for an int") << VarType::Int << "1.0"
                                       << "this is a double, a variable of type int takes an integer";
    QTest::newRow("yes for a bool")
        << VarType::Bool << "yes"
        << "\"yes\" is no JSON value; a variable of type bool takes true or false";
    QTest::newRow("1 for a bool") << VarType::Bool << "1"
                                  << "this is an integer, a variable of type bool takes true or false";
    QTest::newRow("object in a list") << VarType::List << "[1, {}]"
                                      << "at /1: an object stands for a value of a special type and has *";
    QTest::newRow("list for a table")
        << VarType::Table << "[1]"
        << "this is an array, a variable of type table takes an array of arrays";
    QTest::newRow("deep nesting") << VarType::List
                                  << QString(10000, '[')
            + QString(10000,
                      ']') << "line 1, column 513: arrays and objects are nested deeper than 512 levels";
    QTest::newRow("long integer") << VarType::Int << "18446744073709551616"
                                  << "line 1, column 20: the integer \"18446744073709551616\" does not fit *";
}

void TestVariableInput::refusesDeclared()
{
    QFETCH(VarType, type);
    QFETCH(QString, text);
    QFETCH(QString, error);
    Script script;
    script.variables = {{"x", type, "as it was"}};
    const QString actual = errorOf(assignText(script, "x", text));
    QVERIFY2(isLike(actual, error), qPrintable(actual));
    QCOMPARE(script.variables[0].value, QVariant("as it was"));
}

void TestVariableInput::addsNew_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << "5" << VarType::Int << QVariant(5);
    QTest::newRow("64 bits") << "3000000000" << VarType::Int << QVariant(3000000000LL);
    QTest::newRow("double") << "5.0" << VarType::Double << QVariant(5.0);
    QTest::newRow("bool") << "true" << VarType::Bool << QVariant(true);
    QTest::newRow("list") << "[1]" << VarType::List << QVariant(QVariantList{1});
    QTest::newRow("nan") << "{\"$double\": \"-inf\"}" << VarType::Double << QVariant(-qInf());
    QTest::newRow("text in quotes") << "\"5\"" << VarType::String << QVariant("5");
    QTest::newRow("text") << "abc" << VarType::String << QVariant("abc");
    QTest::newRow("empty text") << "" << VarType::String << QVariant("");
    QTest::newRow("no JSON") << "[1" << VarType::String << QVariant("[1");
}

void TestVariableInput::addsNew()
{
    QFETCH(QString, text);
    QFETCH(VarType, type);
    QFETCH(QVariant, value);
    Script script;
    script.variables = {{"w", VarType::Int, 1}};
    QCOMPARE(errorOf(assignText(script, "$x", text)), QString());
    QCOMPARE(int(script.variables.size()), 2);
    QCOMPARE(script.variables[1].name, QString("x"));
    QVERIFY(script.variables[1].type == type);
    QCOMPARE(script.variables[1].value.userType(), value.userType());
    QCOMPARE(script.variables[1].value, value);
}

void TestVariableInput::refusesNew_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty name") << ""
                                << "1"
                                << "a variable's name cannot be empty";
    QTest::newRow("two marks") << "$$x"
                               << "1"
                               << "the variable's name \"$$x\" has more than one \"$\" in front";
    QTest::newRow("null") << "x"
                          << "null"
                          << "\"null\" gives a new variable no type; declare it in the script";
    QTest::newRow("map") << "x"
                         << "{\"$QVariantMap\": []}"
                         << "gives a new variable no type; declare it in the script";
    QTest::newRow("object") << "x"
                            << "{\"a\": 1}"
                            << "an object stands for a value of a special type and has *";
    QTest::newRow("deep nesting") << "x"
                                  << QString(10000, '[')
            + QString(10000,
                      ']') << "line 1, column 513: arrays and objects are nested deeper than 512 levels";
    QTest::newRow("long integer") << "x"
                                  << "18446744073709551616"
                                  << "line 1, column 20: the integer \"18446744073709551616\" does not fit *";
    QTest::newRow("key twice") << "x"
                               << "{\"a\": 1, \"a\": 2}"
                               << "the object has the key \"a\" already";
}

void TestVariableInput::refusesNew()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, error);
    Script script;
    const QString actual = errorOf(assignText(script, name, text));
    QVERIFY2(isLike(actual, '*' + error), qPrintable(actual));
    QVERIFY(script.variables.empty());
}

void TestVariableInput::assignsLists()
{
    Script script;
    script.variables = {{"x", VarType::List, QVariantList{1}}};
    QCOMPARE(errorOf(assignList(script, "$x", {"a", "b"})), QString());
    QCOMPARE(errorOf(assignList(script, "$y", {"c"})), QString());
    QCOMPARE(int(script.variables.size()), 2);
    QCOMPARE(script.variables[0].value, QVariant(QVariantList{"a", "b"}));
    QCOMPARE(script.variables[1].name, QString("y"));
    QVERIFY(script.variables[1].type == VarType::List);
    QCOMPARE(script.variables[1].value, QVariant(QVariantList{"c"}));
}

void TestVariableInput::refusesLists()
{
    Script script;
    script.variables = {{"x", VarType::Table, QVariantList()}};
    QCOMPARE(errorOf(assignList(script, "x", {"a"})),
             QString("the script declares \"x\" with the type table, not as a list"));
    QCOMPARE(errorOf(assignList(script, "$", {"a"})), QString("a variable's name cannot be empty"));
    QCOMPARE(errorOf(assignList(script, "$$x", {"a"})),
             QString("the variable's name \"$$x\" has more than one \"$\" in front"));
    QCOMPARE(int(script.variables.size()), 1);
    QCOMPARE(script.variables[0].value, QVariant(QVariantList()));
}

void TestVariableInput::assignsFiles()
{
    const QTemporaryDir folder;
    const auto file = [&folder](const QString &name, const QByteArray &content) {
        QFile made(folder.filePath(name));
        return made.open(QIODevice::WriteOnly) && made.write(content) == content.size() ? made.fileName()
                                                                                        : QString();
    };
    const QVariantList table{QVariant(QVariantList{"a", "b"}), QVariant(QVariantList{"c"})};
    Script script;
    script.variables = {{"l", VarType::List, QVariantList{1}}, {"t", VarType::Table, QVariantList()}};
    for (const char *name : {"$l", "new"})
        QCOMPARE(errorOf(assignFile(script, name, file("a.csv", "a,b\nc\n"), "as=cells")), QString());
    QCOMPARE(errorOf(assignFile(script, "t", file("a.csv", "a,b\nc\n"))), QString());
    QCOMPARE(script.variables[0].value, QVariant(QVariantList{"a", "b", "c"}));
    QCOMPARE(script.variables[1].value, QVariant(table));
    QCOMPARE(int(script.variables.size()), 3);
    QVERIFY(script.variables[2].type == VarType::List);
    QCOMPARE(script.variables[2].value, QVariant(QVariantList{"a", "b", "c"}));
    QCOMPARE(errorOf(assignFile(script, "l", file("a.txt", "a,b\nc\n"))), QString());
    QCOMPARE(script.variables[0].value, QVariant(QVariantList{"a,b", "c"}));

    QCOMPARE(errorOf(assignFile(script, "l", file("a.txt", "d\n"), "append")), QString());
    QCOMPARE(script.variables[0].value, QVariant(QVariantList{"a,b", "c", "d"}));
    QCOMPARE(errorOf(assignFile(script, "t", file("a.txt", "e\n"), "append,as=lines")), QString());
    QCOMPARE(script.variables[1].value, QVariant(table + QVariantList{QVariant(QVariantList{"e"})}));
    script.variables[1].value = table;

    QVERIFY(!assignFile(script, "l", file("a.csv", "a,b\n")));
    QVERIFY(!assignFile(script, "t", file("broken.csv", "\"a")));
    QVERIFY(!assignFile(script, "t", folder.filePath("a.txt")));
    QVERIFY(!assignFile(script, "$$x", folder.filePath("a.csv")));
    QCOMPARE(script.variables[1].value, QVariant(table));
    QCOMPARE(int(script.variables.size()), 3);
}

QTEST_GUILESS_MAIN(TestVariableInput)
#include "tst_variableinput.moc"
