#include "tools/workbench/window/CommandLine.h"

#include "tests/support/ProgramStart.h"

#include <QProcessEnvironment>
#include <QtTest>

using namespace Workbench;

Q_DECLARE_METATYPE(Workbench::CommandLine::Task)

class TestWorkbenchCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void addsPlacesToTheSearch();
    void handsOnWhatIsForQt();
    void explainsItselfWithoutADisplay_data();
    void explainsItselfWithoutADisplay();
    void loadsThePluginsThatItIsGiven();
};

void TestWorkbenchCommandLine::reads_data()
{
    using Task = CommandLine::Task;
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<CommandLine::Task>("task");
    QTest::addColumn<QStringList>("plugins");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("script");
    QTest::newRow("nothing") << QStringList{} << Task::Work << QStringList{} << "zh_CN"
                             << "";
    QTest::newRow("a script") << QStringList{"a.json"} << Task::Work << QStringList{} << "zh_CN"
                              << "a.json";
    QTest::newRow("a language") << QStringList{"--lang", "en"} << Task::Work << QStringList{} << "en"
                                << "";
    QTest::newRow("plug-ins") << QStringList{"--plugin", "a.so", "--plugin=b.so", "c.json"} << Task::Work
                              << QStringList{"a.so", "b.so"} << "zh_CN"
                              << "c.json";
    QTest::newRow("help") << QStringList{"--help"} << Task::Tell << QStringList{} << ""
                          << "";
    QTest::newRow("version") << QStringList{"-v"} << Task::Tell << QStringList{} << ""
                             << "";
    QTest::newRow("unknown language") << QStringList{"--lang", "xx"} << Task::Refuse << QStringList{} << ""
                                      << "";
    QTest::newRow("unknown option") << QStringList{"--plug"} << Task::Refuse << QStringList{} << ""
                                    << "";
    QTest::newRow("no value") << QStringList{"--plugin"} << Task::Refuse << QStringList{} << ""
                              << "";
    QTest::newRow("two scripts") << QStringList{"a", "b"} << Task::Refuse << QStringList{} << ""
                                 << "";
}

void TestWorkbenchCommandLine::reads()
{
    QFETCH(QStringList, arguments);
    const CommandLine line = readCommandLine(QStringList("workbench") + arguments, {"zh-CN"});
    QTEST(line.task, "task");
    QCOMPARE(line.text.isEmpty(), line.task == CommandLine::Task::Work);
    if (line.task != CommandLine::Task::Work)
        return;
    QTEST(line.plugins.files, "plugins");
    QTEST(line.language, "language");
    QTEST(line.script, "script");
}

void TestWorkbenchCommandLine::addsPlacesToTheSearch()
{
    const CommandLine line =
        readCommandLine({"workbench", "--plugin-path", "a", "--plugin-path=b", "--plugin", "c.so"}, {"en"});
    QCOMPARE(line.plugins.places, QStringList({"a", "b"}));
    QCOMPARE(line.plugins.files, QStringList("c.so"));
}

void TestWorkbenchCommandLine::handsOnWhatIsForQt()
{
    const CommandLine line = readCommandLine(
        {"workbench", "-platform", "offscreen", "--plugin", "a.so", "--style", "fusion", "a.json"}, {});
    QCOMPARE(line.qtArguments, QByteArrayList({"workbench", "-platform", "offscreen", "-style", "fusion"}));
    QCOMPARE(line.script, QString("a.json"));
}

void TestWorkbenchCommandLine::explainsItselfWithoutADisplay_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("text");
    QTest::newRow("--help") << "--help"
                            << "--plugin <file>";
    QTest::newRow("-h") << "-h"
                        << "workbench --lang zh_CN examples/names/clean.json";
    QTest::newRow("--version") << "--version"
                               << "workbench 1.";
}

void TestWorkbenchCommandLine::explainsItselfWithoutADisplay()
{
    QFETCH(QString, argument);
    QFETCH(QString, text);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "no such platform");
    QProcess program;
    program.setProcessEnvironment(environment);
    startProgram(program, WORKBENCH_PROGRAM, {argument});
    QVERIFY(program.waitForFinished(-1));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    const QString output = program.readAllStandardOutput();
    QVERIFY2(output.contains(text), qPrintable(output));
    QCOMPARE(QString(program.readAllStandardError()), QString());
}

void TestWorkbenchCommandLine::loadsThePluginsThatItIsGiven()
{
    QProcess program;
    program.setReadChannel(QProcess::StandardError);
    startProgram(program, WORKBENCH_PROGRAM,
                 {"-platform", "offscreen", "--lang", "en", "--plugin", "missing.so"});
    QByteArray errors;
    while (!errors.contains("missing.so") && program.waitForReadyRead(-1))
        errors += program.readAllStandardError();
    QVERIFY2(errors.contains("missing.so"), errors.constData());
    program.kill();
    program.waitForFinished(-1);
}

QTEST_GUILESS_MAIN(TestWorkbenchCommandLine)
#include "tst_workbenchcommandline.moc"
