#include "tests/support/StepctlFolder.h"
#include "tests/support/TestPaths.h"

#include <QtTest>

#include <QJsonDocument>

namespace
{
const char sortScript[] = R"({
    "variables": [{"name": "names", "type": "list", "value": ["b", "a"]}],
    "steps": [{"type": "list.sort", "targetVar": "names"}]
})";

const char skippingScript[] = R"({"steps": [{"type": "list.sort", "targetVar": "nowhere"}]})";
} // namespace

class TestStepctlRun : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void explainsItself_data();
    void explainsItself();
    void runsAScript();
    void runsAScriptAsJson();
    void showsVariablesBefore();
    void tellsOfSkippedSteps();
    void tellsOfDisabledSteps();
    void takesLists();
    void takesCsvFiles();
    void takesAListFromStandardInput();
    void takesValues();
    void outputFeedsBack();
    void keepsOddValues();
    void escapesTextForTheTerminal();
    void showsWhatDeceives();
    void badUsage_data();
    void badUsage();
    void badScripts_data();
    void badScripts();
    void refusedPlugins_data();
    void refusedPlugins();
    void findsPluginsOnThePath();
    void passesOverWhatItCannotUse();
    void addsAPluginPath();
    void aStepThatThrows();
    void aSetterThatThrows();
    void writesAFile();
    void replacesAFileWhole();
    void leavesTheFileAloneOnFailure_data();
    void leavesTheFileAloneOnFailure();
    void refusesAnOutputThatCannotBeWritten();
    void showsNoProgressWithoutATerminal();
    void speaksUtf8InAnyLocale();
    void runsALongScriptOnALongList();

private:
    Run run(const QStringList &arguments, const QByteArray &input = QByteArray())
    {
        return m_folder->run(arguments, input);
    }
    QString file(const QString &name, const QByteArray &content)
    {
        return m_folder->write(name, content);
    }
    QByteArray contentOf(const QString &name)
    {
        return m_folder->contentOf(name);
    }

    std::unique_ptr<StepctlFolder> m_folder;
};

void TestStepctlRun::init()
{
    m_folder = std::make_unique<StepctlFolder>();
}

void TestStepctlRun::explainsItself_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");
    QTest::newRow("--help") << QStringList{"--help"} << "stepctl run clean.json";
    QTest::newRow("palette --help") << QStringList{
        "palette", "--help"} << "  stepctl palette --plugin ./libListOperPlugin.so --format markdown\n";
    QTest::newRow("describe --help") << QStringList{"describe", "--help"} << "  stepctl describe list.sort\n";
    QTest::newRow("run --help") << QStringList{"run", "--help"}
                                << "stepctl run clean.json --list names=@names.txt";
    QTest::newRow("--version") << QStringList{"--version"} << "stepctl 1.";
}

void TestStepctlRun::explainsItself()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    const Run result = run(arguments);
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(text), qPrintable(result.output));
    QCOMPARE(result.errors, QString());
}

