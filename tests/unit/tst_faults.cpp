#include "tests/support/DaemonPipe.h"
#include "tests/support/StepctlFolder.h"
#include "tests/support/TestPaths.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

#include <cstring>
#include <memory>
#include <random>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace
{
const QString fatalSteps = TestPaths::fixture("FatalSteps");
const QString hostileSteps = TestPaths::fixture("HostileSteps");
const QString exitingTexts = TestPaths::fixture("ExitingTexts");
const QString throwingTexts = TestPaths::fixture("ThrowingTexts");
const char oldContent[] = "as it was";

#ifdef Q_OS_UNIX
void limit(decltype(RLIMIT_CORE) resource, rlim_t value)
{
    const rlimit limits{value, value};
    setrlimit(resource, &limits);
}
#endif

// A script with a list of as many items, each of which takes 17 bytes.
QByteArray scriptOfSize(int items)
{
    QByteArray list;
    for (int i = 0; i < items; ++i)
        list += (i > 0 ? ", \"" : "\"") + QByteArray::number(i).rightJustified(13, '.') + '"';
    return R"({"variables": [{"name": "items", "type": "list", "value": [)" + list + R"(]}],
        "steps": [{"type": "list.sort", "targetVar": "items"}]})";
}
} // namespace

// Whatever happens to stepctl, the user is told, and the file that it was to write is as it was or whole.
class TestFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void tellsWhatAPluginDid_data();
    void tellsWhatAPluginDid();
    void tellsHowAWorkerEnded_data();
    void tellsHowAWorkerEnded();
    void aWorkerDoesTheSame_data();
    void aWorkerDoesTheSame();
    void leavesNoProcess_data();
    void leavesNoProcess();
    void leavesNoProcessWhenItIsEnded_data();
    void leavesNoProcessWhenItIsEnded();
    void endsNobodyElse();
    void leavesIgnoredSignalsAlone();
    void aTimeLimitThatIsKeptChangesNothing();
    void aLimitOfFileSizeLeavesTheFile_data();
    void aLimitOfFileSizeLeavesTheFile();
    void aKillWhileWritingLeavesTheFile_data();
    void aKillWhileWritingLeavesTheFile();
    void aFullDiskLeavesTheFile_data();
    void aFullDiskLeavesTheFile();
    void aKillAtAnyMomentLeavesAWholeFile_data();
    void aKillAtAnyMomentLeavesAWholeFile();
    void tellsWhenStandardOutputIsFull();
    void writesIntoAPipe();

private:
    QStringList files() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files);
    }

    std::unique_ptr<StepctlFolder> m_folder;
};

void TestFaults::init()
{
    m_folder = std::make_unique<StepctlFolder>();
#ifdef Q_OS_UNIX
    m_folder->prepare = [] { limit(RLIMIT_CORE, 0); };
#endif
}

void TestFaults::tellsWhatAPluginDid_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("plugin");
    const auto inStep = [](const char *type, const char *what) {
        QTest::newRow(type)
            << QStringList{"run", "script.json", "--output", "out.json"}
            << QString(R"({"type": "fixture.first"}, {"type": "fixture.%1"})").arg(type)
            << QString("stepctl: %1 in step 2 (fixture.%2); nothing was written\n").arg(what, type)
            << fatalSteps;
    };
    const auto elsewhere = [](const char *name, const QStringList &arguments, const char *step,
                              const char *line, const QString &plugin = fatalSteps) {
        QTest::newRow(name) << arguments << step << line << plugin;
    };
    inStep("abort", "abort");
    inStep("crash", "segmentation fault");
#ifndef Q_OS_WIN
    inStep("recursion", "segmentation fault");
