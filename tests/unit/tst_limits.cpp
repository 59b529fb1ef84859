#include "tests/support/StepctlFolder.h"

#include "host/plugins/StepCatalogue.h"
#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"
#include "tests/support/TestPaths.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <QtTest>

#include <memory>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

using namespace StepHost;

namespace
{
constexpr qint64 mebibyte = 1 << 20;

QByteArray number32(quint32 number)
{
    char bytes[4];
    qToBigEndian(number, bytes);
    return QByteArray(bytes, 4);
}

// A binary script with the steps and the variables that are given.
QByteArray binaryScript(const QByteArray &steps, const QByteArray &variables)
{
    const QByteArray content = steps + number32(quint32(variables.size())) + variables;
    return QByteArray("\x89QMS\r\n\x1a\n\x00\x01", 10) + number32(quint32(content.size()))
        + QCryptographicHash::hash(content, QCryptographicHash::Sha256) + content;
}

// How many times its size a script takes in memory, at most.
constexpr int binaryTimes = 100;
constexpr int jsonTimes = 55;

const QByteArray noSteps = number32(0);

// The list "x", whose value is to follow, as CBOR.
const QByteArray listVariable = QByteArray::fromHex("81a3646e616d656178647479706564"
                                                    "6c6973746576616c7565");

QByteArray binaryList(const QByteArray &item, int count)
{
    return binaryScript(noSteps, listVariable + '\x9a' + number32(quint32(count)) + item.repeated(count));
}

QByteArray jsonList(const QByteArray &value)
{
    return R"({"variables": [{"name": "x", "type": "list", "value": )" + value + "}]}";
}

QByteArray jsonItems(const QByteArray &item, int count)
{
    return jsonList('[' + QByteArray(item + ',').repeated(count - 1) + item + ']');
}

QByteArray brackets(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

// A list in `depth` lists, the innermost of which holds `leaf`.
QVariant nested(int depth, const QVariant &leaf)
{
    QVariant value = leaf;
    for (int i = 0; i < depth; ++i)
        value = QVariantList{value};
    return value;
}

// The ten steps. The lists "items" and "few", and what is made of them, are not nested.
const char tenSteps[] = R"(
    {"type": "list.sort", "targetVar": "items"},
    {"type": "list.reverse", "targetVar": "items"},
    {"type": "list.intersect", "listA": "items", "listB": "few", "targetVar": "both"},
    {"type": "list.subtract", "listA": "items", "listB": "few", "targetVar": "rest"},
    {"type": "list.add", "targetVar": "items", "value": "new", "index": "0"},
    {"type": "list.get", "sourceVar": "items", "index": "1", "targetVar": "text"},
    {"type": "list.remove", "targetVar": "items", "mode": 1, "value": "new"},
    {"type": "list.merge", "listA": "items", "listB": "rest", "targetVar": "all"},
    {"type": "list.clear", "targetVar": "all"},
    {"type": "list.dedup", "targetVar": "both"})";

const char variables[] = R"(
    {"name": "items", "type": "list", "value": ["1", "2", "3"]},
    {"name": "few", "type": "list", "value": ["1", "2"]},
    {"name": "both", "type": "list"},
    {"name": "rest", "type": "list"},
    {"name": "all", "type": "list"},
    {"name": "text", "type": "string"})";

QByteArray scriptOf(const QByteArray &steps)
{
    return QByteArray("{\"variables\": [") + variables + "], \"steps\": [" + steps + "]}";
}

// Steps that double the list "few" so many times.
QByteArray doublings(int times)
{
    const QByteArray doubling =
        R"({"type": "list.merge", "listA": "few", "listB": "few", "targetVar": "few"})";
    return (doubling + ',').repeated(times - 1) + doubling;
}
} // namespace

// How much stepctl and the steps hold, and in how much memory.
class TestLimits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void runsLongListsAndScripts_data();
    void runsLongListsAndScripts();
    void readsInProportion_data();
    void readsInProportion();
    void tellsWhenMemoryRunsOut();
    void endsAtTheMemoryLimit_data();
    void endsAtTheMemoryLimit();
    void aMemoryLimitThatIsKeptChangesNothing();
    void refusesDeepNesting_data();
    void refusesDeepNesting();
    void stepsHoldDeepLists_data();
    void stepsHoldDeepLists();

