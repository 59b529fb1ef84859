#include "host/running/StartedProcesses.h"

#include "tests/support/DaemonPipe.h"

#include <QProcess>
#include <QtTest>

#include <csignal>
#include <memory>

using StepHost::StartedProcesses;

namespace
{
const QString holdPipe = QString::fromUtf8("exec 3>daemon; echo >&3; exec sleep 60");
}

class TestStartedProcesses : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void endsWhatWasStarted_data();
    void endsWhatWasStarted();
    void leavesOthersAlone();
    void leavesTheEndToWhoStarted();
    void watchesOnlyWhileItLives();
    void countsNothingTwice();

private:
    void start(const QString &commands) const
    {
        QVERIFY(QProcess::startDetached("sh", {"-c", commands}, m_folder->path()));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestStartedProcesses::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestStartedProcesses::endsWhatWasStarted_data()
{
    QTest::addColumn<QString>("commands");
    QTest::newRow("detached") << holdPipe;
    QTest::newRow("in a session of its own") << "exec setsid sh -c '" + holdPipe + "'";
    QTest::newRow("without an environment") << "exec env -i sh -c '" + holdPipe + "'";
    QTest::newRow("of a parent that goes on") << "sh -c '" + holdPipe + "'; true";
    QTest::newRow("of a parent that ended") << "(" + holdPipe + ") &";
    QTest::newRow("that takes no hint") << "trap '' HUP INT QUIT TERM; " + holdPipe;
    QTest::newRow("that begins anew all the time")
        << "exec 3>daemon; echo >&3; again() { again & exit; }; again";
    QTest::newRow("that is stopped") << "exec 3>daemon; echo >&3; kill -STOP $$";
}

void TestStartedProcesses::endsWhatWasStarted()
{
    QFETCH(QString, commands);
    const DaemonPipe pipe(m_folder->path());
    const StartedProcesses started;
    start(commands);
    QVERIFY(pipe.waitUntilHeld());
    QVERIFY(StartedProcesses::end() >= 1);
    QVERIFY(!pipe.isHeld());
}

void TestStartedProcesses::leavesOthersAlone()
{
    const DaemonPipe pipe(m_folder->path());
    QProcess other;
    other.setWorkingDirectory(m_folder->path());
    other.start("sh", {"-c", holdPipe});
    QVERIFY(pipe.waitUntilHeld());
    {
        const StartedProcesses started;
        QCOMPARE(StartedProcesses::end(), 0);
    }
    QVERIFY(pipe.isHeld());
    other.kill();
    QVERIFY(other.waitForFinished());
}

// A QProcess hears how its process ended.
void TestStartedProcesses::leavesTheEndToWhoStarted()
{
    const StartedProcesses started;
    QProcess process;
    process.start("sleep", {"60"});
    QVERIFY(process.waitForStarted());
    QCOMPARE(StartedProcesses::end(), 1);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), SIGKILL);
}

void TestStartedProcesses::watchesOnlyWhileItLives()
{
    const DaemonPipe pipe(m_folder->path());
    {
        const StartedProcesses started;
        start(holdPipe);
        QVERIFY(pipe.waitUntilHeld());
    }
    QVERIFY(!pipe.isHeld());

    const QTemporaryDir folder;
    const DaemonPipe other(folder.path());
    QProcess later;
    later.setWorkingDirectory(folder.path());
    later.start("sh", {"-c", holdPipe});
    QVERIFY(other.waitUntilHeld());
    QCOMPARE(StartedProcesses::end(), 0);
    QVERIFY(other.isHeld());
    later.kill();
    QVERIFY(later.waitForFinished());
}

void TestStartedProcesses::countsNothingTwice()
{
    const DaemonPipe pipe(m_folder->path());
    const StartedProcesses started;
    start(holdPipe);
    QVERIFY(pipe.waitUntilHeld());
    QCOMPARE(StartedProcesses::end(), 1);
    QCOMPARE(StartedProcesses::end(), 0);
}

QTEST_GUILESS_MAIN(TestStartedProcesses)
#include "tst_startedprocesses.moc"
