#include "tests/support/StepctlFolder.h"

#include <QDir>
#include <QtTest>

#include <memory>
#include <random>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

// Calls of stepctl as nobody makes them by chance.
class TestHostileCalls : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void closedStreams_data();
    void closedStreams();
    void showsArgumentsSafely_data();
    void showsArgumentsSafely();
    void refuses_data();
    void refuses();
    void survivesDamagedPlugins_data();
    void survivesDamagedPlugins();

private:
    std::unique_ptr<StepctlFolder> m_folder;
};

void TestHostileCalls::init()
{
    m_folder = std::make_unique<StepctlFolder>();
    m_folder->write("script.json", R"({"variables": [{"name": "a", "type": "list", "value": [2, 1]}],
                                       "steps": [{"type": "list.sort", "targetVar": "a"}]})");
}

void TestHostileCalls::closedStreams_data()
{
    QTest::addColumn<QVector<int>>("closed");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("errors");
    const QString noOutput = "stepctl: standard output cannot be written: Bad file descriptor\n";
    const auto row = [](const char *name, const QVector<int> &closed, const QStringList &arguments,
                        int status, const QString &errors) {
        QTest::newRow(name) << closed << arguments << status << errors;
    };
    row("input", {0}, {"run", "script.json"}, 0, "");
    row("input, read", {0}, {"run", "-"}, 2, "stepctl: standard input: Bad file descriptor\n");
    row("input, isolated", {0}, {"run", "script.json", "--isolate"}, 0, "");
    row("output", {1}, {"run", "script.json"}, 2, noOutput);
    row("output, isolated", {1}, {"run", "script.json", "--isolate"}, 2, noOutput);
    row("output, to a file", {1}, {"run", "script.json", "--output", "out.txt"}, 0, "");
    row("output, convert", {1}, {"convert", "script.json", "out.qms"}, 0, "");
    row("output, help", {1}, {"--help"}, 2, noOutput);
    row("output, check", {1}, {"check", TestPaths::listPlugin(), "--only", "library.loads"}, 2, noOutput);
    row("errors", {2}, {"run", "script.json"}, 0, "");
    row("errors, refused", {2}, {"run", "missing.json"}, 2, "");
    row("all", {0, 1, 2}, {"run", "script.json", "--output", "out.txt"}, 0, "");
    row("all, isolated", {0, 1, 2}, {"run", "script.json", "--isolate", "--output", "out.txt"}, 0, "");
}

void TestHostileCalls::closedStreams()
{
#ifdef Q_OS_UNIX
    QFETCH(QVector<int>, closed);
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, errors);
    const QByteArray expected = m_folder->run({"run", "script.json"}).output.toUtf8();
    const QByteArray script = m_folder->contentOf("script.json");
    m_folder->prepare = [closed] {
        for (const int descriptor : closed)
            close(descriptor);
    };
    const Run result = m_folder->run(arguments);
    QCOMPARE(result.errors, errors);
    QCOMPARE(result.status, status);
    QCOMPARE(m_folder->contentOf("script.json"), script);
    if (arguments.contains("out.txt"))
        QCOMPARE(m_folder->contentOf("out.txt"), expected);
#else
    QSKIP("this system closes other things");
#endif
}

void TestHostileCalls::showsArgumentsSafely_data()
{
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const QStringList &arguments) {
        QTest::newRow(qPrintable(arguments.join(' ').replace("?", "..."))) << arguments;
    };
    for (const char *command : {"run", "convert", "describe", "palette", "check"})
        row({command, "?"});
    row({"?"});
    row({"run", "script.json", "--output", "missing/?"});
    row({"run", "script.json", "--list", "a=@?"});
    row({"run", "script.json", "--list", "?"});
    row({"run", "script.json", "--set", "a=?"});
    row({"run", "script.json", "--set", "?"});
    row({"run", "script.json", "--plugin", "?"});
    row({"run", "script.json", "--format", "?"});
    row({"run", "script.json", "--time-limit", "?"});
    row({"run", "script.json", "--?"});
    row({"convert", "script.json", "missing/?.json"});
    row({"check", "plugin", "--only", "?"});
    row({"new-plugin", "script.json/?"});
    row({"new-plugin", "missing/?"});
    row({"new-plugin", "folder", "--name", "?"});
    row({"new-plugin", "folder", "--step", "?"});
}