private:
#if defined(Q_OS_LINUX) && !defined(QUILLMAP_SANITIZED)
    static constexpr bool canLimit = true;
#else
    static constexpr bool canLimit = false;
#endif

    // Lets stepctl have as many bytes of memory of its own, and of stack. Returns whether this system can.
    bool limit(qint64 memory, qint64 stack) const
    {
#if defined(Q_OS_LINUX) && !defined(QUILLMAP_SANITIZED)
        m_folder->prepare = [memory, stack] {
            const rlimit data{rlim_t(memory), rlim_t(memory)};
            setrlimit(RLIMIT_DATA, &data);
            const rlimit stackSize{rlim_t(stack), rlim_t(stack)};
            setrlimit(RLIMIT_STACK, &stackSize);
        };
        return true;
#else
        Q_UNUSED(memory)
        Q_UNUSED(stack)
        return false;
#endif
    }

    StepCatalogue m_catalogue;
    std::unique_ptr<StepctlFolder> m_folder;
};

constexpr qint64 usualStack = 8 * mebibyte;
// What stepctl has before it reads anything.
constexpr qint64 ownMemory = 16 * mebibyte;
const char noLimits[] = "the memory of a process is not limited here";

void TestLimits::initTestCase()
{
    QVERIFY(m_catalogue.addPlugin(TestPaths::listPlugin()));
}

void TestLimits::init()
{
    m_folder = std::make_unique<StepctlFolder>();
}

void TestLimits::runsLongListsAndScripts_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("steps");
    QTest::addColumn<int>("mebibytes");
    QTest::newRow("1,000,000 elements") << 1000000 << 10 << 320;
    QTest::newRow("10,000 steps") << 3 << 10000 << 32;
}

