#include "host/checks/CheckContext.h"
#include "host/checks/CheckReport.h"
#include "host/checks/CheckSelection.h"
#include "host/checks/Waivers.h"
#include "tests/support/IsLike.h"
#include "tests/support/ProgramStart.h"
#include "tests/support/TestPaths.h"
#include "tests/support/TextDifference.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <functional>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <csignal>
#endif

using namespace StepHost;

Q_DECLARE_METATYPE(CheckOutcome)
Q_DECLARE_METATYPE(CheckVerdict)

namespace
{
const QString listPlugin = TestPaths::listPlugin();

// Long enough for any check on a busy machine, with sanitizers.
constexpr int patience = 120000;

// Short, for checks that are known to hang.
constexpr int impatience = 1000;

CheckRunOptions inWorkers(int jobs = 2, int timeLimit = patience)
{
    CheckRunOptions options;
    options.program = TestPaths::stepctl();
    options.arguments = QStringList{"check-worker"};
    options.jobs = jobs;
    options.timeLimit = timeLimit;
    return options;
}

QVector<CheckResult> check(const QString &file, const QVector<PluginCheck> &checks,
                           const CheckRunOptions &options = inWorkers())
{
    return checkPlugins({file}, checks, options).first().results;
}

QVector<PluginCheck> checksOf(const QStringList &ids)
{
    QVector<PluginCheck> checks;
    for (const QString &id : ids)
        checks.append(*findPluginCheck(id));
    return checks;
}

// Checks of what not every system tells, nor Wine, and of what takes Qt Gui to draw.
#if defined(Q_OS_LINUX) && defined(QUILLMAP_SANITIZED)
const QStringList skippable{"manners.memory"};
#elif defined(Q_OS_LINUX)
const QStringList skippable;
#else
const QStringList skippable{
    "file.stack",      "file.search-paths",    "file.needed",      "library.reload-handles",
    "library.symbols", "library.host-symbols", "icon.renders",     "icon.not-blank",
    "manners.limits",  "manners.signals",      "manners.clocks",   "manners.descriptors",
    "manners.threads", "manners.processes",    "manners.terminal", "manners.files",
    "manners.output",  "manners.memory"};
#endif

bool isSkippedHere(const CheckResult &result)
{
    return result.outcome == CheckOutcome::Skipped && skippable.contains(result.id);
}

bool isAsWished(const CheckResult &result)
{
    return result.outcome == CheckOutcome::Passed || isSkippedHere(result);
}

// What is not as wished, one text for each.
QStringList findings(const QVector<CheckResult> &results)
{
    QStringList texts;
    for (const CheckResult &result : results) {
        if (!isAsWished(result))
            texts.append(result.id + ' ' + outcomeWord(result.outcome) + ": " + result.reason);
    }
    return texts;
}

QByteArray golden(const QString &name)
{
    QFile file(TestPaths::source(QStringLiteral("tests/golden/") + name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What the broken plug-in for the check makes it say; a "*" in the golden file is any text.
QString expectedReason(const QString &id)
{
    const QStringList lines = QString::fromUtf8(golden("check-reasons.txt")).split('\n');
    const QStringList found = lines.filter(QRegularExpression('^' + QRegularExpression::escape(id + ": ")));
    return found.value(0).mid(id.size() + 2);
}

QStringList idsOf(const QVector<CheckResult> &results)
{
    QStringList ids;
    for (const CheckResult &result : results)
        ids.append(result.id);
    return ids;
}

struct Exit
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

Exit stepctl(const QStringList &arguments)
{
    QProcess process;
    startProgram(process, TestPaths::stepctl(), arguments);
    if (!process.waitForFinished(5 * patience) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

bool isRunning(qint64 id)
{
#ifdef Q_OS_WIN
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, DWORD(id));
    const bool hasEnded = !process || WaitForSingleObject(process, 0) != WAIT_TIMEOUT;
    if (process)
        CloseHandle(process);
    return !hasEnded;
#else
    // A process that has ended may stay as a zombie for a while.
    QFile file(QStringLiteral("/proc/%1/stat").arg(id));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray stat = file.readAll();
    const QByteArray state = stat.mid(stat.lastIndexOf(')') + 2, 1);
    return state != "Z" && state != "X";
#endif
}

#ifdef Q_OS_LINUX
qint64 parentOf(qint64 id)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(id));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray stat = file.readAll();
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
}
#endif

// Does something just before the pause of that number, counted from 1, is over.
class AtPause : public QObject
{
public:
    AtPause(int number, std::function<void()> action) : m_left(number), m_action(std::move(action))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Timer && object->inherits("QSingleShotTimer") && --m_left == 0)
            m_action();
        return false;
    }

private:
    int m_left;
    std::function<void()> m_action;
};

} // namespace

class TestPluginCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void idsAreUnique();
    void everyCheckHasAPluginThatFailsIt_data();
    void everyCheckHasAPluginThatFailsIt();
    void soundPluginsPass_data();
    void soundPluginsPass();
    void theRestIsUnharmed_data();
    void theRestIsUnharmed();
    void otherFaultsAreFound_data();
    void otherFaultsAreFound();
    void plugInsWithTheSameNames();
    void aLibraryThatStaysInMemory();
    void whatACheckStartedEndsWithIt();
    void aCheckEndsWithItsHost();
    void iconsThatNobodyCanDraw();
    void withoutLoadingNothingElseIsChecked_data();
    void withoutLoadingNothingElseIsChecked();
    void aWorkerThatDoesNotStart();
    void aWorkerThatStartsLater();
    void noFolderForResults();
    void orderAndProgress_data();
    void orderAndProgress();
    void reasonsAreMessages();
    void exitStatus_data();
    void exitStatus();
    void listNamesEveryCheck();
    void outputFormats();
};

void TestPluginCheck::initTestCase()
{
    // The faults leak on purpose; that is not what the checks look for.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
}

void TestPluginCheck::idsAreUnique()
{
    QSet<QString> ids;
    for (const PluginCheck &check : pluginChecks()) {
        QVERIFY2(!ids.contains(check.id), qPrintable(check.id));
        QVERIFY2(check.id.count('.') == 1 && !check.protects.isEmpty(), qPrintable(check.id));
        QCOMPARE(findPluginCheck(check.id), &check);
        ids.insert(check.id);
    }
    QVERIFY(ids.size() >= 50);
    QVERIFY(!findPluginCheck("no.such"));
}

void TestPluginCheck::everyCheckHasAPluginThatFailsIt_data()
{
    QTest::addColumn<CheckOutcome>("outcome");
    const QSet<QString> crashing{"texts.hostile", "running.no-scope", "running.wrong-types"};
    const QSet<QString> hanging{"persistence.mutation", "running.hostile-settings"};
    for (const PluginCheck &check : pluginChecks()) {
        // The others are failed by faults of the plug-in of tst_unlistedfaults.
        if (!QFile::exists(TestPaths::faultyPlugin(check.id)))
            continue;
        if (check.id == "file.debug") {
            QTest::newRow(qPrintable(check.id)) << CheckOutcome::Warning;
            continue;
        }
        QTest::newRow(qPrintable(check.id)) << (crashing.contains(check.id)      ? CheckOutcome::Crashed
                                                    : hanging.contains(check.id) ? CheckOutcome::TimedOut
                                                                                 : CheckOutcome::Failed);
    }
}