void TestStepctlRun::runsAScript()
{
    const Run result = run({"run", file("sort.json", sortScript)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output,
             QString::fromUtf8("Steps\n"
                               "  1  wrote     列表排序: $names (asc)\n"
                               "\n"
                               "Variables\n"
                               "  list    names = [\"a\", \"b\"]\n"
                               "\n"
                               "1 step: 1 wrote\n"));
    QCOMPARE(result.status, 0);
}

void TestStepctlRun::runsAScriptAsJson()
{
    const Run result = run({"run", file("sort.json", sortScript), "--format", "json"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, QString::fromUtf8(R"json({
  "variables": [
    {"name": "names", "type": "list", "value": ["a", "b"]}
  ],
  "steps": [
    {"type": "list.sort", "summary": "列表排序: $names (asc)", "outcome": "wrote", "warnings": []}
  ]
}
)json"));
    QCOMPARE(result.status, 0);
}

void TestStepctlRun::showsVariablesBefore()
{
    const Run result = run({"run", file("sort.json", sortScript), "--before"});
    QVERIFY(result.output.startsWith("Variables before\n  list    names = [\"b\", \"a\"]\n\nSteps\n"));
    QVERIFY(result.output.contains("\nVariables after\n  list    names = [\"a\", \"b\"]\n"));
}

void TestStepctlRun::tellsOfSkippedSteps()
{
    const Run result = run({"run", file("skip.json", skippingScript)});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.startsWith(
                 QString::fromUtf8("Steps\n"
                                   "  1  skipped   列表排序: $nowhere (asc)\n"
                                   "               [ListOp] 变量 \"nowhere\" 不是列表类型，已跳过\n")),
             qPrintable(result.output));
    QVERIFY(result.output.endsWith("\n1 step: 1 skipped\n"));

    // A step without a name says nothing, and is skipped all the same.
    const Run silent = run({"run", file("silent.json", R"({"steps": [{"type": "list.clear"}]})")});
    QCOMPARE(silent.status, 1);
    QVERIFY2(silent.output.contains("1  skipped"), qPrintable(silent.output));
}

void TestStepctlRun::tellsOfDisabledSteps()
{
    const Run result =
        run({"run", file("off.json", R"({"variables": [{"name": "l", "type": "list", "value": [1]}],
        "steps": [{"type": "list.clear", "targetVar": "l", "enabled": false}]})")});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains("  1  disabled  "), qPrintable(result.output));
    QVERIFY2(result.output.contains("l = [1]\n"), qPrintable(result.output));
}

void TestStepctlRun::takesLists()
{
    const QString script =
        file("lists.json", R"({"variables": [{"name": "a", "type": "list", "value": ["gone"]}]})");
    file("a.txt",
         "\xEF\xBB\xBF"
         "李雷\r\n\r\n韩梅梅\r\n");
    file("b.txt", "1");
    const Run result = run({"run", script, "--list", "a=@a.txt", "--list", "$b=@b.txt"});
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains(QString::fromUtf8("  list    a = [\"李雷\", \"\", \"韩梅梅\"]\n"
                                                      "  list    b = [\"1\"]\n")),
             qPrintable(result.output));
    QCOMPARE(result.status, 0);
}

void TestStepctlRun::takesCsvFiles()
{
    const QString script = file("csv.json", R"({"variables": [
        {"name": "a", "type": "list"}, {"name": "t", "type": "table", "value": [["gone"]]}]})");
    file("a.csv",
         "\xEF\xBB\xBF"
         "李雷,\"b,c\"\r\n007\r\n");
    file("B.CSV", "\"two\nlines\"");
    const Run result = run({"run", script, "--list", "a=as=cells,types=auto@a.csv", "--list", "$t=@a.csv",
                            "--list", "new=@B.CSV"});
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains(QString::fromUtf8("  list    a = [\"李雷\", \"b,c\", \"007\"]\n"
                                                      "  table   t = [[\"李雷\", \"b,c\"], [\"007\"]]\n"
                                                      "  list    new = [\"two\\nlines\"]\n")),
             qPrintable(result.output));
    QCOMPARE(result.status, 0);
}

void TestStepctlRun::takesAListFromStandardInput()
{
    const Run result = run({"run", file("sort.json", sortScript), "--list", "names=@-"}, "z\ny\nx\n");
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains("names = [\"x\", \"y\", \"z\"]\n"), qPrintable(result.output));
}

void TestStepctlRun::takesValues()
{
    const QString script = file("values.json", R"({"variables": [
        {"name": "n", "type": "int"}, {"name": "s", "type": "string"}, {"name": "t", "type": "table"}]})");
    const Run result = run({"run", script, "--set", "n=-5", "--set", "$s=5=five", "--set", "t=[[1]]", "--set",
                            "new=[true]", "--set", "word=abc"});
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains("  int     n = -5\n"
                                    "  string  s = \"5=five\"\n"
                                    "  table   t = [[1]]\n"
                                    "  list    new = [true]\n"
                                    "  string  word = \"abc\"\n"),
             qPrintable(result.output));
    QCOMPARE(result.status, 0);
}

