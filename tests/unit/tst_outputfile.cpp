#include "host/files/OutputFile.h"

#include "host/files/LeftBehind.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/WarningLog.h"

#include <QScopeGuard>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <memory>
#include <vector>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace StepHost;

class TestOutputFile : public QObject
{
    Q_OBJECT

private slots:
    void replacesFiles();
    void leavesFilesAsTheyWere();
    void keepsWhatElseTheFileHas_data();
    void keepsWhatElseTheFileHas();
    void tellsOfHardLinks();
    void writesWhereALinkLeads();
    void refuses_data();
    void refuses();
    void writesAFileOfTheLongestName();
    void removesWhatWasLeftBehind();
    void keepsAFolderWhileItIsUsed();
    void putsOffTheEnd();
    void writersAtTheSameTime();
};

void TestOutputFile::replacesFiles()
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("a.bin");
    for (const QByteArray &bytes : {QByteArray(3 << 20, 'x'), QByteArray("a\0\r\n\xff", 5), QByteArray()}) {
        const Result<QString> written = writeOutputFile(fileName, bytes);
        QVERIFY2(written, qPrintable(errorOf(written)));
        QCOMPARE(*written, QString());
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == bytes);
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("a.bin"));
}

void TestOutputFile::leavesFilesAsTheyWere()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    for (const char *name : {"folder", "missing/a"}) {
        const Result<QString> written = writeOutputFile(folder.filePath(name), "x");
        QVERIFY2(!written, name);
        QVERIFY(!written.error().isEmpty());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("folder"));
}

void TestOutputFile::keepsWhatElseTheFileHas_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("owner");
    QTest::addColumn<int>("group");
    QTest::newRow("private") << 0600 << 0 << 0;
    QTest::newRow("for all") << 0666 << 0 << 0;
    QTest::newRow("program") << 0750 << 0 << 0;
    QTest::newRow("special bits") << 07755 << 0 << 0;
    QTest::newRow("of another") << 0640 << 1234 << 1235;
    QTest::newRow("special bits of another") << 06755 << 1234 << 1235;
}

void TestOutputFile::keepsWhatElseTheFileHas()
{
#ifdef Q_OS_UNIX
    QFETCH(int, mode);
    QFETCH(int, owner);
    QFETCH(int, group);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("a");
    const QByteArray name = QFile::encodeName(fileName);
    QVERIFY(writeOutputFile(fileName, "old"));
    if (owner != 0 && chown(name.constData(), uid_t(owner), gid_t(group)) != 0)
        QSKIP("only root may give files away");
    QCOMPARE(chmod(name.constData(), mode_t(mode)), 0);
    struct stat before;
    QCOMPARE(stat(name.constData(), &before), 0);
    const Result<QString> written = writeOutputFile(fileName, "new");
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(*written, QString());
    struct stat after;
    QCOMPARE(stat(name.constData(), &after), 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
#else
    QSKIP("this system has other owners and modes");
#endif
}

void TestOutputFile::tellsOfHardLinks()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(writeOutputFile(folder.filePath("a"), "old"));
    QCOMPARE(::link(QFile::encodeName(folder.filePath("a")).constData(),
                    QFile::encodeName(folder.filePath("b")).constData()),
             0);
    const Result<QString> written = writeOutputFile(folder.filePath("a"), "new");
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(*written, QString("the old file's hard links could not be kept"));
    QFile other(folder.filePath("b"));
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), QByteArray("old"));
#else
    QSKIP("what a hard link is differs on this system");
#endif
}

void TestOutputFile::writesWhereALinkLeads()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("far"));
    const QString link = folder.filePath("link");
    QVERIFY(QFile::link("far/a", link));
    for (const QByteArray &bytes : {QByteArray("first"), QByteArray("second")}) {
        const Result<QString> written = writeOutputFile(link, bytes);
        QVERIFY2(written, qPrintable(errorOf(written)));
        QVERIFY(QFileInfo(link).isSymLink());
        QFile file(folder.filePath("far/a"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), bytes);
    }
#else
    QSKIP("links are another thing on this system");
#endif
}

void TestOutputFile::refuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("error");
    QTest::newRow("folder") << "folder"
                            << "Is a directory";
    QTest::newRow("link to a folder") << "to-folder"
                                      << "Is a directory";
    QTest::newRow("links in a circle") << "circle"
                                       << "Too many levels of symbolic links";
    QTest::newRow("missing folder") << "missing/a"
                                    << "No such file or directory";
    QTest::newRow("file for a folder") << "file/a"
                                       << "Not a directory";
    QTest::newRow("name that is too long") << QString(256, 'n') << "File name too long";
}

void TestOutputFile::refuses()
{
#ifdef Q_OS_UNIX
    QFETCH(QString, name);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("folder"));
    QVERIFY(QFile::link("folder", folder.filePath("to-folder")));
    QVERIFY(QFile::link("circle", folder.filePath("circle")));
    QVERIFY(writeOutputFile(folder.filePath("file"), "old"));
    const auto entries = [&folder] {
        return QDir(folder.path())
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden | QDir::System);
    };
    const QStringList before = entries();
    const Result<QString> written = writeOutputFile(folder.filePath(name), "new");
    QVERIFY(!written);
    QCOMPARE(written.error(), error);
    QCOMPARE(entries(), before);
#else
    QSKIP("this system has other errors");