void TestPluginCheck::everyCheckHasAPluginThatFailsIt()
{
    QFETCH(CheckOutcome, outcome);
    const QString id = QTest::currentDataTag();
    const QString file = TestPaths::faultyPlugin(id);
    QVERIFY2(!file.isEmpty(), "there is no broken plug-in that fails this check");
    const int timeLimit = outcome == CheckOutcome::TimedOut ? impatience : patience;
    CheckRunOptions options = inWorkers(1, timeLimit);
    options.isKnownToLoad = true; // A process less for each plug-in.
    const QVector<CheckResult> results = check(file, checksOf({id}), options);
    QVERIFY2(idsOf(results) == QStringList{id}, qPrintable(findings(results).join("; ")));
    const CheckResult &result = results.first();
    if (isSkippedHere(result))
        QSKIP(qPrintable(result.reason));
    QVERIFY2(result.outcome == outcome, qPrintable(outcomeWord(result.outcome) + ": " + result.reason));
    const QString expected = expectedReason(id);
    QVERIFY2(!expected.isEmpty(), "check-reasons.txt has no line for this check");
#ifdef QUILLMAP_SANITIZED
    if (id == "persistence.mutation-memory")
        QSKIP("each step takes as much as the sanitizers make of it");
#endif
    QVERIFY2(isLike(result.reason, expected), qPrintable(result.reason + " is not like " + expected));
}

void TestPluginCheck::soundPluginsPass_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("list steps") << listPlugin;
    QTest::newRow("the broken plug-ins without a fault") << TestPaths::faultyPlugin("none");
}

void TestPluginCheck::soundPluginsPass()
{
    QFETCH(QString, file);
#ifdef QUILLMAP_SANITIZED
    const QStringList longest{"persistence.mutation", "running.long-lists"};
#else
    const QStringList longest;
#endif
    const auto checks = selectChecks({}, longest);
    QVERIFY(checks);
    QVector<PluginReport> reports = checkPlugins({file}, *checks, inWorkers());
    QCOMPARE(reports.first().results.size(), checks->size());
    if (file == listPlugin) {
        QFile waived(TestPaths::source("plugin/waivers.txt"));
        QVERIFY(waived.open(QIODevice::ReadOnly));
        auto waivers = readWaivers(QString::fromUtf8(waived.readAll()));
        QVERIFY(waivers);
        applyWaivers(reports, *waivers);
    }
    QCOMPARE(findings(reports.first().results), QStringList());
}

void TestPluginCheck::theRestIsUnharmed_data()
{
    QTest::addColumn<QStringList>("harmed");
    QTest::addColumn<CheckOutcome>("outcome");
    QTest::newRow("running.no-scope")
        << QStringList{"running.no-scope", "running.detached-scope"} << CheckOutcome::Crashed;
    QTest::newRow("exits") << QStringList{"running.hostile-settings"} << CheckOutcome::Crashed;
}

void TestPluginCheck::theRestIsUnharmed()
{
    QFETCH(QStringList, harmed);
    QFETCH(CheckOutcome, outcome);
    // The families that run, copy and save steps as the harmed check does. Some of them, and not the longest.
    const auto checks =
        selectChecks({"identity", "prototypes", "clone", "persistence", "running"},
                     {"persistence.mutation*", "persistence.long-records", "running.long-lists"});
    QVERIFY(checks);
    const QVector<CheckResult> results = check(TestPaths::faultyPlugin(QTest::currentDataTag()), *checks);
    QCOMPARE(results.size(), checks->size());
    for (const CheckResult &result : results)
        QVERIFY2(harmed.contains(result.id) ? result.outcome == outcome : isAsWished(result),
                 qPrintable(result.id + ' ' + outcomeWord(result.outcome) + ": " + result.reason));
}

void TestPluginCheck::otherFaultsAreFound_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("changes-its-id") << "identity.stable";
    QTest::newRow("clones-children") << "clone.no-relatives";
    QTest::newRow("saves-too-much") << "persistence.settings";
    QTest::newRow("exits") << "running.hostile-settings";
#ifdef Q_OS_LINUX
    QTest::newRow("open-search-path") << "file.search-paths";
#endif
}

void TestPluginCheck::otherFaultsAreFound()
{
    QFETCH(QString, id);
    const QString fault = QTest::currentDataTag();
    const QVector<CheckResult> results = check(TestPaths::faultyPlugin(fault), checksOf({id}));
    QCOMPARE(results.first().reason, expectedReason(fault));
}

