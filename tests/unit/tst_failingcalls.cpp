#include "tools/workbench/document/Recovery.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/document/ScriptModel.h"

#include "host/plugins/StepCatalogue.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/ProgramStart.h"
#include "tests/support/StepctlFolder.h"
#include "tests/support/TestPaths.h"

#include <QDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

namespace
{
const char oldContent[] = "as it was";
const char script[] = R"({"variables": [{"name": "a", "type": "list", "value": [1]}],
                          "steps": [{"type": "list.sort", "targetVar": "a"}]})";

/// One call that fails.
struct Failure
{
    QByteArray call;
    int n = 0; ///< Which one of them, from 1; 0 for none.
    int error = 0;
};

/// What came of writing the file `out.json` while a call failed.
struct Written
{
    QString errors; ///< What the user was told.
    bool isDone = false;
    bool hasFailed = false; ///< Whether there were as many calls.
};

constexpr char editorName[] = "save-and-be-killed";

/// Changes the script in \a folder, keeps a copy, which it tells, and saves; killed at the \a n-th call of \a call.
int saveAndBeKilled(const QString &folder, const QByteArray &call, int n)
{
    StepHost::StepCatalogue catalogue;
    Workbench::ScriptDocument document(catalogue);
    if (!catalogue.addPlugin(TestPaths::listPlugin()) || !document.open(folder + "/script.json").isEmpty())
        return 1;
    Workbench::Recovery recovery(document, folder + "/recovery");
    recovery.setDelay(0);
    QSignalSpy kept(&recovery, &Workbench::Recovery::kept);
    FailingCalls::fail(call, n, -SIGKILL);
    document.setSetting(0, "ascending", false);
    while (kept.isEmpty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    std::puts("kept");
    std::fflush(stdout);
    return document.save(folder + "/script.json").isEmpty() ? 0 : 1;
}
} // namespace

Q_DECLARE_METATYPE(Failure)

// Whatever call of the system fails while a file is written, the file is the old one or the new one, whole.
class TestFailingCalls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void theFileIsTheOldOneOrTheNewOne_data();
    void theFileIsTheOldOneOrTheNewOne();
    void tellsOfAnOwnerThatIsLost();
    void leavesNothingForLong_data();
    void leavesNothingForLong();
    void keepsTheScriptWhenKilled_data();
    void keepsTheScriptWhenKilled();

private:
    Written write(const QString &writer, const Failure &failure);
    Written runStepctl(const QStringList &arguments, const Failure &failure);
    Written save(const Failure &failure);
    QStringList files() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    }

    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<StepctlFolder> m_folder;
};

void TestFailingCalls::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestFailingCalls::init()
{
    m_folder = std::make_unique<StepctlFolder>();
    m_folder->write("script.json", script);
    m_folder->write("out.json", oldContent);
}

Written TestFailingCalls::runStepctl(const QStringList &arguments, const Failure &failure)
{
    const QTemporaryDir marks;
    m_folder->environment.insert("LD_PRELOAD", FAILING_CALLS_LIBRARY);
    m_folder->environment.insert("FAILING_CALL",
                                 failure.call + ' ' + QByteArray::number(failure.n) + ' '
                                     + QByteArray::number(failure.error));
    m_folder->environment.insert("FAILING_CALL_MARK", marks.filePath("mark"));
    const Run result = m_folder->run(arguments);
    return {result.errors, result.status == 0, QFile::exists(marks.filePath("mark"))};
}

Written TestFailingCalls::save(const Failure &failure)
{
    Workbench::ScriptDocument document(m_catalogue);
    document.open(m_folder->path() + "/script.json");
    FailingCalls::fail(failure.call, failure.n, failure.error);
    const QString error = document.save(m_folder->path() + "/out.json");
    const bool hasFailed = failure.n > 0 && FailingCalls::hasFailed();
    FailingCalls::fail("", 0, 0);
    return {error, error.isEmpty(), hasFailed};
}

Written TestFailingCalls::write(const QString &writer, const Failure &failure)
{
    if (writer == "run")
        return runStepctl({"run", "script.json", "--output", "out.json"}, failure);
    if (writer == "convert")
        return runStepctl({"convert", "script.json", "out.json"}, failure);
    return save(failure);
}

void TestFailingCalls::theFileIsTheOldOneOrTheNewOne_data()
{
    QTest::addColumn<QString>("writer");
    QTest::addColumn<Failure>("failure");
    for (const QString writer : {"run", "convert", "workbench"}) {
        for (const Failure &failure :
             {Failure{"open", 1, EACCES}, Failure{"write", 1, EIO}, Failure{"write", 1, ENOSPC},
              Failure{"fsync", 1, EIO}, Failure{"linkat", 1, EIO}, Failure{"rename", 1, EIO}}) {
            QTest::addRow("%s, %s, %s", qPrintable(writer), failure.call.constData(),
                          std::strerror(failure.error))
                << writer << failure;
        }
    }
}