#endif
    inStep("noexcept", "abort");
    inStep("exit", "exit() was called");
    inStep("interrupt", "interrupted");
    inStep("terminate", "terminated");
    const QStringList run{"run", "script.json", "--output", "out.json"};
    const QStringList convert{"convert", "script.json", "out.json"};
    const QString longStep = "fixture.abort" + QString(200, 'x');
    QTest::newRow("long type id") << run << QString(R"({"type": "%1"})").arg(longStep)
                                  << "stepctl: abort " + QString("in step 1 (%1)").arg(longStep).left(80)
            + "; nothing was written\n"
                                  << fatalSteps;
    // The limit may end while the plug-ins are loaded.
    elsewhere("hang", run + QStringList{"--time-limit", "0.3"}, R"({"type": "fixture.hang"})",
              "stepctl: the time limit of 0.3 s ran out ");
    elsewhere("setter", run, R"({"type": "fixture.setter", "setting": 1})",
              "stepctl: abort while the script was read; nothing was written\n");
    elsewhere("summary", run, R"({"type": "fixture.summary"})",
              "stepctl: abort while the result was made; nothing was written\n");
    elsewhere("destructor", run, R"({"type": "fixture.destructor"})",
              "stepctl: abort while the script was deleted; nothing was written\n");
    elsewhere("unloading", run, R"({"type": "fixture.unloading"})",
              "stepctl: abort while the plug-ins were unloaded; nothing was written\n");
    elsewhere("throwing step", run, R"({"type": "fixture.throw"})",
              "stepctl: step 1 (fixture.throw) threw an exception: out of paper\n", hostileSteps);
    elsewhere("setter, converting", convert, R"({"type": "fixture.setter", "setting": 1})",
              "stepctl: abort while the script was read; nothing was written\n");
    elsewhere("throwing setter, converting", convert, R"({"type": "fixture.brittle", "mood": 1})",
              "stepctl: an unexpected exception ended the work: bad mood\n", hostileSteps);
    for (const QString format : {"text", "json", "markdown"}) {
        const auto shown = [&](QStringList arguments, const char *line, const QString &plugin) {
            arguments += QStringList{"--format", format};
            const QString name = arguments.join(' ') + ", " + QFileInfo(plugin).baseName();
            elsewhere(qPrintable(name), arguments, "", line, plugin);
        };
        const char *exception = "stepctl: an unexpected exception ended the work: out of words\n";
        const char *exited = "stepctl: exit() was called while the result was made; nothing was written\n";
        shown({"palette"}, exception, throwingTexts);
        shown({"palette"}, exited, exitingTexts);
        if (format == "markdown")
            continue;
        shown({"describe", "fixture.name"}, exception, throwingTexts);
        shown({"describe", "fixture.name"}, exited, exitingTexts);
        shown({"describe", "fixture.summary"},
              "stepctl: abort while the result was made; nothing was written\n", fatalSteps);
    }
}

void TestFaults::tellsWhatAPluginDid()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, steps);
    QFETCH(QString, line);
    QFETCH(QString, plugin);
    m_folder->write("script.json", "{\"steps\": [" + steps.toUtf8() + "]}");
    m_folder->write("out.json", oldContent);
    const Run result = m_folder->run(arguments + QStringList{"--plugin", plugin});
    QVERIFY2(result.hasCrashed || result.status > 0, qPrintable(QString::number(result.status)));
    QVERIFY2(result.errors.contains(line), qPrintable(result.errors));
    QCOMPARE(result.errors.count("stepctl: "), 1);
    QCOMPARE(result.output, QString());
    QCOMPARE(m_folder->contentOf("out.json"), QByteArray(oldContent));
    QCOMPARE(files(), (QStringList{"out.json", "script.json"}));
}

// What ends it unseen otherwise, too.
void TestFaults::tellsHowAWorkerEnded_data()
{
    tellsWhatAPluginDid_data();
    const auto row = [](const char *type, const char *end) {
        QTest::newRow(type)
            << QStringList{"run", "script.json", "--output", "out.json"}
            << QString(R"({"type": "fixture.first"}, {"type": "fixture.%1"})").arg(type)
            << QString("stepctl: %1 in step 2 (fixture.%2); nothing was written\n").arg(end, type)
            << fatalSteps;
    };
    row("leave", "the process was ended with status 0");
#ifndef Q_OS_WIN
    row("kill", "killed");
#endif
}