void TestPluginCheck::plugInsWithTheSameNames()
{
    const QStringList files{TestPaths::faultyPlugin("none"), listPlugin,
                            TestPaths::faultyPlugin("texts.pure")};
    const QVector<PluginReport> reports = checkPlugins(files, checksOf({"identity.company"}), inWorkers());
    QCOMPARE(findings(reports.at(0).results), QStringList());
    QCOMPARE(findings(reports.at(1).results), QStringList());
    QCOMPARE(
        findings(reports.at(2).results),
        QStringList(
            "identity.company failed: " + QFileInfo(files.first()).canonicalFilePath()
            + " has the plug-in id \"com.example.Sample\", too; a host that has both tells them not apart"));
}

void TestPluginCheck::aLibraryThatStaysInMemory()
{
#if defined(Q_OS_LINUX) || defined(Q_OS_WIN)
    const QVector<CheckResult> results =
        check(TestPaths::faultyPlugin("stays-in-memory"),
              checksOf({"library.unloads", "library.reload-memory", "library.reload-resources"}));
    QCOMPARE(
        findings(results),
        QStringList({"library.unloads warning: the library stays in memory after it was unloaded",
                     "library.reload-resources skipped: the library stays in memory after it was unloaded, "
                     "and its resources with it"}));
#else
    QSKIP("such a library cannot be built here");
#endif
}

void TestPluginCheck::whatACheckStartedEndsWithIt()
{
#if defined(Q_OS_LINUX) || defined(Q_OS_WIN)
    const QTemporaryDir directory;
    const QString idsFile = directory.filePath("ids");
    qputenv("STARTED_PROCESSES_FILE", idsFile.toUtf8());
    const QVector<CheckResult> results = check(TestPaths::faultyPlugin("starts-processes"),
                                               checksOf({"running.hostile-settings"}), inWorkers(1, 5000));
    QVERIFY2(results.first().outcome == CheckOutcome::TimedOut, qPrintable(results.first().reason));
    QFile file(idsFile);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> ids = file.readAll().split(' ');
    QCOMPARE(ids.size(), 2);
    for (const QByteArray &id : ids) {
        QVERIFY(id.toLongLong() > 0);
        QTRY_VERIFY(!isRunning(id.toLongLong()));
    }
#else
    QSKIP("the test looks at processes in a way that this system lacks");
#endif
}

void TestPluginCheck::aCheckEndsWithItsHost()
{
#ifdef Q_OS_LINUX
    const QTemporaryDir directory;
    const QString idsFile = directory.filePath("ids");
    qputenv("STARTED_PROCESSES_FILE", idsFile.toUtf8());
    QProcess host;
    host.start(TestPaths::stepctl(),
               {"check", TestPaths::faultyPlugin("starts-processes"), "--only", "running.hostile-settings"});
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(idsFile), patience);
    QFile file(idsFile);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> ids = file.readAll().split(' ');
    QCOMPARE(ids.size(), 2);
    const qint64 check = parentOf(ids.at(1).toLongLong());
    QVERIFY(check > 0 && isRunning(check));
    host.kill();
    QVERIFY(host.waitForFinished());
    QTRY_VERIFY(!isRunning(check));
    for (const QByteArray &id : ids)
        kill(pid_t(id.toLongLong()), SIGKILL);
#else
    QSKIP("on this system a check goes on when its host is ended from outside");
#endif
}

void TestPluginCheck::iconsThatNobodyCanDraw()
{
    const QVector<CheckResult> results =
        check(listPlugin, checksOf({"icon.renders", "icon.not-blank"}), CheckRunOptions());
    QCOMPARE(results.size(), 2);
    for (const CheckResult &result : results) {
        QVERIFY(result.outcome == CheckOutcome::Skipped);
        QCOMPARE(result.reason, QString("images cannot be drawn here"));
    }
}