void TestFailingCalls::theFileIsTheOldOneOrTheNewOne()
{
    QFETCH(QString, writer);
    QFETCH(Failure, failure);
    QVERIFY(write(writer, Failure()).isDone);
    const QByteArray newContent = m_folder->contentOf("out.json");
    QVERIFY(newContent != oldContent);

    int refusals = 0;
    constexpr int enough = 100;
    for (failure.n = 1; failure.n < enough; ++failure.n) {
        m_folder->write("out.json", oldContent);
        const Written written = write(writer, failure);
        QCOMPARE(files(), (QStringList{"out.json", "script.json"}));
        QCOMPARE(m_folder->contentOf("out.json"), written.isDone ? newContent : QByteArray(oldContent));
        QCOMPARE(written.errors.isEmpty(), written.isDone);
        if (!written.isDone) {
            ++refusals;
            QVERIFY2(written.errors.contains("out.json")
                         && written.errors.contains(std::strerror(failure.error)),
                     qPrintable(written.errors));
        }
        if (!written.hasFailed)
            break;
    }
    QVERIFY(failure.n < enough);
    QVERIFY(refusals > 0);
}

void TestFailingCalls::tellsOfAnOwnerThatIsLost()
{
    const Written written = write("run", {"fchown", 1, EPERM});
    QVERIFY(written.isDone);
    QCOMPARE(written.errors, QString("stepctl: out.json: the old file's group could not be kept\n"));
    QVERIFY(m_folder->contentOf("out.json") != oldContent);
}

void TestFailingCalls::leavesNothingForLong_data()
{
    QTest::addColumn<QString>("writer");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("left");
    for (const QString writer : {"run", "convert"}) {
        QTest::addRow("%s, interrupted", qPrintable(writer)) << writer << SIGINT << 0;
        QTest::addRow("%s, terminated", qPrintable(writer)) << writer << SIGTERM << 0;
        QTest::addRow("%s, killed", qPrintable(writer)) << writer << SIGKILL << 1;
    }
}

// At the moment when the new file has a name of its own.
void TestFailingCalls::leavesNothingForLong()
{
    QFETCH(QString, writer);
    QFETCH(int, signal);
    QFETCH(int, left);
    const auto leftBehind = [this] {
        return QDir(m_folder->path())
            .entryList({".quillmap-unfinished-*"}, QDir::Files | QDir::Hidden)
            .size();
    };
    QVERIFY(!write(writer, {"rename", 1, -signal}).isDone);
    QCOMPARE(leftBehind(), left);
    QCOMPARE(m_folder->contentOf("out.json") == oldContent, left > 0);
    QVERIFY(write(writer, Failure()).isDone);
    QCOMPARE(files(), (QStringList{"out.json", "script.json"}));
}

void TestFailingCalls::keepsTheScriptWhenKilled_data()
{
    QTest::addColumn<QString>("call");
    for (const char *call : {"open", "write", "fsync", "linkat", "rename"})
        QTest::newRow(call) << call;
}

// Killed at any moment of keeping a copy and saving: no file is broken, and what was kept is there.
void TestFailingCalls::keepsTheScriptWhenKilled()
{
    QFETCH(QString, call);
    const auto isChanged = [](const Workbench::ScriptDocument &document) {
        return !document.model().step(0).property("ascending").toBool();
    };
    int kills = 0;
    constexpr int enough = 100;
    for (bool isKilled = true; isKilled && kills < enough; kills += isKilled ? 1 : 0) {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath("script.json");
        QVERIFY(QFile::copy(m_folder->path() + "/script.json", fileName));
        QProcess editor;
        startProgram(editor, QCoreApplication::applicationFilePath(),
                     {editorName, folder.path(), call, QString::number(kills + 1)});
        QVERIFY(editor.waitForFinished(-1));
        isKilled = editor.exitStatus() == QProcess::CrashExit;
        QVERIFY(isKilled || editor.exitCode() == 0);
        const bool isKept = editor.readAllStandardOutput().contains("kept");

        Workbench::ScriptDocument saved(m_catalogue);
        QCOMPARE(saved.open(fileName), QString());
        Workbench::ScriptDocument document(m_catalogue);
        Workbench::Recovery recovery(document, folder.filePath("recovery"));
        const QVector<Workbench::Recovery::Copy> copies = recovery.leftCopies();
        QCOMPARE(QDir(folder.filePath("recovery")).entryList({"*.recovery"}, QDir::Files).size(),
                 copies.size());
        if (!copies.isEmpty()) {
            QCOMPARE(recovery.restore(copies.first()), QString());
            QVERIFY(isChanged(document));
        }
        QVERIFY(!isKept || isChanged(saved) || !copies.isEmpty());
    }
    QVERIFY(kills > 0 && kills < enough);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String(editorName))
        return saveAndBeKilled(arguments.value(2), arguments.value(3).toLatin1(), arguments.value(4).toInt());
    TestFailingCalls test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_failingcalls.moc"
