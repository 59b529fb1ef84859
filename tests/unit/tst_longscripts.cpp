#include "WindowFixture.h"

#include "host/running/StepTrial.h"
#include "tools/workbench/document/Recovery.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTreeView>

using namespace Workbench;

namespace
{
#ifdef QUILLMAP_SANITIZED
constexpr int stepCount = 300; // What is slow there says nothing.
#else
constexpr int stepCount = 10000;
#endif

/// A script of many steps, each about a variable that there is not.
QByteArray longScript()
{
    QByteArray json = R"({"variables": [{"name": "n", "type": "list", "value": [2, 1]}], "steps": [)";
    for (int i = 0; i < stepCount; ++i)
        json += QByteArray(i > 0 ? "," : "")
            + R"({"type": "list.add", "targetVar": "missing", "value": "$n.Size"})";
    return json + "]}";
}
} // namespace

/// What is done to a script of 10,000 steps, and how long the window is busy with it at a stretch. How fast the machine is
/// decides about the figures, so they are only told.
class TestLongScripts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void edits_data();
    void edits();

private:
    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<StepHost::StepTrial> m_trial;
    std::unique_ptr<WindowFixture> m;
};

void TestLongScripts::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    m = std::make_unique<WindowFixture>(m_catalogue);
    m_trial = std::make_unique<StepHost::StepTrial>(m_catalogue);
    m->window.document().setTrial(*m_trial);
    const QString fileName = m->folder.filePath("long.json");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(longScript());
    file.close();
    m->window.openFile(fileName);
    QTRY_COMPARE_WITH_TIMEOUT(m->script().rowCount(), stepCount, 60000);
}

void TestLongScripts::cleanupTestCase()
{
    m->window.document().undoStack().setClean();
    m.reset();
}

namespace
{
using Action = void (*)(WindowFixture &);

/// The longest time for which events wait, in milliseconds, from `action` on until all is quiet.
qint64 longestStall(WindowFixture &fixture, Action action)
{
    QElapsedTimer clock;
    clock.start();
    action(fixture);
    qint64 longest = clock.restart();
    // What is to be tried is tried in the order in which it came.
    bool isTried = false;
    fixture.window.document().whenTried({}, [&isTried](const QString &) { isTried = true; });
    // The recovery's timer is the slowest one. On a machine with much else to do it is never quiet.
    constexpr int quietMs = 50;
    constexpr int patienceMs = 500;
    QElapsedTimer quiet;
    QElapsedTimer done;
    quiet.start();
    done.start();
    while (!isTried || fixture.window.session().isRunning()
           || (!quiet.hasExpired(quietMs) && !done.hasExpired(patienceMs))) {
        clock.restart();
        QApplication::processEvents(QEventLoop::AllEvents, 0);
        const qint64 busy = clock.elapsed();
        longest = qMax(longest, busy);
        if (busy > 1)
            quiet.restart();
        if (!isTried || fixture.window.session().isRunning())
            done.restart();
    }
    return longest;
}

/// Changes a step, which makes a copy of the script.
void keepCopy(WindowFixture &fixture)
{
    auto *recovery = fixture.window.findChild<Recovery *>("copies");
    if (!recovery)
        recovery =
            new Recovery(fixture.window.document(), fixture.folder.filePath("copies"), &fixture.window);
    recovery->setObjectName("copies");
    recovery->setDelay(0);
    const Operation &step = fixture.script().step(1);
    fixture.window.document().setSetting(1, "targetVar", step.property("targetVar").toString() + "x");
}
} // namespace

Q_DECLARE_METATYPE(Action)

void TestLongScripts::edits_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<int>("rows");
    const auto row = [](const char *name, int rows, Action action) { QTest::newRow(name) << action << rows; };
    row("open", stepCount, [](WindowFixture &f) { f.window.openFile(f.folder.filePath("long.json")); });
    row("place a step", stepCount + 1,
        [](WindowFixture &f) { f.window.document().placeStep("list.clear", stepCount / 2); });
    row("undo", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("select another", stepCount, [](WindowFixture &f) { f.scriptPane()->setCurrentRow(stepCount - 1); });
    row("select all", stepCount, [](WindowFixture &f) { f.scriptPane()->selectAll(); });
    row("type a setting", stepCount,
        [](WindowFixture &f) { f.window.document().setSetting(stepCount / 3, "targetVar", "n"); });
    row("type a setting again", stepCount,
        [](WindowFixture &f) { f.window.document().setSetting(stepCount / 3, "targetVar", "na"); });
    row("add a variable", stepCount, [](WindowFixture &f) {
        f.setVariable("missing", QVariantList{3, 4}, VarType::List);
    });
    row("undo the variable", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("change a value", stepCount, [](WindowFixture &f) {
        f.setVariable("n", QVariantList{3, 4}, VarType::List);
    });
    row("copy all", stepCount, [](WindowFixture &f) {
        f.scriptPane()->selectAll();
        f.scriptPane()->setFocus();
        QTest::keyClick(f.scriptPane(), Qt::Key_C, Qt::ControlModifier);
    });
    row("delete all", 0, [](WindowFixture &f) {
        f.scriptPane()->selectAll();
        QTest::keyClick(f.scriptPane(), Qt::Key_Delete);
    });
    row("undo the deletion", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("delete every other", stepCount / 2, [](WindowFixture &f) {
        QList<int> rows;
        for (int i = 0; i < stepCount; i += 2)
            rows.append(i);
        f.window.document().removeSteps(rows);
    });
    row("undo that", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("disable all", stepCount, [](WindowFixture &f) {
        f.scriptPane()->selectAll();
        QTest::keyClick(f.scriptPane(), Qt::Key_Space);
    });
    row("undo disabling", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("move half of them", stepCount, [](WindowFixture &f) {
        QList<int> rows;
        for (int i = 0; i < stepCount / 2; ++i)
            rows.append(i);
        f.window.document().moveSteps(rows, stepCount);
    });
    row("undo the move", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("duplicate all", 2 * stepCount, [](WindowFixture &f) {
        f.scriptPane()->selectAll();
        QTest::keyClick(f.scriptPane(), Qt::Key_D, Qt::ControlModifier);
    });
    row("undo the copies", stepCount, [](WindowFixture &f) { f.window.document().undoStack().undo(); });
    row("scroll", stepCount, [](WindowFixture &f) {
        f.scriptPane()->verticalScrollBar()->setValue(f.scriptPane()->verticalScrollBar()->maximum() / 2);
    });
    row("run", stepCount, [](WindowFixture &f) { f.window.session().runAll(); });
    row("clear the results", stepCount, [](WindowFixture &f) { f.window.session().restore(); });
    row("save", stepCount,
        [](WindowFixture &f) { f.window.document().save(f.folder.filePath("saved.json")); });
    row("keep a copy", stepCount, [](WindowFixture &f) { keepCopy(f); });
    row("keep another", stepCount, [](WindowFixture &f) { keepCopy(f); });
}

void TestLongScripts::edits()
{
    QFETCH(Action, action);
    const qint64 stall = longestStall(*m, action);
    QTEST(m->script().rowCount(), "rows");
    qInfo("busy for %lld ms at most", stall);
}

RUN_TEST_MAIN(QApplication, TestLongScripts)
#include "tst_longscripts.moc"