void TestPluginCheck::withoutLoadingNothingElseIsChecked_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<CheckOutcome>("outcome");
    QTest::addColumn<CheckVerdict>("verdict");
    QTest::newRow("missing file") << "/no/such/plugin.so" << CheckOutcome::Failed
                                  << CheckVerdict::NotLoadable;
    QTest::newRow("directory") << QDir::tempPath() << CheckOutcome::Failed << CheckVerdict::NotLoadable;
    QTest::newRow("no library") << TestPaths::source("CMakeLists.txt") << CheckOutcome::Failed
                                << CheckVerdict::NotLoadable;
    QTest::newRow("library without metadata")
        << TestPaths::faultyLibrary() << CheckOutcome::Failed << CheckVerdict::NotLoadable;
    QTest::newRow("other interface") << TestPaths::faultyPlugin("other-interface") << CheckOutcome::Failed
                                     << CheckVerdict::NotLoadable;
    QTest::newRow("other contract") << TestPaths::faultyPlugin("library.loads") << CheckOutcome::Failed
                                    << CheckVerdict::NotLoadable;
    QTest::newRow("crash") << TestPaths::faultyPlugin("crashes-on-load") << CheckOutcome::Crashed
                           << CheckVerdict::Crashed;
}

void TestPluginCheck::withoutLoadingNothingElseIsChecked()
{
    QFETCH(QString, file);
    QFETCH(CheckOutcome, outcome);
    QFETCH(CheckVerdict, verdict);
    const QVector<PluginReport> reports =
        checkPlugins({file}, checksOf({"clone.parent", "texts.pure"}), inWorkers());
    const QVector<CheckResult> &results = reports.first().results;
    QCOMPARE(idsOf(results), QStringList({"library.loads", "clone.parent", "texts.pure"}));
    QVERIFY2(results.at(0).outcome == outcome, qPrintable(results.at(0).reason));
    QVERIFY(!results.at(0).reason.isEmpty());
    QVERIFY(results.at(1).outcome == CheckOutcome::Skipped);
    QVERIFY(results.at(2).outcome == CheckOutcome::Skipped);
    QVERIFY(verdictOf(reports) == verdict);
}

void TestPluginCheck::aWorkerThatDoesNotStart()
{
    CheckRunOptions options = inWorkers();
    options.program = "/no/such/program";
    bool hasGivenUp = true;
    const AtPause third(3, [&hasGivenUp] { hasGivenUp = false; });
    const QVector<CheckResult> results = check(listPlugin, checksOf({"library.loads"}), options);
    QVERIFY(hasGivenUp);
    QCOMPARE(results.size(), 1);
    QVERIFY(results.first().outcome == CheckOutcome::Crashed);
    QVERIFY2(results.first().reason.startsWith("the process of the check does not start: "),
             qPrintable(results.first().reason));
}

void TestPluginCheck::aWorkerThatStartsLater()
{
    const QTemporaryDir directory;
    CheckRunOptions options = inWorkers();
    options.program = directory.filePath(QFileInfo(options.program).fileName());
    QVERIFY(QFile::copy(TestPaths::stepctl(), options.program + ".away"));
    // Where the copy looks for the libraries beside the original.
#ifdef Q_OS_WIN
    const char variable[] = "PATH";
#else
    const char variable[] = "LD_LIBRARY_PATH";
#endif
    const QByteArray path = qgetenv(variable);
    const auto restoringPath = qScopeGuard([&] { qputenv(variable, path); });
    qputenv(variable,
            QFileInfo(TestPaths::operationCore()).path().toLocal8Bit() + QDir::listSeparator().toLatin1()
                + path);
    const AtPause second(2, [&options] { QFile::rename(options.program + ".away", options.program); });
    const QVector<CheckResult> results = check(listPlugin, checksOf({"library.loads"}), options);
    QCOMPARE(findings(results).join("; "), QString());
    QVERIFY(QFile::exists(options.program));
}