void TestFaults::tellsHowAWorkerEnded()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, steps);
    QFETCH(QString, line);
    QFETCH(QString, plugin);
    m_folder->write("script.json", "{\"steps\": [" + steps.toUtf8() + "]}");
    m_folder->write("out.json", oldContent);
    Run result = m_folder->run(arguments + QStringList{"--isolate", "--plugin", plugin});
#ifdef QUILLMAP_SANITIZED
    // It starts one to find the names of functions.
    result.errors.remove("stepctl: 1 process that the plug-ins left running was ended\n");
#endif
    QCOMPARE(result.status, 2);
    line.replace("exit() was called", "the process was ended with status 0");
#if defined(Q_OS_WIN) || defined(QUILLMAP_SANITIZED)
    // There a signal ends a process with a status of the C library's, a crash with one of the system's or the
    // sanitizer's.
    line = line.mid(line.indexOf(QRegularExpression(" (in step|while) ")));
#endif
    QVERIFY2(result.errors.contains(line), qPrintable(result.errors));
    QCOMPARE(result.errors.count("stepctl: "), 1);
    QCOMPARE(result.output, QString());
    QCOMPARE(m_folder->contentOf("out.json"), QByteArray(oldContent));
    QCOMPARE(files(), (QStringList{"out.json", "script.json"}));
}

void TestFaults::aWorkerDoesTheSame_data()
{
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char *name, const QStringList &arguments) { QTest::newRow(name) << arguments; };
    row("run", {"run", "script.json", "--list", "items=@-", "--before"});
    row("run with a limit", {"run", "script.json", "--list", "items=@-", "--time-limit", "3600"});
    row("skipped step",
        {"run", "script.json", "--set", "items=[]", "--set", "other=[1]", "--format", "json"});
    row("bad script", {"run", "items.txt"});
    row("convert", {"convert", "script.json", "-", "--to", "json"});
    row("convert to a file", {"convert", "script.json", "out.qms"});
    row("palette", {"palette", "--format", "json"});
    row("describe", {"describe", "list.sort"});
    row("unknown step", {"describe", "list.none"});
    row("bad usage", {"describe"});
}

void TestFaults::aWorkerDoesTheSame()
{
    QFETCH(QStringList, arguments);
    m_folder->write("script.json", scriptOfSize(3));
    m_folder->write("items.txt", "no script");
    const Run here = m_folder->run(arguments, "b\na\n");
    const QByteArray written = m_folder->contentOf("out.qms");
    QFile::remove(m_folder->path() + "/out.qms");
    const Run apart = m_folder->run(arguments + QStringList("--isolate"), "b\na\n");
    QCOMPARE(apart.errors, here.errors);
    QCOMPARE(apart.output, here.output);
    QCOMPARE(apart.status, here.status);
    QVERIFY(m_folder->contentOf("out.qms") == written);
}

void TestFaults::leavesNoProcess_data()
{
    QTest::addColumn<QString>("next");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("errors");
    const QString left = "stepctl: 1 process that the plug-ins left running was ended\n";
    const auto row = [&](const char *next, const QString &options, const QString &line) {
        const QStringList list = options.split(' ', Qt::SkipEmptyParts);
        QTest::addRow("%s %s", next, qPrintable(options)) << next << list << line;
    };
    row("first", "", left);
    row("first", "--isolate", left);
    row("daemon", "", "stepctl: 2 processes that the plug-ins left running were ended\n");
    row("daemon", "--isolate", "stepctl: 2 processes that the plug-ins left running were ended\n");
    const QString nothing = " in step 2 (fixture.%1); nothing was written\n";
    row("abort", "", "stepctl: abort" + nothing.arg("abort"));
    row("exit", "", "stepctl: exit() was called" + nothing.arg("exit"));
    row("terminate", "", "stepctl: terminated" + nothing.arg("terminate"));
    row("hang", "--time-limit 0.3", "stepctl: the time limit of 0.3 s ran out" + nothing.arg("hang"));
    row("leave", "--isolate", left + "stepctl: the process was ended with status 0" + nothing.arg("leave"));
    row("kill", "--isolate", left + "stepctl: killed" + nothing.arg("kill"));
    row("hang", "--isolate --time-limit 0.3",
        left + "stepctl: the time limit of 0.3 s ran out" + nothing.arg("hang"));
}