void TestStepctlRun::outputFeedsBack()
{
    const QByteArray variables = R"("variables": [
    {"name": "a", "type": "list", "value": [1, 1.0, -0.0, 1e+22, 5e-324, 3000000000, {"$qlonglong": 1}, 18446744073709551615, null, true, "\u0000\"\\列", {"$QString": [97, 55296]}, {"$double": "nan"}, {"$double": "-inf"}, [[], [1]]]},
    {"name": "t", "type": "table", "value": [[1, "a"], []]},
    {"name": "d", "type": "double", "value": 0.1},
    {"name": "s", "type": "string", "value": ""}
  ])";
    const Run first = run({"run", file("first.json", "{" + variables + "}"), "--format", "json"});
    QCOMPARE(first.errors, QString());
    QCOMPARE(first.output, QString::fromUtf8("{\n  " + variables + ",\n  \"steps\": []\n}\n"));
    const Run second = run({"run", file("second.json", first.output.toUtf8()), "--format", "json"});
    QCOMPARE(second.errors, QString());
    QCOMPARE(second.output, first.output);
}

void TestStepctlRun::keepsOddValues()
{
    const QString script = file("odd.json", R"({"steps": [{"type": "fixture.write"}]})");
    const QStringList plugin = {"--plugin", TestPaths::fixture("HostileSteps")};
    const Run result = run(QStringList{"run", script, "--format", "json"} + plugin);
    QCOMPARE(result.status, 0);
    const QString variables = R"("variables": [
    {"name": "texts", "type": "list", "value": {"$QStringList": ["a", "b"]}},
    {"name": "bytes", "type": "undeclared", "value": {"$QByteArray": "AP8="}},
    {"name": "map", "type": "undeclared", "value": {"$QVariantMap": [["key", 1]]}},
    {"name": "surrogate", "type": "string", "value": {"$QString": [55296]}},
    {"name": "object", "type": "undeclared", "value": {"$opaque": "QObject*"}},
    {"name": "nothing", "type": "undeclared", "value": null}
  ])";
    QVERIFY2(result.output.contains(variables), qPrintable(result.output));
    const Run again = run(QStringList{"run", file("again.json", "{" + variables.toUtf8() + "}")} + plugin);
    QCOMPARE(again.status, 2);
    QVERIFY2(again.errors.contains("at /variables/4/value: a value of this type was not written"),
             qPrintable(again.errors));
}

void TestStepctlRun::escapesTextForTheTerminal()
{
    const QString script = file("escape.json", R"({"steps": [{"type": "fixture.escape"}]})");
    const Run result = run({"run", script, "--plugin", TestPaths::fixture("HostileSteps")});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.output.contains("  1  skipped   line\\nbreak\\u001b[31m\n"
                                    "               first\\nsecond\\u001b[2J\n"),
             qPrintable(result.output));
}

void TestStepctlRun::showsWhatDeceives()
{
    const QString script = file("script.json", R"({
        "variables": [{"name": "a\u202e", "type": "string", "value": "b\u2066\u200b"}],
        "steps": [{"type": "fixture.deceive"}]})");
    const QStringList plugin{"--plugin", TestPaths::fixture("RudeSteps")};
    const Run text = run(QStringList{"run", script} + plugin);
    QVERIFY2(text.output.contains("  skipped   a\\u202eb\n"), qPrintable(text.output));
    QVERIFY2(text.output.contains(R"(string  a\u202e = "b\u2066\u200b")"), qPrintable(text.output));

    const Run json = run(QStringList{"run", script, "--format", "json"} + plugin);
    QVERIFY2(json.output.contains(QString::fromUtf8("\"summary\": \"a\u202eb\"")), qPrintable(json.output));

    for (const QStringList &arguments : {QStringList{"run", script, "--fo\x1b[31m\u202e"},
                                         QStringList{"describe", "x", "--format", "\x1b[31m\u202e"},
                                         QStringList{"describe", "\x1b[31m\u202e"}}) {
        const Run wrong = run(arguments);
        QCOMPARE(wrong.status, 2);
        QVERIFY2(wrong.errors.contains("\\u001b[31m\\u202e"), qPrintable(wrong.errors));
        QVERIFY(!wrong.errors.contains(QChar(0x1b)) && !wrong.errors.contains(QChar(0x202e)));
    }
    const Run longer = run({"run", script, "--x" + QString(100000, 'y') + 'z'});
    QCOMPARE(longer.status, 2);
    QVERIFY(longer.errors.size() < 3000);
}