void TestPluginCheck::noFolderForResults()
{
#ifdef Q_OS_WIN
    const char variable[] = "TMP";
#else
    const char variable[] = "TMPDIR";
#endif
    const QByteArray previous = qgetenv(variable);
    qputenv(variable, TestPaths::source("CMakeLists.txt").toLocal8Bit()); // A file, and no folder.
    const QVector<CheckResult> results = check(listPlugin, checksOf({"library.loads"}));
    previous.isNull() ? qunsetenv(variable) : qputenv(variable, previous);
    QCOMPARE(results.size(), 1);
    QVERIFY(results.first().outcome == CheckOutcome::Crashed);
    QVERIFY2(results.first().reason.startsWith("there is no folder for its result: "),
             qPrintable(results.first().reason));
}

void TestPluginCheck::orderAndProgress_data()
{
    QTest::addColumn<int>("jobs");
    QTest::addColumn<bool>("isInProcess");
    QTest::newRow("one by one") << 1 << false;
    QTest::newRow("more jobs than checks") << 50 << false;
    QTest::newRow("in this process") << 1 << true;
}

void TestPluginCheck::orderAndProgress()
{
    QFETCH(int, jobs);
    QFETCH(bool, isInProcess);
    const QStringList ids{"library.loads", "library.unloads", "identity.prefix", "clone.parent",
                          "texts.pure",    "persistence.row", "running.twice"};
    CheckRunOptions options = inWorkers(jobs);
    if (isInProcess)
        options.program.clear();
    QVector<QPair<int, int>> progress;
    options.progress = [&progress](int done, int total) { progress.append({done, total}); };
    const QStringList files{listPlugin, TestPaths::faultyPlugin("none")};
    const QVector<PluginReport> reports = checkPlugins(files, checksOf(ids), options);
    QCOMPARE(reports.size(), 2);
    for (int i = 0; i < reports.size(); ++i) {
        const PluginReport &report = reports.at(i);
        QCOMPARE(report.fileName, files.at(i));
        QCOMPARE(idsOf(report.results), ids);
        QCOMPARE(findings(report.results), QStringList());
    }
    QCOMPARE(progress.size(), 2 * ids.size());
    for (int i = 0; i < progress.size(); ++i)
        QCOMPARE(progress.at(i), qMakePair(i + 1, progress.size()));
}

// However much a plug-in says.
void TestPluginCheck::reasonsAreMessages()
{
    const PluginCheck check{"texts.any", "Nothing.", [](CheckContext &) {
                                fail(QString(100000, 'x') + QChar(0x1b) + QChar(0x202e) + '\n');
                            }};
    const CheckResult result = runPluginCheck(check, TestPaths::listPlugin(), {});
    QVERIFY(result.outcome == CheckOutcome::Failed);
    QVERIFY2(result.reason.size() < 2200, qPrintable(QString::number(result.reason.size())));
    QVERIFY2(result.reason.endsWith("\\u001b\\u202e\\n"), qPrintable(result.reason.right(50)));
}