void TestLimits::runsLongListsAndScripts()
{
    QFETCH(int, items);
    QFETCH(int, steps);
    QFETCH(int, mebibytes);
    if (!limit(mebibytes * mebibyte, usualStack))
        QSKIP(noLimits);
    QByteArray lines;
    for (int i = 0; i < items; ++i)
        lines += QByteArray::number(qint64(i) * 7919 % items) + '\n';
    m_folder->write("items.txt", lines);
    const int rounds = steps / 10;
    m_folder->write("script.json", scriptOf((QByteArray(tenSteps) + ',').repeated(rounds - 1) + tenSteps));
    const Run result =
        m_folder->run({"run", "script.json", "--list", "items=@items.txt", "--output", "out.txt"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    const QByteArray output = m_folder->contentOf("out.txt");
    const QByteArray count = QByteArray::number(steps);
    QVERIFY2(output.endsWith('\n' + count + " steps: " + count + " wrote\n"), output.right(100).constData());
}

void TestLimits::readsInProportion_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("times");
    constexpr int size = 2 * mebibyte;
    constexpr int depth = 400;
    const auto binary = [](const char *name, const QByteArray &script) {
        QTest::newRow(name) << script << binaryTimes;
    };
    binary("small numbers", binaryList("\x01", size));
    binary("empty lists", binaryList("\x80", size));
    binary("empty texts", binaryList("\x60", size));
    binary("texts in lists", binaryList("\x81\x60", size / 2));
    binary("empty maps", binaryList("\xa0", size));
    binary("lists nested deep", binaryList(QByteArray(depth, '\x81') + '\x60', size / depth));
    binary("lists that claim much",
           binaryScript(noSteps,
                        listVariable + (QByteArray("\x9a", 1) + number32(size / 2)).repeated(size / 5)));
    const QByteArray emptyText = number32(0);
    const QByteArray clearStep = number32(10) + "list.clear" + '\x01' + number32(8) + number32(0) + emptyText;
    const int steps = size / clearStep.size();
    binary("steps", binaryScript(number32(quint32(steps)) + clearStep.repeated(steps), "\x80"));
    const QByteArray text(size, 'x');
    binary("text that claims 2 GiB",
           binaryScript(number32(1) + number32(10) + "list.clear" + '\x01' + number32(quint32(8 + size))
                            + number32(0) + number32(0x7ffffffe) + text,
                        "\x80"));

    const auto json = [](const char *name, const QByteArray &script) {
        QTest::newRow(name) << script << jsonTimes;
    };
    json("JSON: small numbers", jsonItems("1", size / 2));
    json("JSON: empty texts", jsonItems("\"\"", size / 3));
    json("JSON: texts in lists", jsonItems("[\"\"]", size / 5));
    json("JSON: empty objects", jsonItems("{}", size / 3));
    json("JSON: lists nested deep", jsonItems(brackets(depth), size / (2 * depth)));
}

void TestLimits::readsInProportion()
{
    QFETCH(QByteArray, script);
    QFETCH(int, times);
    if (!limit(ownMemory + times * qint64(script.size()), usualStack))
        QSKIP(noLimits);
    m_folder->write("script", script);
    const Run result = m_folder->run({"run", "script", "--output", "out.txt"});
    // The steps that are read are skipped.
    QVERIFY2(result.status == 0 || result.status == 1 || result.errors.startsWith("stepctl: script: "),
             qPrintable(result.errors));
}

void TestLimits::tellsWhenMemoryRunsOut()
{
    if (!limit(64 * mebibyte, usualStack))
        QSKIP(noLimits);
    m_folder->write("script.json", scriptOf(doublings(30)));
    m_folder->write("out.txt", "as it was");
    const Run result = m_folder->run({"run", "script.json", "--output", "out.txt"});
    QCOMPARE(result.status, 2);
    const QRegularExpression line("^stepctl: memory ran out, with a limit of 64 MiB, in step \\d+ "
                                  "\\(list\\.merge\\); nothing was written\n$");
    QVERIFY2(line.match(result.errors).hasMatch(), qPrintable(result.errors));
    QCOMPARE(m_folder->contentOf("out.txt"), QByteArray("as it was"));
}

void TestLimits::endsAtTheMemoryLimit_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("place");
    const auto row = [](const char *name, const QByteArray &script, const QStringList &arguments,
                        const QString &place) {
        QTest::newRow(name) << script << arguments << place;
        QTest::newRow(qPrintable(QString("%1, isolated").arg(name)))
            << script << arguments + QStringList("--isolate") << place;
    };
    const QStringList run{"run", "script", "--output", "out.json"};
    const QByteArray numbers = jsonItems("1", 2 * mebibyte);
    row("step", scriptOf(doublings(40)), run, "in step \\d+ \\(list\\.merge\\)");
    row("where nothing may be thrown", R"({"steps": [{"type": "fixture.memory"}]})",
        run + QStringList{"--plugin", TestPaths::fixture("FatalSteps")}, "in step 1 \\(fixture\\.memory\\)");
    row("script", numbers, run, "while the script was read");
    row("script to be converted", numbers, {"convert", "script", "out.json"}, "while the script was read");
}

void TestLimits::endsAtTheMemoryLimit()
{
    QFETCH(QByteArray, script);
    QFETCH(QStringList, arguments);
    QFETCH(QString, place);
    if (!canLimit)
        QSKIP(noLimits);
    m_folder->write("script", script);
    m_folder->write("out.json", "as it was");
    const Run result = m_folder->run(arguments + QStringList{"--memory-limit", "64M"});
    QCOMPARE(result.status, 2);
    const QRegularExpression line("^stepctl: memory ran out, with a limit of 64 MiB, " + place
                                  + "; nothing was written\n$");
    QVERIFY2(line.match(result.errors).hasMatch(), qPrintable(result.errors));
    QCOMPARE(m_folder->contentOf("out.json"), QByteArray("as it was"));
}