void TestFaults::leavesNoProcess()
{
#ifdef Q_OS_LINUX
    QFETCH(QString, next);
    QFETCH(QStringList, options);
    QFETCH(QString, errors);
    const DaemonPipe pipe(m_folder->path());
    m_folder->write("script.json",
                    R"({"steps": [{"type": "fixture.daemon"}, {"type": "fixture.)" + next.toUtf8()
                        + R"("}]})");
    const Run result = m_folder->run(QStringList{"run", "script.json", "--plugin", fatalSteps} + options);
    QVERIFY(pipe.wasHeld());
    QVERIFY(!pipe.isHeld());
    QCOMPARE(result.errors, errors);
#else
    QSKIP("this system does not tell what a process started");
#endif
}

void TestFaults::leavesNoProcessWhenItIsEnded_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("end");
#ifdef Q_OS_LINUX
    for (const int end : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        for (const QString option : {"", "--isolate"})
            QTest::addRow("%s %s", strsignal(end), qPrintable(option))
                << option.split(' ', Qt::SkipEmptyParts) << end;
    }
#endif
}

void TestFaults::leavesNoProcessWhenItIsEnded()
{
#ifdef Q_OS_LINUX
    QFETCH(QStringList, options);
    QFETCH(int, end);
    const DaemonPipe pipe(m_folder->path());
    m_folder->write("script.json", R"({"steps": [{"type": "fixture.daemon"}, {"type": "fixture.hang"}]})");
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.start(TestPaths::stepctl(), QStringList{"run", "script.json", "--plugin", fatalSteps} + options);
    QVERIFY(process.waitForStarted(-1));
    QVERIFY(pipe.waitUntilHeld());
    QCOMPARE(kill(pid_t(process.processId()), end), 0);
    QVERIFY(process.waitForFinished(120000));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), end);
    QVERIFY(!pipe.isHeld());
    QCOMPARE(process.readAllStandardError().count("stepctl: "), 1);
    QCOMPARE(files(), QStringList("script.json"));
#else
    QSKIP("this system does not tell what a process started");
#endif
}

// Whatever number of files the system lets it open. In a world of its own, where only `sleep` is to suffer.
void TestFaults::endsNobodyElse()
{
#ifdef Q_OS_LINUX
    m_folder->write("script.json", scriptOfSize(1));
    const QString commands =
        "sleep 60 & witness=$!\n"
        "for limit in $(seq 4 40); do\n"
        "    (ulimit -n $limit; timeout 60 \"$0\" run script.json --isolate)\n"
        "    (ulimit -n $limit; timeout 60 \"$0\" check \"$1\" --only library.loads --jobs 1)\n"
        "done > /dev/null 2>&1\n"
        "kill -0 $witness && echo alive; kill $witness";
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.start("unshare",
                  {"--pid", "--fork", "--mount-proc", "--map-root-user", "sh", "-c", commands,
                   TestPaths::stepctl(), TestPaths::listPlugin()});
    QVERIFY(process.waitForFinished(200000));
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    if (errors.startsWith("unshare: "))
        QSKIP(qPrintable("no processes apart here: " + errors));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("alive\n"));
#else
    QSKIP("this system starts processes in another way");
#endif
}

void TestFaults::leavesIgnoredSignalsAlone()
{
#ifdef Q_OS_UNIX
    m_folder->prepare = [] { signal(SIGINT, SIG_IGN); };
    m_folder->write("script.json", R"({"steps": [{"type": "fixture.interrupt"}]})");
    const Run result = m_folder->run({"run", "script.json", "--plugin", fatalSteps});
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.endsWith("1 step: 1 skipped\n"), qPrintable(result.output));
#else
    QSKIP("this system does not hand on ignored signals");
