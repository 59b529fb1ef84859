#include "host/checks/CheckRunner.h"
#include "host/checks/CheckSelection.h"
#include "tests/support/IsLike.h"
#include "tests/support/TestPaths.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace StepHost;

namespace
{
// Long enough for any check on a busy machine, with sanitizers.
constexpr int patience = 120000;

const char script[] = R"({
  "variables": [{"name": "items", "type": "list", "value": ["a", "b"]}, {"name": "text", "type": "string"}],
  "steps": [
    {"type": "fixture.take", "listVar": "items", "targetVar": "text", "separator": " and so on "},
    {"type": "fixture.take", "listVar": "items", "targetVar": "text", "enabled": false}
  ]
})";

QString release(const QString &name)
{
    return TestPaths::faultyPlugin("release." + name);
}

bool writeScript(const QString &fileName, const QByteArray &text)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

// The results of comparing the release `newer` with `older`, those that passed left out; a line for each.
QString compare(const QString &older, const QString &newer, const QStringList &only,
                const QStringList &scripts = {})
{
    CheckRunOptions options;
    options.program = TestPaths::stepctl();
    options.arguments = QStringList{"check-worker"};
    options.jobs = 2;
    options.timeLimit = patience;
    options.baseline = older;
    options.scripts = scripts;
    const auto checks = selectChecks(only, {}, true);
    const QVector<PluginReport> reports = checkPlugins({newer}, *checks, options);
    QStringList lines;
    for (const CheckResult &result : reports.first().results) {
        if (result.outcome != CheckOutcome::Passed)
            lines.append(result.id + ' ' + outcomeWord(result.outcome) + ": " + result.reason);
    }
    return lines.join('\n');
}
} // namespace

/// Plug-ins under check, compared with an older release of them.
class TestBaseline : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whatIsKeptIsNotBlamed_data();
    void whatIsKeptIsNotBlamed();
    void whatIsBrokenIsFound_data();
    void whatIsBrokenIsFound();
    void scriptsBesideTheOlderRelease();
    void anOlderReleaseThatIsNotThere();
    void anOlderReleaseThatCrashes();
    void withoutAnOlderRelease();
};

void TestBaseline::initTestCase()
{
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
}

void TestBaseline::whatIsKeptIsNotBlamed_data()
{
    QTest::addColumn<QString>("older");
    QTest::addColumn<QString>("newer");
    QTest::newRow("the same release") << release("older") << release("older");
    QTest::newRow("the same again") << release("older") << release("same");
    QTest::newRow("a step, a setting and a choice more") << release("older") << release("newer");
    QTest::newRow("the list steps") << TestPaths::listPlugin() << TestPaths::listPlugin();
}

void TestBaseline::whatIsKeptIsNotBlamed()
{
    QFETCH(QString, older);
    QFETCH(QString, newer);
    const QTemporaryDir folder;
    const QString file = folder.filePath("script.json");
    QVERIFY(writeScript(file, script));
    QCOMPARE(compare(older, newer, {"baseline"}, {file}), QString());
}