void TestPluginCheck::exitStatus_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, int status, const char *error = "") {
        QTest::newRow(name) << QStringList{"check"} + arguments << status << error;
    };
    row("all passed", {listPlugin, "--only", "identity", "--jobs", "2"}, 0);
    row("a failure", {TestPaths::faultyPlugin("clone.parent"), "--only", "clone.parent"}, 1);
    row("another check of it", {TestPaths::faultyPlugin("clone.parent"), "--only", "texts.pure"}, 0);
    row("a family", {TestPaths::faultyPlugin("clone.parent"), "--only", "clone"}, 1);
    row("not loadable", {"/no/such/plugin.so"}, 3);
    row("a crash", {TestPaths::faultyPlugin("texts.hostile"), "--only", "texts.hostile"}, 4);
    row("a hang",
        {TestPaths::faultyPlugin("persistence.mutation"), "--only", "persistence.mutation", "--time-limit",
         "0.5"},
        4);
    row("a crash while loading", {TestPaths::faultyPlugin("crashes-on-load")}, 4);
    row("the worst of several", {TestPaths::faultyPlugin("crashes-on-load"), listPlugin, "--only", "library"},
        4);
    row("in process", {TestPaths::faultyPlugin("clone.parent"), "--only", "clone.parent", "--in-process"}, 1);
    row("no plug-in", {}, 2, "stepctl: check: name at least one plug-in\n");
    row("no such check", {listPlugin, "--only", "clone.parents"}, 2,
        "stepctl: --only clone.parents: there is no such check; --list shows them all\n");
    row("no such format", {listPlugin, "--format", "yaml"}, 2,
        "stepctl: --format: there is no value \"yaml\"; there are \"text\", \"json\", \"junit\"");
    row("a baseline for several", {listPlugin, listPlugin, "--baseline", listPlugin}, 2,
        "stepctl: --baseline: name one plug-in, which is compared with the older release\n");
    row("a baseline in process", {listPlugin, "--baseline", listPlugin, "--in-process"}, 2,
        "stepctl: --baseline: two releases of a plug-in are not loaded into one process; leave out "
        "--in-process\n");
    row("a baseline", {listPlugin, "--baseline", listPlugin, "--only", "baseline.types"}, 0);
    row("no baseline", {listPlugin, "--only", "baseline.types"}, 2,
        "stepctl: --only baseline.types: that compares with an older release; --baseline FILE names one\n");
    row("a list as JUnit", {"--list", "--format", "junit"}, 2, "stepctl: --list: its form is text or json\n");
    row("no jobs", {listPlugin, "--jobs", "0"}, 2, "stepctl: --jobs: Value 0 not in range 1 to 256");
    row("no time", {listPlugin, "--time-limit", "0"}, 2, "stepctl: --time-limit: Value 0 not in range");
}

void TestPluginCheck::exitStatus()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, error);
    const Exit exit = stepctl(arguments);
    QVERIFY2(exit.status == status, exit.output + exit.errors);
    if (error.isEmpty())
        QVERIFY2(exit.errors.isEmpty(), exit.errors);
    else
        QVERIFY2(exit.errors.startsWith(error.toUtf8()), exit.errors);
}

void TestPluginCheck::listNamesEveryCheck()
{
    const Exit exit = stepctl({"check", "--list"});
    QCOMPARE(exit.status, 0);
    const QByteArray expected = golden("checks.txt");
    QCOMPARE(expected.count('\n'), pluginChecks().size());
    QVERIFY2(exit.output == expected, qPrintable(difference(expected, exit.output)));
    const Exit json = stepctl({"check", "--list", "--format", "json"});
    const QJsonArray checks = QJsonDocument::fromJson(json.output).object()["checks"].toArray();
    QCOMPARE(checks.size(), pluginChecks().size());
    QCOMPARE(checks.last().toObject()["family"].toString(), QString("baseline"));
    QCOMPARE(checks.last().toObject()["id"].toString(), pluginChecks().last().id);
    QCOMPARE(checks.last().toObject()["protects"].toString(), pluginChecks().last().protects);
}

void TestPluginCheck::outputFormats()
{
    const QStringList arguments{"check", listPlugin, "--only", "clone.parent", "--format"};
    const Exit text = stepctl(arguments + QStringList{"text"});
    QCOMPARE(QString::fromUtf8(text.output),
             listPlugin
                 + ": com.tallowby.Quillmap.ListOperPlugin 1.0.0\n  passed    clone: 1 check\n"
                   "passed: 1 passed\n");
    const Exit json = stepctl(arguments + QStringList{"json"});
    const QJsonObject report = QJsonDocument::fromJson(json.output).object();
    QCOMPARE(report["verdict"].toString(), QString("passed"));
    QCOMPARE(report["plugins"][0]["version"].toString(), QString("1.0.0"));
    QVERIFY(stepctl({"--version"}).output.contains(report["stepctl"].toString().toUtf8()));
    QXmlStreamReader xml(stepctl(arguments + QStringList{"junit"}).output);
    QVERIFY(xml.readNextStartElement());
    QCOMPARE(xml.name().toString(), QString("testsuites"));
}

QTEST_GUILESS_MAIN(TestPluginCheck)

#include "tst_plugincheck.moc"