void TestStepctlRun::badUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << QStringList{} << "a subcommand is required";
    QTest::newRow("unknown subcommand") << QStringList{"fly"} << "fly";
    QTest::newRow("no script") << QStringList{"run"} << "script";
    QTest::newRow("unknown option") << QStringList{"run", "sort.json", "--fast"} << "--fast";
    QTest::newRow("two scripts") << QStringList{"run", "sort.json", "sort.json"} << "sort.json";
    QTest::newRow("unknown format") << QStringList{"run", "sort.json", "--format", "xml"} << "xml";
    QTest::newRow("list without =") << QStringList{"run", "sort.json", "--list", "names"}
                                    << "--list names: this should be NAME=@FILE";
    QTest::newRow("list without @") << QStringList{
        "run", "sort.json", "--list",
        "names=n.txt"} << "--list names=n.txt: this should be NAME=@FILE, with the mark @ before the file";
    QTest::newRow("list without name") << QStringList{"run", "sort.json", "--list", "=@n.txt"}
                                       << "--list =@n.txt: a variable's name cannot be empty";
    QTest::newRow("list without file")
        << QStringList{"run", "sort.json", "--list", "names=@"} << "--list names=@: the file has no name";
    QTest::newRow("list of a missing file") << QStringList{"run", "sort.json", "--list", "names=@missing.txt"}
                                            << "--list names=@missing.txt: missing.txt: ";
    QTest::newRow("list that is not UTF-8") << QStringList{"run", "sort.json", "--list", "names=@latin1.txt"}
                                            << "--list names=@latin1.txt: latin1.txt: line 2, character 4 is "
                                               "not UTF-8 text; it looks like Latin-1: ";
    QTest::newRow("list for another type")
        << QStringList{"run", "int.json", "--list", "n=@n.txt"}
        << "--list n=@n.txt: the script declares \"n\" with the type int, not as a list";
    QTest::newRow("table from lines")
        << QStringList{"run", "int.json", "--list", "t=@n.txt"}
        << "--list t=@n.txt: the script declares \"t\" with the type table, not as a list";
    QTest::newRow("broken CSV") << QStringList{"run", "sort.json", "--list", "names=@broken.csv"}
                                << "--list names=@broken.csv: broken.csv: line 2, column 1: the quotation "
                                   "mark that opens here is never closed";
    QTest::newRow("CSV that is not UTF-8")
        << QStringList{"run", "int.json", "--list", "t=@latin1.csv"}
        << "--list t=@latin1.csv: latin1.csv: line 2, character 4 is not UTF-8 text; ";
    QTest::newRow("CSV with two columns")
        << QStringList{"run", "sort.json", "--list", "names=@two.csv"}
        << "--list names=@two.csv: two.csv: row 1 has 2 columns; choose what a list takes of them";
    QTest::newRow("unknown option of a list")
        << QStringList{"run", "sort.json", "--list", "names=flat@two.csv"}
        << "--list names=flat@two.csv: there is no option \"flat\"; ";
    QTest::newRow("standard input twice")
        << QStringList{"run", "sort.json", "--list", "a=@-", "--list", "b=@-"}
        << "--list b=@-: standard input can be read only once";
    QTest::newRow("given twice") << QStringList{"run", "sort.json", "--list", "a=@n.txt", "--set", "$a=1"}
                                 << "--set $a=1: the variable \"a\" is given twice";
    QTest::newRow("value without =") << QStringList{"run", "sort.json", "--set", "n"}
                                     << "--set n: this should be NAME=VALUE";
    QTest::newRow("value of the wrong type")
        << QStringList{"run", "int.json", "--set", "n=abc"}
        << "--set n=abc: \"abc\" is no JSON value; a variable of type int takes "
           "an integer";
    QTest::newRow("deeply nested value")
        << QStringList{"run", "sort.json", "--set", "a=" + QString(10000, '[') + QString(10000, ']')}
        << "stepctl: --set a=" + QString(92, '[')
            + "...: line 1, column 513: arrays and objects are nested deeper than 512 levels\n";
    QTest::newRow("line break in a name")
        << QStringList{"run", "no\nsuch.json"} << "stepctl: no\\nsuch.json: ";
    QTest::newRow("two marks") << QStringList{"run", "sort.json", "--set", "$$a=1"}
                               << "--set $$a=1: the variable's name \"$$a\" has more than one \"$\" in front";
    QTest::newRow("two marks of a list")
        << QStringList{"run", "sort.json", "--list", "$$a=@sort.json"}
        << "--list $$a=@sort.json: the variable's name \"$$a\" has more than one \"$\" in front";
    for (const QString number : {"nan", "-nan", "inf", "-1", "0", "1e9", "0x10", "1s", ""}) {
        QTest::newRow(qPrintable("time limit \"" + number + '"'))
            << QStringList{"run", "sort.json", "--time-limit", number} << "--time-limit: ";
        QTest::newRow(qPrintable("time limit of checks \"" + number + '"'))
            << QStringList{"check", "sort.json", "--time-limit", number} << "--time-limit: ";
    }
    for (const QString size : {"nan", "inf", "-1", "0", "", "abc", "M", "15M", "16777215", "1.5G", "1e9",
                               "0x1000000", "+512M", "512 M", "512MB", "99999999999999999999", "9000000T"}) {
        QTest::newRow(qPrintable("memory limit \"" + size + '"'))
            << QStringList{"run", "sort.json", "--memory-limit", size}
            << "--memory-limit: not a size of 16 MiB or more, such as 512M or 2G: " + size;
    }
    for (const QString number : {"nan", "inf", "-1", "0", "1.5", "0x10", "4294967297", ""}) {
        QTest::newRow(qPrintable("jobs \"" + number + '"'))
            << QStringList{"check", "sort.json", "--jobs", number} << "--jobs: ";
    }
}

