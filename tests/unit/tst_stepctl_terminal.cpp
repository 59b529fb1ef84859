#include "tests/support/StepctlFolder.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include "tests/support/TerminalProcess.h"
#endif

#include <memory>

class TestStepctlTerminal : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void shows_data();
    void shows();
    void writesFilesWhole();
    void namesTheStepThatIsRunning();

private:
    QByteArray shownBy(const QStringList &arguments);

    std::unique_ptr<StepctlFolder> m_folder;
};

void TestStepctlTerminal::init()
{
#ifndef Q_OS_UNIX
    QSKIP("there are no such terminals here");
#endif
    m_folder = std::make_unique<StepctlFolder>();
    m_folder->environment.remove("NO_COLOR");
    m_folder->environment.insert("TERM", "xterm");
    m_folder->write("long.json", R"({"variables": [
        {"name": "names", "type": "list", "value": ["one", "two", "three", "four", "five", "six"]},
        {"name": "t", "type": "table", "value": [["aaaaaaaaaa", "bbbbbbbbbb"], ["cccccccccc"]]},
        {"name": "s", "type": "string", "value": "abcdefghijklmnopqrstuvwxyz0123456789"},
        {"name": "n", "type": "int", "value": 1}],
        "steps": [{"type": "list.reverse", "targetVar": "names"}, {"type": "list.clear", "targetVar": "nmaes"}]})");
}

// What a user sees at a terminal of 40 columns.
QByteArray TestStepctlTerminal::shownBy(const QStringList &arguments)
{
#ifdef Q_OS_UNIX
    TerminalProcess process(40);
    process.setProcessEnvironment(m_folder->environment);
    process.setWorkingDirectory(m_folder->path());
    startProgram(process, TestPaths::stepctl(), arguments);
    const QByteArray shown = process.shown();
    process.waitForFinished(-1);
    return shown;
#else
    return arguments.join(QLatin1Char(' ')).toUtf8();
#endif
}

void TestStepctlTerminal::shows_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("setting"); // Of the environment.
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasColours");
    const QString cut = "  list    names = [\"six\", \"f ... (6 elements)\n"
                        "  table   t = [[\"aaaaaaaaaa ... (2 rows)\n"
                        "  string  s = \"abcdefghi ... (38 characters)\n"
                        "  int     n = 1\n";
    const QString whole = "names = [\"six\", \"five\", \"four\", \"three\", \"two\", \"one\"]\n";
    QTest::newRow("cut") << QStringList{"run", "long.json"} << "" << cut << true;
    QTest::newRow("full") << QStringList{"run", "long.json", "--full"} << "" << whole << true;
    QTest::newRow("no colours") << QStringList{"run", "long.json"} << "NO_COLOR=1" << cut << false;
    QTest::newRow("no colours unsaid") << QStringList{"run", "long.json"} << "NO_COLOR=" << cut << true;
    QTest::newRow("dumb") << QStringList{"run", "long.json"} << "TERM=dumb" << cut << false;
    QTest::newRow("in colours") << QStringList{"run", "long.json"} << ""
                                << "  1  \x1b[32mwrote   \x1b[0m  " << true;
    QTest::newRow("JSON") << QStringList{"run", "long.json", "--format", "json"} << ""
                          << "[\"six\", \"five\", \"four\", \"three\", \"two\", \"one\"]}" << false;
    QTest::newRow("lint") << QStringList{"lint", "long.json"} << ""
                          << "long.json: \x1b[33mstep 2 (list.clear):\x1b[0m " << true;
    QTest::newRow("an error") << QStringList{"lnit"} << ""
                              << "stepctl: there is no command \"lnit\"" << false;
}

void TestStepctlTerminal::shows()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, setting);
    QFETCH(QString, text);
    if (!setting.isEmpty())
        m_folder->environment.insert(setting.section('=', 0, 0), setting.section('=', 1));
    const QByteArray shown = shownBy(arguments);
    QVERIFY2(shown.contains(text.toUtf8()), shown.constData());
    QTEST(shown.contains('\x1b'), "hasColours");
}

void TestStepctlTerminal::writesFilesWhole()
{
    QCOMPARE(shownBy({"run", "long.json", "--output", "out.txt"}), QByteArray());
    const QByteArray written = m_folder->contentOf("out.txt");
    QVERIFY2(written.contains("\"one\"]\n") && !written.contains('\x1b'), written.constData());
}

void TestStepctlTerminal::namesTheStepThatIsRunning()
{
    m_folder->write("hang.json", R"({"variables": [{"name": "names", "type": "list"}],
        "steps": [{"type": "list.clear", "targetVar": "names"}, {"type": "fixture.hang"}]})");
#ifdef Q_OS_UNIX
    TerminalProcess process(80);
    process.setProcessEnvironment(m_folder->environment);
    process.setWorkingDirectory(m_folder->path());
    startProgram(process, TestPaths::stepctl(),
                 {"run", "hang.json", "--plugin", TestPaths::listPlugin(), "--plugin",
                  TestPaths::fixture("FatalSteps")});
    const QByteArray line = "\rrunning: step 2 (fixture.hang) of 2";
    const QByteArray shown = process.shown(line);
    QVERIFY2(shown.contains(line), shown.constData());
#endif
}

QTEST_GUILESS_MAIN(TestStepctlTerminal)
#include "tst_stepctl_terminal.moc"