#endif
}

void TestFaults::aTimeLimitThatIsKeptChangesNothing()
{
    m_folder->write("script.json", scriptOfSize(2));
    const Run result = m_folder->run({"run", "script.json", "--time-limit", "3600"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, m_folder->run({"run", "script.json"}).output);
}

// What writes the file out.json, for all tests below. The result has more than 160,000 bytes.
static void addWriters()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("run") << QStringList{"run", "script.json", "--format", "json", "--output", "out.json"};
    QTest::newRow("convert") << QStringList{"convert", "script.json", "out.json"};
}

void TestFaults::aLimitOfFileSizeLeavesTheFile_data()
{
    addWriters();
}

void TestFaults::aLimitOfFileSizeLeavesTheFile()
{
#ifdef Q_OS_UNIX
    QFETCH(QStringList, arguments);
    m_folder->write("script.json", scriptOfSize(10000));
    m_folder->write("out.json", oldContent);
    for (const int size : {0, 1, 4096, 100000}) {
        m_folder->prepare = [size] {
            signal(SIGXFSZ, SIG_IGN);
            limit(RLIMIT_FSIZE, rlim_t(size));
        };
        const Run result = m_folder->run(arguments);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.errors, QString("stepctl: out.json cannot be written: File too large\n"));
        QCOMPARE(m_folder->contentOf("out.json"), QByteArray(oldContent));
        QCOMPARE(files(), (QStringList{"out.json", "script.json"}));
    }
#else
    QSKIP("this system has no limit of file size");
#endif
}

void TestFaults::aKillWhileWritingLeavesTheFile_data()
{
    addWriters();
}

// The system kills a program that goes on writing beyond the limit, so the moment is exact.
void TestFaults::aKillWhileWritingLeavesTheFile()
{
#ifdef Q_OS_UNIX
    QFETCH(QStringList, arguments);
    m_folder->write("script.json", scriptOfSize(10000));
    m_folder->write("out.json", oldContent);
    for (const int size : {0, 1, 4096, 100000}) {
        m_folder->prepare = [size] {
            limit(RLIMIT_CORE, 0);
            limit(RLIMIT_FSIZE, rlim_t(size));
        };
        const Run result = m_folder->run(arguments);
        QVERIFY(result.hasCrashed);
        QCOMPARE(m_folder->contentOf("out.json"), QByteArray(oldContent));
        const QStringList left = QDir(m_folder->path()).entryList({"out.json.*"}, QDir::Files);
        QVERIFY(left.size() <= 1);
        for (const QString &name : left) {
            QVERIFY(QFileInfo(m_folder->path() + '/' + name).size() <= size);
            QVERIFY(QFile::remove(m_folder->path() + '/' + name));
        }
    }
#else
    QSKIP("this system has no limit of file size");
#endif
}

void TestFaults::aFullDiskLeavesTheFile_data()
{
    addWriters();
}

void TestFaults::aFullDiskLeavesTheFile()
{
    QFETCH(QStringList, arguments);
    m_folder->write("script.json", scriptOfSize(10000));
    arguments.replaceInStrings("out.json", "disk/out.json");
    // Mounted in a namespace of its own, the disk is gone when the shell is.
    const QString commands = "mkdir -p disk && mount -t tmpfs -o size=64k none disk || exit 77\n"
                             "printf 'as it was' > disk/out.json\n"
                             "\"$0\" \"$@\"; echo \" status $?\" >&2\n"
                             "cat disk/out.json; echo; ls -A disk";
    bool isMounted = false;
    QString output;
    QString errors;
    for (const QStringList &options : {QStringList{"-m"}, QStringList{"-m", "--map-root-user"}}) {
        QProcess process;
        process.setWorkingDirectory(m_folder->path());
        process.start("unshare",
                      options + QStringList{"sh", "-c", commands, TestPaths::stepctl()} + arguments);
        isMounted = process.waitForFinished(120000) && process.exitCode() == 0;
        output = QString::fromUtf8(process.readAllStandardOutput());
        errors = QString::fromUtf8(process.readAllStandardError());
        if (isMounted)
            break;
    }
    if (!isMounted)
        QSKIP(qPrintable("no disk may be mounted here: " + errors));
    QCOMPARE(errors,
             QString("stepctl: disk/out.json cannot be written: No space left on device\n status 2\n"));
    QCOMPARE(output, QString("as it was\nout.json\n"));
}