void TestStepctlRun::badUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    file("sort.json", sortScript);
    file("int.json", R"({"variables": [{"name": "n", "type": "int"}, {"name": "t", "type": "table"}]})");
    file("two.csv", "a,b\n");
    file("broken.csv", "a\n\"b\n");
    file("latin1.csv", "a\ncaf\xe9\n");
    file("n.txt", "a\n");
    file("latin1.txt", "a\ncaf\xe9\n");
    const Run result = run(arguments);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(error), qPrintable(result.errors));
}

void TestStepctlRun::badScripts_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("error");
    QTest::newRow("syntax") << QByteArray("{\n  \"steps\": [,]\n}")
                            << "stepctl: script.json: line 2, column 13: ";
    QTest::newRow("unknown step")
        << QByteArray(R"({"steps": [{"type": "list.shuffle"}]})")
        << "stepctl: script.json: at /steps/0/type: there is no step type \"list.shuffle\"";
    // The first step could run, but a script with a mistake runs none.
    QTest::newRow("unknown property")
        << QByteArray(R"({"variables": [{"name": "l", "type": "list", "value": [1]}],
                          "steps": [{"type": "list.clear", "targetVar": "l"}, {"type": "list.clear", "target": "l"}]})")
        << "stepctl: script.json: at /steps/1: there is no property \"target\"; did you mean "
           "\"targetVar\"? There are \"targetVar\"";
    QTest::newRow("deeply nested") << QByteArray(100000, '[') << "nested deeper than 512 levels";
}

void TestStepctlRun::badScripts()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, error);
    const Run result = run({"run", file("script.json", script)});
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(error), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
}

void TestStepctlRun::refusedPlugins_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("error");
    QTest::newRow("no file") << QStringList{"nothing.so"}
                             << "plug-in \"nothing.so\" is refused: there is no such file";
    QTest::newRow("no library") << QStringList{"sort.json"} << "plug-in \"sort.json\" is refused: ";
    QTest::newRow("unknown capability")
        << QStringList{TestPaths::fixture("UnknownCapability")} << "hasWarpDrive";
    QTest::newRow("duplicate type id")
        << QStringList{TestPaths::listPlugin(), TestPaths::fixture("ListClash")}
        << "has a step of type \"list.sort\" already";
}