#endif
}

void TestOutputFile::writesAFileOfTheLongestName()
{
#ifdef Q_OS_UNIX
    constexpr int longest = 255;
    const QTemporaryDir folder;
    const QString name(longest, 'n');
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const Result<QString> written = writeOutputFile(folder.filePath(name), "new");
    QVERIFY2(written, qPrintable(errorOf(written)));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(name));
#else
    QSKIP("this system writes first under a longer name");
#endif
}

void TestOutputFile::removesWhatWasLeftBehind()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const auto touch = [&folder](const QString &name) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    };
    for (const char *name : {".quillmap-unfinished-left", ".quillmap-unfinished-used", ".quillmap-unfinished",
                             ".quillmap-profile", "a.backup", "quillmap-a"})
        touch(name);
    QVERIFY(QDir(folder.path()).mkpath(".quillmap-unfinished-folder/inner"));
    QVERIFY(QDir(folder.path()).mkpath(".quillmap-unfinished-folder-used"));
    QVERIFY(QFile::link("a.backup", folder.filePath(".quillmap-unfinished-link")));
    const bool hasOthers = [&] {
        touch(".quillmap-unfinished-other");
        return chown(QFile::encodeName(folder.filePath(".quillmap-unfinished-other")).constData(), 1234, 1234)
            == 0;
    }();
    if (!hasOthers)
        QFile::remove(folder.filePath(".quillmap-unfinished-other"));
    {
        const InUse file(folder.filePath(".quillmap-unfinished-used"));
        const InUse place(folder.filePath(".quillmap-unfinished-folder-used"));
        QVERIFY(writeOutputFile(folder.filePath("a"), "new"));
    }
    const auto entries = [&folder] {
        QStringList names =
            QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden, QDir::Name);
        names.removeOne(".quillmap-unfinished-other");
        return names;
    };
    QCOMPARE(entries(),
             (QStringList{".quillmap-profile", ".quillmap-unfinished", ".quillmap-unfinished-folder-used",
                          ".quillmap-unfinished-link", ".quillmap-unfinished-used", "a", "a.backup",
                          "quillmap-a"}));
    QVERIFY(writeOutputFile(folder.filePath("a"), "newer"));
    QCOMPARE(entries(),
             (QStringList{".quillmap-profile", ".quillmap-unfinished", ".quillmap-unfinished-link", "a",
                          "a.backup", "quillmap-a"}));
    QCOMPARE(QFile::exists(folder.filePath(".quillmap-unfinished-other")), hasOthers);
#else
    QSKIP("this system leaves other files behind");
#endif
}

// However many others clean up meanwhile.
void TestOutputFile::keepsAFolderWhileItIsUsed()
{
#ifdef Q_OS_WIN
    QSKIP("nothing is removed here");
#endif
    const QTemporaryDir place;
    qputenv("TMPDIR", place.path().toUtf8());
    const auto restore = qScopeGuard([] { qunsetenv("TMPDIR"); });
    std::atomic<bool> isOver{false};
    const std::unique_ptr<QThread> cleaner(QThread::create([&] {
        while (!isOver)
            removeLeftBehind(place.path());
    }));
    cleaner->start();
    const auto end = qScopeGuard([&] {
        isOver = true;
        cleaner->wait();
    });
    const WarningLog log;
    for (int i = 0; i < 300; ++i) {
        const TemporaryFolder folder;
        QVERIFY(folder.isValid());
        QCOMPARE(QFileInfo(folder.path()).path(), place.path());
        QFile file(folder.filePath("a"));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QCOMPARE(log.take().join("\n"), QString());
    QCOMPARE(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void TestOutputFile::putsOffTheEnd()
{
#ifdef Q_OS_UNIX
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        int reached[2];
        QCOMPARE(pipe(reached), 0);
        const pid_t child = fork();
        if (child == 0) {
            const rlimit none{0, 0};
            setrlimit(RLIMIT_CORE, &none);
            ::signal(signal, SIG_DFL);
            {
                const EndsLater endsLater;
                raise(signal);
                if (write(reached[1], "x", 1) != 1)
                    _exit(2);
            }
            _exit(1);
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        close(reached[1]);
        char mark = 0;
        QCOMPARE(read(reached[0], &mark, 1), ssize_t(1));
        close(reached[0]);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), signal);
    }
#else
    QSKIP("this system does not put off signals");
#endif
}

// Nobody takes the file of another for one that was left behind.
void TestOutputFile::writersAtTheSameTime()
{
#ifdef Q_OS_UNIX
    constexpr int writers = 4;
    constexpr int files = 50;
    const QTemporaryDir folder;
    QStringList errors[writers];
    std::vector<std::unique_ptr<QThread>> threads;
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back(QThread::create([&folder, writer, &list = errors[writer]] {
            for (int i = 0; i < files; ++i) {
                const Result<QString> written =
                    writeOutputFile(folder.filePath("a"), QByteArray(10000, char('a' + writer)));
                list.append(errorOf(written));
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    for (QStringList &list : errors) {
        list.removeAll(QString());
        QCOMPARE(list, QStringList());
    }
    QFile file(folder.filePath("a"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QCOMPARE(content, QByteArray(10000, content.at(0)));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("a"));
#else
    QSKIP("this system does not replace a file that another has open");
#endif
}

QTEST_GUILESS_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