void TestFaults::aKillAtAnyMomentLeavesAWholeFile_data()
{
    addWriters();
}

void TestFaults::aKillAtAnyMomentLeavesAWholeFile()
{
    QFETCH(QStringList, arguments);
#ifdef QUILLMAP_SANITIZED
    constexpr int rounds = 8; // A run takes ten times as long there.
#else
    constexpr int rounds = 40;
#endif
    m_folder->write("script.json", scriptOfSize(100000));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_folder->run(arguments).status, 0);
    const int wholeTime = int(timer.elapsed()) + 1;
    const QByteArray newContent = m_folder->contentOf("out.json");

    std::mt19937 random(6);
    for (int round = 0; round < rounds; ++round) {
        m_folder->write("out.json", oldContent);
        QProcess process;
        process.setWorkingDirectory(m_folder->path());
        process.start(TestPaths::stepctl(), arguments);
        process.waitForFinished(int(random() % uint(wholeTime)));
        process.kill();
        QVERIFY(process.state() == QProcess::NotRunning || process.waitForFinished());
        const QByteArray content = m_folder->contentOf("out.json");
        QVERIFY2(content == oldContent || content == newContent, content.left(100).constData());
        // Where the system has no unnamed files, one is left, which is no larger than the result.
        const QStringList left = QDir(m_folder->path()).entryList({"out.json.*"}, QDir::Files);
        QVERIFY(left.size() <= 1);
        for (const QString &name : left) {
            QVERIFY(QFileInfo(m_folder->path() + '/' + name).size() <= newContent.size());
            QVERIFY(QFile::remove(m_folder->path() + '/' + name));
        }
    }
}

void TestFaults::tellsWhenStandardOutputIsFull()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(full))
        QSKIP("this system has no device that is always full");
    m_folder->write("script.json", scriptOfSize(1));
    for (const QStringList &arguments :
         {QStringList{"run", "script.json"}, QStringList{"convert", "script.json", "-", "--to", "binary"},
          QStringList{"--help"}, QStringList{"--version"}, QStringList{"run", "--help"}}) {
        QProcess process;
        process.setWorkingDirectory(m_folder->path());
        process.setStandardOutputFile(full);
        process.start(TestPaths::stepctl(), arguments);
        QVERIFY(process.waitForFinished(120000));
        QCOMPARE(process.exitCode(), 2);
        QCOMPARE(process.readAllStandardError(),
                 QByteArray("stepctl: standard output cannot be written: No space left on device\n"));
    }
}

void TestFaults::writesIntoAPipe()
{
#ifdef Q_OS_UNIX
    const QByteArray pipe = QFile::encodeName(m_folder->path() + "/pipe");
    QCOMPARE(mkfifo(pipe.constData(), S_IRUSR | S_IWUSR), 0);
    // Open in both ways, it waits for nobody.
    const int descriptor = open(pipe.constData(), O_RDWR | O_NONBLOCK);
    QVERIFY(descriptor >= 0);
    m_folder->write("script.json", scriptOfSize(1));
    const Run result = m_folder->run({"run", "script.json", "--output", "pipe"});
    QByteArray received(1 << 16, '\0');
    received.truncate(int(qMax<ssize_t>(0, read(descriptor, received.data(), size_t(received.size())))));
    close(descriptor);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(received.endsWith("1 step: 1 wrote\n"), received.constData());
    QCOMPARE(files(), QStringList("script.json"));
#else
    QSKIP("this system has no named pipes in folders");
#endif
}

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
