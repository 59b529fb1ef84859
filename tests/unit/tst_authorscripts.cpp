#include "tests/support/ProgramStart.h"
#include "tests/support/TestPaths.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{
constexpr int patience = 600000;

const char script[] = R"({
  "variables": [{"name": "items", "type": "list", "value": ["a", "b"]}, {"name": "text", "type": "string"}],
  "steps": [{"type": "fixture.take", "listVar": "items", "targetVar": "text", "separator": " and so on "}]
})";

const char shapeFinding[] = "failed    running.result-shape: TakeStep: with listVar = \"items\", targetVar = "
                            "\"text\", separator = \" and so "
                            "on \", part = 0 (int) and the variables of a script it writes 2 (int) into "
                            "\"text\", a variable of the type "
                            "string";

bool writeFile(const QString &fileName, const QByteArray &text)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

struct Exit
{
    int status = -1;
    QByteArray output;
};

Exit check(const QStringList &arguments)
{
    QProcess process;
    startProgram(process, TestPaths::stepctl(), QStringList{"check"} + arguments);
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput() + process.readAllStandardError()};
}
} // namespace

/// Scripts of a plug-in's author, whose steps are run when running is checked.
class TestAuthorScripts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whatOnlyAScriptShows();
    void scriptsBesideTheLibrary();
    void aScriptThatIsRefused();
    void stepsOfInstalledPlugins();

private:
    QTemporaryDir m_folder;
    const QString m_plugin = TestPaths::faultyPlugin("release.script-shape");
};

void TestAuthorScripts::initTestCase()
{
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
    QVERIFY(writeFile(m_folder.filePath("mine.json"), script));
}

void TestAuthorScripts::whatOnlyAScriptShows()
{
    const QStringList arguments{m_plugin, "--only", "running.result-shape"};
    const Exit without = check(arguments);
    QVERIFY2(without.status == 0, without.output);
    const Exit with = check(arguments + QStringList{"--script", m_folder.filePath("mine.json")});
    QVERIFY2(with.status == 1, with.output);
    QVERIFY2(with.output.contains(shapeFinding), with.output);
}

void TestAuthorScripts::scriptsBesideTheLibrary()
{
#ifdef Q_OS_WIN
    QSKIP("the copy does not find the library that it needs");
#endif
    const QString plugin = m_folder.filePath("steps.of.mine" + TestPaths::moduleSuffix());
    QVERIFY(QFile::copy(m_plugin, plugin));
    QVERIFY(QDir(m_folder.path()).mkdir("steps.of.mine.scripts"));
    QVERIFY(writeFile(m_folder.filePath("steps.of.mine.scripts/README"), "No script."));
    QVERIFY(writeFile(m_folder.filePath("steps.of.mine.scripts/mine.json"), script));
    const Exit exit = check({plugin, "--only", "running.result-shape", "--only", "running.scripts"});
    QVERIFY2(exit.status == 1, exit.output);
    QVERIFY2(exit.output.contains(shapeFinding), exit.output);
    QVERIFY2(exit.output.contains("passed    running: 1 of 2 checks"), exit.output);
}

void TestAuthorScripts::aScriptThatIsRefused()
{
    const QString file = m_folder.filePath("refused.json");
    QVERIFY(writeFile(file, R"({"steps": [{"type": "fixture.give"}]})"));
    const Exit exit =
        check({m_plugin, "--only", "running.result-shape", "--only", "running.scripts", "--script", file});
    QVERIFY2(exit.status == 1, exit.output);
    QVERIFY2(exit.output.contains("failed    running.scripts: " + file.toUtf8()), exit.output);
    QVERIFY2(exit.output.contains("passed    running: 1 of 2 checks"), exit.output);
}

void TestAuthorScripts::stepsOfInstalledPlugins()
{
    qputenv("QUILLMAP_PLUGIN_PATH", TestPaths::listPlugin().toUtf8());
    const QString file = m_folder.filePath("both.json");
    QVERIFY(writeFile(file, QByteArray(script).replace("\"steps\": [", R"("steps": [
        {"type": "list.reverse", "targetVar": "items"},)")));
    const Exit exit = check({m_plugin, "--only", "running.scripts", "--script", file});
    qunsetenv("QUILLMAP_PLUGIN_PATH");
    QVERIFY2(exit.status == 0, exit.output);
}

QTEST_GUILESS_MAIN(TestAuthorScripts)

#include "tst_authorscripts.moc"