void TestStepctlRun::refusedPlugins()
{
    QFETCH(QStringList, files);
    QFETCH(QString, error);
    QStringList arguments = {"run", file("sort.json", sortScript)};
    for (const QString &name : files)
        arguments += {"--plugin", name};
    const Run result = run(arguments);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(error), qPrintable(result.errors));
}

void TestStepctlRun::findsPluginsOnThePath()
{
    const QString script = file("sort.json", sortScript);
    m_folder->environment.insert("QUILLMAP_PLUGIN_PATH", QFileInfo(TestPaths::listPlugin()).path());
    QCOMPARE(run({"run", script}).status, 0);

    m_folder->environment.insert("QUILLMAP_PLUGIN_PATH", m_folder->path());
    const Run result = run({"run", script});
    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.contains("no plug-in found in " + m_folder->path()), qPrintable(result.errors));
    QCOMPARE(run({"run", script, "--plugin", TestPaths::listPlugin()}).status, 0);
}

void TestStepctlRun::passesOverWhatItCannotUse()
{
    const QStringList path{TestPaths::fixture("NoMetadata"), TestPaths::fixture("Sound"),
                           TestPaths::fixture("SecondVersion"), TestPaths::listPlugin()};
    m_folder->environment.insert("QUILLMAP_PLUGIN_PATH", path.join(QDir::listSeparator()));
    const Run sorted = run({"run", file("sort.json", sortScript)});
    QCOMPARE(sorted.status, 0);
    const QStringList lines = sorted.errors.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    for (const QString &line : lines)
        QVERIFY2(line.startsWith("stepctl: plug-in \"") && line.endsWith("; it is passed over"),
                 qPrintable(line));

    const Run missing = run({"run", file("second.json", R"({"steps": [{"type": "fixture.second"}]})")});
    QCOMPARE(missing.status, 2);
    QVERIFY2(missing.errors.contains("; it may be of a plug-in that was passed over: "),
             qPrintable(missing.errors));

    m_folder->environment.insert("QUILLMAP_PLUGIN_PATH", TestPaths::fixture("NoMetadata"));
    const Run nothing = run({"run", "sort.json"});
    QCOMPARE(nothing.status, 2);
    QVERIFY2(nothing.errors.endsWith("stepctl: none of the plug-ins that were found can be used\n"),
             qPrintable(nothing.errors));
}

void TestStepctlRun::addsAPluginPath()
{
    const QString script =
        file("both.json", R"({"steps": [{"type": "fixture.first"}, {"type": "list.sort"}]})");
    QCOMPARE(run({"run", script}).status, 2);
    const Run result = run({"run", script, "--plugin-path", TestPaths::fixture("Sound")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 1); // Neither step writes.
    QCOMPARE(run({"run", script, "--plugin-path", TestPaths::fixture("Sound"), "--isolate"}).status, 1);
}

void TestStepctlRun::aStepThatThrows()
{
    const QString script =
        file("throw.json", R"({"steps": [{"type": "fixture.write"}, {"type": "fixture.throw"}]})");
    const Run result = run({"run", script, "--plugin", TestPaths::fixture("HostileSteps")});
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, QString("stepctl: step 2 (fixture.throw) threw an exception: out of paper\n"));
}

void TestStepctlRun::aSetterThatThrows()
{
    const QString script = file("throw.json", R"({"steps": [{"type": "fixture.brittle", "mood": 1}]})");
    const Run result = run({"run", script, "--plugin", TestPaths::fixture("HostileSteps")});
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, QString("stepctl: an unexpected exception ended the work: bad mood\n"));
}