void TestBaseline::whatIsBrokenIsFound_data()
{
    QTest::addColumn<QString>("newer");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("finding");
    const auto row = [](const char *newer, const char *id, const char *finding) {
        QTest::addRow("%s, %s", newer, id) << QString(newer) << QString(id) << QString(finding);
    };
    row("renamed", "baseline.plugin",
        "failed: pluginId() is \"com.example.Other\", and was \"com.example.Fixture\"; to a host that is "
        "another "
        "plug-in");
    row("outdated", "baseline.plugin",
        "failed: version() is \"0.9\", less than that of the older release, \"1.9.0\"");
    row("type-gone", "baseline.types",
        "failed: the type id \"fixture.rest\" is gone, and scripts with it are refused");
    row("setting-gone", "baseline.settings",
        "failed: NoSeparatorStep: the setting \"separator\" is gone, and scripts that give it are refused");
    row("setting-retyped", "baseline.settings",
        "failed: SeparatorsStep: the setting \"separator\" is of the type \"QStringList\", and was of the "
        "type "
        "\"QString\"");
    row("default", "baseline.defaults",
        "failed: TakeStep: the setting \"part\" of a new step is 1 (int), and was 0 (int): scripts that "
        "leave it "
        "out mean something else now");
    row("choice-gone", "baseline.choices",
        "failed: FewerPartsStep: the choice 2 of the setting \"part\", \"last\", is gone");
    row("choice-moved", "baseline.choices",
        "failed: MovedPartsStep: the choice 1 of the setting \"part\", \"first %2\", is 2 now; records hold "
        "the "
        "number");
    row("choice-renamed", "baseline.choices",
        "warning: RenamedPartStep: the choice 2 of the setting \"part\", \"last\", is called \"final\" now; "
        "it has "
        "to mean the same");
    row("record-longer", "baseline.records",
        "failed: TakeStep: a record of the older release, of * bytes, is refused: the record ends too early");
    row("record-swapped", "baseline.records",
        "failed: TakeStep: of a record of the older release the setting \"listVar\" is loaded as * it was "
        "saved as *");
    row("runs-otherwise", "baseline.runs", "failed: TakeStep: with * it writes * and wrote *");
    row("scripts-otherwise", "baseline.scripts",
        "failed: step 1 (fixture.take) of \"script.json\" writes text = \"ab\", checksum * and wrote text = "
        "\"a and "
        "so on b\", checksum *");
    row("setting-gone", "baseline.scripts",
        "failed: a script that the older release runs is refused: *script.json*separator*");
}

void TestBaseline::whatIsBrokenIsFound()
{
    QFETCH(QString, newer);
    QFETCH(QString, id);
    QFETCH(QString, finding);
    const QTemporaryDir folder;
    const QString file = folder.filePath("script.json");
    QVERIFY(writeScript(file, script));
    const QString found = compare(release("older"), release(newer), {id}, {file});
    QVERIFY2(isLike(found, id + ' ' + finding), qPrintable(found));
}

void TestBaseline::scriptsBesideTheOlderRelease()
{
#ifdef Q_OS_WIN
    QSKIP("the copy does not find the library that it needs");
#endif
    const QTemporaryDir folder;
    const QString older = folder.filePath("older" + TestPaths::moduleSuffix());
    QVERIFY(QFile::copy(release("older"), older));
    QVERIFY(QDir(folder.path()).mkdir("older.scripts"));
    QVERIFY(writeScript(folder.filePath("older.scripts/mine.json"), script));
    const QString found = compare(older, release("scripts-otherwise"), {"baseline.scripts"});
    QVERIFY2(found.startsWith("baseline.scripts failed: step 1 (fixture.take) of \"mine.json\" writes "),
             qPrintable(found));
}

void TestBaseline::anOlderReleaseThatIsNotThere()
{
    const QString missing = QCoreApplication::applicationDirPath() + "/no-such-plugin.so";
    const QStringList told{"baseline.loads failed: there is no file " + missing,
                           "baseline.types skipped: the older release cannot be compared: it tells nothing"};
    QCOMPARE(compare(missing, release("same"), {"baseline.types"}), told.join('\n'));
}

// What it told before is compared all the same.
void TestBaseline::anOlderReleaseThatCrashes()
{
    const QString found =
        compare(release("older-dies"), release("record-longer"), {"baseline.records", "baseline.runs"});
    const QStringList lines = found.split('\n');
    QVERIFY2(lines.size() == 2, qPrintable(found));
    QVERIFY2(isLike(lines.at(0), "baseline.loads crashed: * in doOperation() of TakeStep*"),
             qPrintable(found));
    QVERIFY2(lines.at(1).startsWith("baseline.records failed: TakeStep: a record "), qPrintable(found));
}

void TestBaseline::withoutAnOlderRelease()
{
    QCOMPARE(compare(QString(), release("same"), {"baseline.types"}),
             QString("baseline.loads skipped: no older release is named\n"
                     "baseline.types skipped: no older release is named"));
}

QTEST_GUILESS_MAIN(TestBaseline)

#include "tst_baseline.moc"