void TestLimits::aMemoryLimitThatIsKeptChangesNothing()
{
    if (!canLimit)
        QSKIP(noLimits);
    m_folder->write("script.json", scriptOf(tenSteps));
    const Run result = m_folder->run({"run", "script.json", "--memory-limit", "64m"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, m_folder->run({"run", "script.json"}).output);
}

void TestLimits::refusesDeepNesting_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("status");
    constexpr int much = 10000;
    // The variable, the list of variables and the document are levels too.
    constexpr int allowed = 512 - 3;
    const auto inScript = [](const char *name, const QByteArray &script, int status) {
        QTest::newRow(name) << script << QByteArray() << status;
    };
    inScript("JSON", jsonList(brackets(much)), 2);
    inScript("JSON that goes on", jsonList(QByteArray(much, '[')), 2);
    inScript("JSON objects", jsonList(QByteArray("{\"$QVariantMap\":").repeated(much)), 2);
    inScript("JSON, allowed", jsonList(brackets(allowed)), 0);
    inScript("binary", binaryScript(noSteps, listVariable + QByteArray(much, '\x81') + '\x80'), 2);
    inScript("binary maps", binaryScript(noSteps, listVariable + QByteArray("\xa1\x60").repeated(much)), 2);
    inScript("binary, allowed",
             binaryScript(noSteps, listVariable + QByteArray(allowed - 1, '\x81') + '\x80'), 0);
    inScript("binary, one more", binaryScript(noSteps, listVariable + QByteArray(allowed, '\x81') + '\x80'),
             2);
    QTest::newRow("new variable") << QByteArray("{}") << brackets(much) << 2;
    QTest::newRow("declared variable") << jsonList("[]") << brackets(much) << 2;
    QTest::newRow("variable, allowed") << jsonList("[]") << brackets(allowed) << 0;
}

// On a stack that the nesting would use up.
void TestLimits::refusesDeepNesting()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, value);
    QFETCH(int, status);
    // Without the limits it is only a weaker test.
    limit(64 * mebibyte, mebibyte);
    m_folder->write("script", script);
    QStringList arguments{"run", "script", "--format", "json"};
    if (!value.isEmpty())
        arguments += {"--set", "x=" + value};
    const Run result = m_folder->run(arguments);
    QVERIFY2(result.status == status, qPrintable(result.errors));
    QVERIFY2(status == 0 || result.errors.contains("are nested deeper than 512 levels"),
             qPrintable(result.errors));
    QVERIFY(status != 0 || result.output.contains(brackets(512 - 3)));
}

void TestLimits::stepsHoldDeepLists_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QVariantList>("expected");
    constexpr int depth = 1000;
    const QVariant one = nested(depth, 1);
    const QVariant two = nested(depth, 2);
    const auto row = [](const char *typeId, const QVariantMap &settings, const char *variable,
                        const QVariantList &expected) {
        QTest::newRow(typeId) << typeId << settings << variable << expected;
    };
    const QVariantMap onItems{{"targetVar", "items"}};
    row("list.add", {{"targetVar", "items"}, {"value", "$deep"}}, "items", {two, one, one, one});
    row("list.remove", {{"targetVar", "items"}, {"mode", 1}, {"value", "$deep"}}, "items", {two, one});
    row("list.get", {{"sourceVar", "items"}, {"index", "0"}, {"targetVar", "result"}}, "result",
        two.toList());
    row("list.clear", onItems, "items", {});
    row("list.sort", onItems, "items", {two, one, one});
    row("list.reverse", onItems, "items", {one, one, two});
    row("list.dedup", onItems, "items", {two, one});
    const QVariantMap onBoth{{"listA", "items"}, {"listB", "others"}, {"targetVar", "result"}};
    row("list.merge", onBoth, "result", {two, one, one, one});
    row("list.intersect", onBoth, "result", {one});
    row("list.subtract", onBoth, "result", {two});
}

void TestLimits::stepsHoldDeepLists()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, variable);
    QFETCH(QVariantList, expected);
    constexpr int depth = 1000;
    // Each made anew, so that none is equal just because it is the same.
    VariableScope scope;
    scope.declare("result", VarType::List);
    scope.set("items", QVariantList{nested(depth, 2), nested(depth, 1), nested(depth, 1)});
    scope.set("others", QVariantList{nested(depth, 1)});
    scope.set("deep", nested(depth, 1));
    const std::unique_ptr<Operation> step(m_catalogue.create(typeId, nullptr));
    QVERIFY(step);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it)
        QVERIFY(step->setProperty(it.key().toUtf8().constData(), it.value()));
    step->setVariableScope(&scope);
    const quint64 writes = scope.writeCount();
    step->doOperation();
    step->setVariableScope(nullptr);
    QVERIFY(scope.writeCount() > writes);
    QVERIFY(scope.get(variable) == QVariant(expected));
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"