void TestStepctlRun::writesAFile()
{
    const Run result =
        run({"run", file("sort.json", sortScript), "--format", "json", "--output", "out.json"});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, QString());
    QVERIFY(QJsonDocument::fromJson(contentOf("out.json")).isObject());

    // The mark of standard output is no file's name.
    const Run marked = run({"run", "sort.json", "--format", "json", "--output", "-"});
    QCOMPARE(marked.status, 0);
    QCOMPARE(marked.output.toUtf8(), contentOf("out.json"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), (QStringList{"out.json", "sort.json"}));

    // A skipped step is a result too.
    QCOMPARE(run({"run", file("skip.json", skippingScript), "--output", "skip.txt"}).status, 1);
    QVERIFY(contentOf("skip.txt").endsWith("1 step: 1 skipped\n"));
}

void TestStepctlRun::replacesAFileWhole()
{
    file("out.txt", QByteArray(100000, 'x'));
    QCOMPARE(run({"run", file("sort.json", sortScript), "--output", "out.txt"}).status, 0);
    QVERIFY(contentOf("out.txt").startsWith("Steps\n"));
    QVERIFY(!contentOf("out.txt").contains('x'));
}

void TestStepctlRun::leavesTheFileAloneOnFailure_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("bad script") << QByteArray("{");
    QTest::newRow("a step throws") << QByteArray(R"({"steps": [{"type": "fixture.throw"}]})");
}

void TestStepctlRun::leavesTheFileAloneOnFailure()
{
    QFETCH(QByteArray, script);
    file("out.txt", "as it was");
    const Run result = run({"run", file("script.json", script), "--output", "out.txt", "--plugin",
                            TestPaths::fixture("HostileSteps")});
    QCOMPARE(result.status, 2);
    QCOMPARE(contentOf("out.txt"), QByteArray("as it was"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), (QStringList{"out.txt", "script.json"}));
}

void TestStepctlRun::refusesAnOutputThatCannotBeWritten()
{
    const Run result = run({"run", file("sort.json", sortScript), "--output", "no/such/folder/out.txt"});
    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.startsWith("stepctl: no/such/folder/out.txt cannot be written: "),
             qPrintable(result.errors));
    const Run folder = run({"run", "sort.json", "--output", m_folder->path()});
    QCOMPARE(folder.status, 2);
    QVERIFY2(folder.errors.contains("cannot be written: "), qPrintable(folder.errors));
}

void TestStepctlRun::showsNoProgressWithoutATerminal()
{
    QByteArray steps;
    for (int i = 0; i < 20000; ++i)
        steps += QByteArray(i > 0 ? ", " : "") + R"({"type": "list.sort", "targetVar": "names"})";
    const QString script = file("long.json",
                                R"({"variables": [{"name": "names", "type": "list",
        "value": ["b", "a"]}], "steps": [)"
                                    + steps + "]}");
    const Run result = run({"run", script});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QString());
    QVERIFY(result.output.endsWith("\n20000 steps: 20000 wrote\n"));
}

void TestStepctlRun::speaksUtf8InAnyLocale()
{
    m_folder->environment.insert("LC_ALL", "C");
    file(QString::fromUtf8("名字.txt"), "李雷\n");
    const Run result = run({"run", file(QString::fromUtf8("脚本.json"), "{}"), "--list",
                            QString::fromUtf8("名=@名字.txt"), "--set", QString::fromUtf8("城=北京")});
    QCOMPARE(result.errors, QString());
    QVERIFY2(
        result.output.contains(QString::fromUtf8("  list    名 = [\"李雷\"]\n  string  城 = \"北京\"\n")),
        qPrintable(result.output));
}

void TestStepctlRun::runsALongScriptOnALongList()
{
    QByteArray items;
    for (int i = 0; i < 200000; ++i)
        items += QByteArray::number(i * 7919 % 200000) + '\n';
    file("items.txt", items);
    const QString script =
        file("sort.json", R"({"steps": [{"type": "list.sort", "targetVar": "items", "ascending": false},
        {"type": "list.sort", "targetVar": "items"}]})");
    const Run result =
        run({"run", script, "--list", "items=@items.txt", "--format", "json", "--output", "out.json"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY(contentOf("out.json")
                .contains(R"("value": ["0", "1", "10", "100", "1000", "10000", "100000", "100001")"));
}

QTEST_GUILESS_MAIN(TestStepctlRun)
#include "tst_stepctl_run.moc"