// Whatever it is about, what is told commands no terminal, looks like nothing else and has an end.
void TestHostileCalls::showsArgumentsSafely()
{
    QFETCH(QStringList, arguments);
    const QVector<QChar> unseen{QChar(0x1b),   QChar(0x202e), QChar(0x2066),
                                QChar(0x200b), QChar(0x2028), QChar('\r')};
    QString text = "a";
    for (const QChar character : unseen)
        text += character;
    for (const QString &hostile : {QString(text + "\nb"), QString(30000, 'x')}) {
        QStringList given = arguments;
        const Run result = m_folder->run(given.replaceInStrings("?", hostile));
        QVERIFY(result.status > 0);
        const QString told = result.output + result.errors;
        QVERIFY(!told.isEmpty());
        QVERIFY2(told.size() < 20000, qPrintable(QString::number(told.size())));
        for (const QChar character : unseen)
            QVERIFY2(!told.contains(character), qPrintable(told));
        QVERIFY2(!told.contains("\nb"), qPrintable(told));
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList("script.json"));
}

void TestHostileCalls::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const char *error) {
        QTest::newRow(name) << arguments << QString("stepctl: %1\n").arg(error);
    };
    row("output without a name", {"run", "script.json", "--output", ""},
        "the file for the result has no name");
    row("output without a name, converting", {"convert", "script.json", "", "--to", "json"},
        "the file for the result has no name");
    row("script without a name", {"run", ""}, "the file has no name");
    row("standard input for script and list", {"run", "-", "--list", "a=@-"},
        "--list a=@-: standard input can be read only once");
}

void TestHostileCalls::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Run result = m_folder->run(arguments, m_folder->contentOf("script.json"));
    QCOMPARE(result.errors, error);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.status, 2);
}

void TestHostileCalls::survivesDamagedPlugins_data()
{
    QTest::addColumn<int>("place"); // From the end when it is negative.
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("rounds");
    QFile plugin(TestPaths::listPlugin());
    QVERIFY(plugin.open(QIODevice::ReadOnly));
    const int metaData = plugin.readAll().indexOf("QTMETADATA");
    QVERIFY(metaData > 0);
    QTest::newRow("header") << 0 << 64 << 10;
    QTest::newRow("metadata") << metaData << 400 << 10;
    QTest::newRow("sections") << -2000 << 2000 << 10;
    QTest::newRow("cut off") << 0 << 0 << 10;
}

// Damaged where it is read before any of its code runs.
void TestHostileCalls::survivesDamagedPlugins()
{
    QFETCH(int, place);
    QFETCH(int, length);
    QFETCH(int, rounds);
    QFile plugin(TestPaths::listPlugin());
    QVERIFY(plugin.open(QIODevice::ReadOnly));
    const QByteArray whole = plugin.readAll();
    std::mt19937 random(7);
    for (int round = 0; round < rounds; ++round) {
        QByteArray damaged = whole;
        if (length == 0)
            damaged.truncate(int(random() % uint(whole.size())));
        for (int change = 0; length > 0 && change < 4; ++change) {
            const int at = (place < 0 ? whole.size() + place : place) + int(random() % uint(length));
            damaged[at] = char(random());
        }
        m_folder->write("damaged" + TestPaths::moduleSuffix(), damaged);
        const Run result = m_folder->run(
            {"palette", "--isolate", "--plugin", m_folder->path() + "/damaged" + TestPaths::moduleSuffix()});
        QVERIFY2(result.status == 0 || result.status == 2, qPrintable(result.errors));
        QCOMPARE(result.errors.count("stepctl: "), result.status == 0 ? 0 : 1);
        QVERIFY(result.errors.size() < 3000);
    }
}

QTEST_GUILESS_MAIN(TestHostileCalls)
#include "tst_hostilecalls.moc"
