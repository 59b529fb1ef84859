#include "RunWorkerMain.h"

#include "tools/workbench/document/LogModel.h"
#include "tools/workbench/document/RunSession.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/document/StepMime.h"
#include "tools/workbench/window/PaletteModel.h"

#include "host/plugins/StepCatalogue.h"
#include "host/scripts/BinaryScript.h"
#include "tests/support/DaemonPipe.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/FixtureStep.h"
#include "tests/support/TestPaths.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSemaphore>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Workbench;

namespace
{
/// Runs steps that no other process could make.
StepHost::RunResult runHere(const StepHost::Script &script, VariableScope &variables,
                            const StepHost::RunObserver &observer)
{
    return StepHost::runScript(script, variables, observer);
}

/// A step that waits in its run until the test lets it go on.
class WaitingStep : public FixtureStep
{
public:
    WaitingStep(QSemaphore &begun, QSemaphore &mayEnd)
        : FixtureStep("test.wait"), m_begun(begun), m_mayEnd(mayEnd)
    {
    }

    void doOperation() const override
    {
        m_begun.release();
        m_mayEnd.acquire();
    }
    Operation *clone(QObject *) const override
    {
        return new WaitingStep(m_begun, m_mayEnd);
    }

private:
    QSemaphore &m_begun;
    QSemaphore &m_mayEnd;
};

QList<int> rows(std::initializer_list<int> list)
{
    return QList<int>(list);
}
} // namespace

class TestWorkbenchScript : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void paletteListsTheSteps();
    void placeAndRemove();
    void moves_data();
    void moves();
    void dragsWithinTheScript();
    void dropsFromThePalette();
    void dropsOfAnotherScriptMoveNothing();
    void duplicateAndPaste();
    void pasteRefusesOtherTexts();
    void enable();
    void settingsMergeIntoOneUndo();
    void variablesAreUndone();
    void everythingIsUndone();

    void savesAndOpens_data();
    void savesAndOpens();
    void saveKeepsTheOldFile();
    void saveTellsWhatItCouldNotKeep();
    void openRefusesAndChangesNothing_data();
    void openRefusesAndChangesNothing();

    void runsAll();
    void runsToAStep();
    void runsOneStepOnWhatTheLastRunLeft();
    void restoresTheVariables();
    void runLeavesTheScriptAlone();
    void stepsThroughTheScript();
    void waitsAtBreakpoints();
    void passesAStepOver();
    void startsOver();
    void takesVariablesWhileItWaits();
    void stopsWhileItWaits();
    void breakpointsFollowTheirSteps();
    void keepsBreakpointsBesideTheScript();
    void readsBreakpointsOfAnyFile_data();
    void readsBreakpointsOfAnyFile();
    void stopsBetweenSteps();
    void resultsFollowTheirSteps();
    void resultsBelongToTheSettingsOfTheRun();
    void tellsWhyAStepWasSkipped();
    void anotherScriptEndsTheRun();
    void stepsThatThrow();
    void textsWithoutBound();
    void textsThatDeceive();
    void aStepThatCrashesLeavesTheScript();
    void aStepThatHangsIsStopped();
    void endsWhatStepsLeftRunning();

private:
    void place(ScriptDocument &document, std::initializer_list<const char *> targets) const;
    QStringList targets(const ScriptDocument &document) const;
    void waitForEnd(const RunSession &session) const;
    void waitForPause(const RunSession &session, const ScriptDocument &document, int row) const;
    void placeMerges(ScriptDocument &document) const;
    StepHost::StepOutcome outcome(const ScriptDocument &document, int row) const;

    StepHost::StepCatalogue m_catalogue;
};

void TestWorkbenchScript::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

/// Places one step for each of \a targets and tells them apart by that setting.
void TestWorkbenchScript::place(ScriptDocument &document, std::initializer_list<const char *> targets) const
{
    for (const char *target : targets) {
        const int row = document.model().rowCount();
        document.placeStep("list.clear", row);
        document.setSetting(row, "targetVar", QString::fromUtf8(target));
    }
}

QStringList TestWorkbenchScript::targets(const ScriptDocument &document) const
{
    QStringList names;
    for (int row = 0; row < document.model().rowCount(); ++row)
        names.append(document.model().step(row).property("targetVar").toString());
    return names;
}

void TestWorkbenchScript::waitForEnd(const RunSession &session) const
{
    QTRY_VERIFY_WITH_TIMEOUT(!session.isRunning(), 60000);
}

/// Waits until the run waits before the step in \a row.
void TestWorkbenchScript::waitForPause(const RunSession &session, const ScriptDocument &document,
                                       int row) const
{
    QTRY_VERIFY_WITH_TIMEOUT(
        session.isPaused() && document.model().index(row).data(ScriptModel::NextRole).toBool(), 60000);
}

/// Three steps, each of which adds the list "b" to "a".
void TestWorkbenchScript::placeMerges(ScriptDocument &document) const
{
    VariableScope variables;
    variables.declare("a", VarType::List);
    variables.declare("b", VarType::List);
    variables.set("b", QVariantList{1});
    document.setVariables(variables, "Set");
    for (int row = 0; row < 3; ++row) {
        document.placeStep("list.merge", row);
        document.setSetting(row, "listA", "a");
        document.setSetting(row, "listB", "b");
        document.setSetting(row, "targetVar", "a");
    }
}

StepHost::StepOutcome TestWorkbenchScript::outcome(const ScriptDocument &document, int row) const
{
    return StepHost::StepOutcome(document.model().index(row).data(ScriptModel::OutcomeRole).toInt());
}

void TestWorkbenchScript::paletteListsTheSteps()
{
    PaletteModel palette(m_catalogue);
    const QAbstractItemModelTester tester(&palette);
    QCOMPARE(palette.rowCount(), 1);
    const QModelIndex category = palette.index(0, 0);
    QCOMPARE(palette.rowCount(category), 10);
    const QModelIndex first = palette.index(0, 0, category);
    QCOMPARE(first.data(PaletteModel::TypeIdRole).toString(), QString("list.sort"));
    QVERIFY(!first.data(Qt::DecorationRole).value<QIcon>().pixmap(24).isNull());
    QVERIFY(!palette.mimeData({category}));
    QCOMPARE(palette.supportedDragActions(), Qt::DropActions(Qt::CopyAction));
    const std::unique_ptr<QMimeData> data(palette.mimeData({first}));
    QCOMPARE(data->data(StepMime::stepType()), QByteArray("list.sort"));
}

void TestWorkbenchScript::placeAndRemove()
{
    ScriptDocument document(m_catalogue);
    const QAbstractItemModelTester tester(&document.model());
    place(document, {"a", "b", "c", "d"});
    document.placeStep("no.such.step", 0);
    QCOMPARE(targets(document), QStringList({"a", "b", "c", "d"}));
    document.removeSteps(rows({3, 0, 1}));
    QCOMPARE(targets(document), QStringList({"c"}));
    document.undoStack().undo();
    QCOMPARE(targets(document), QStringList({"a", "b", "c", "d"}));
    document.undoStack().redo();
    QCOMPARE(targets(document), QStringList({"c"}));
    document.removeSteps({});
    QCOMPARE(document.undoStack().index(), document.undoStack().count());
}

void TestWorkbenchScript::moves_data()
{
    QTest::addColumn<QList<int>>("moved");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("order");
    QTest::newRow("one down") << rows({0}) << 3 << "bcade";
    QTest::newRow("one up") << rows({4}) << 1 << "aebcd";
    QTest::newRow("to the end") << rows({1}) << 5 << "acdeb";
    QTest::newRow("scattered, downwards") << rows({0, 2}) << 5 << "bdeac";
    QTest::newRow("scattered, upwards") << rows({2, 4}) << 0 << "ceabd";
    QTest::newRow("from both sides") << rows({0, 4}) << 2 << "baecd";
    QTest::newRow("in any order") << rows({4, 0}) << 2 << "baecd";
    QTest::newRow("between themselves") << rows({1, 2}) << 2 << "abcde";
    QTest::newRow("where they stand") << rows({1, 2}) << 1 << "abcde";
    QTest::newRow("all") << rows({0, 1, 2, 3, 4}) << 3 << "abcde";
}

void TestWorkbenchScript::moves()
{
    QFETCH(QList<int>, moved);
    QFETCH(int, target);
    QFETCH(QString, order);
    ScriptDocument document(m_catalogue);
    const QAbstractItemModelTester tester(&document.model());
    place(document, {"a", "b", "c", "d", "e"});
    const int commands = document.undoStack().count();
    document.moveSteps(moved, target);
    QCOMPARE(targets(document).join(QString()), order);
    QCOMPARE(document.undoStack().count() > commands, order != "abcde");
    if (order == "abcde")
        return;
    document.undoStack().undo();
    QCOMPARE(targets(document).join(QString()), QString("abcde"));
    document.undoStack().redo();
    QCOMPARE(targets(document).join(QString()), order);
}

void TestWorkbenchScript::dragsWithinTheScript()
{
    ScriptDocument document(m_catalogue);
    place(document, {"a", "b", "c"});
    ScriptModel &model = document.model();
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(0), model.index(1)}));
    QVERIFY(model.canDropMimeData(data.get(), Qt::MoveAction, 3, 0, QModelIndex()));
    // A view that is told that the drop worked would remove the rows.
    QVERIFY(!model.dropMimeData(data.get(), Qt::MoveAction, 3, 0, QModelIndex()));
    QCOMPARE(targets(document), QStringList({"c", "a", "b"}));
    const std::unique_ptr<QMimeData> last(model.mimeData({model.index(2)}));
    QVERIFY(!model.dropMimeData(last.get(), Qt::CopyAction, 0, 0, QModelIndex()));
    QCOMPARE(targets(document), QStringList({"b", "c", "a", "b"}));
}

void TestWorkbenchScript::dropsFromThePalette()
{
    ScriptDocument document(m_catalogue);
    place(document, {"a", "b"});
    QMimeData data;
    data.setData(StepMime::stepType(), "list.sort");
    QVERIFY(document.model().dropMimeData(&data, Qt::CopyAction, 1, 0, QModelIndex()));
    QCOMPARE(targets(document), QStringList({"a", "", "b"}));
    QCOMPARE(document.model().step(1).typeId(), QString("list.sort"));
    QVERIFY(document.model().dropMimeData(&data, Qt::CopyAction, -1, -1, QModelIndex()));
    QCOMPARE(document.model().step(3).typeId(), QString("list.sort"));
    QMimeData other;
    other.setText("list.sort");
    QVERIFY(!document.model().canDropMimeData(&other, Qt::CopyAction, 0, 0, QModelIndex()));
    QVERIFY(!document.model().dropMimeData(&other, Qt::CopyAction, 0, 0, QModelIndex()));
}

void TestWorkbenchScript::dropsOfAnotherScriptMoveNothing()
{
    ScriptDocument document(m_catalogue);
    ScriptDocument other(m_catalogue);
    place(document, {"a", "b"});
    place(other, {"x", "y"});
    const std::unique_ptr<QMimeData> data(other.model().mimeData({other.model().index(1)}));
    document.model().dropMimeData(data.get(), Qt::MoveAction, 0, 0, QModelIndex());
    QCOMPARE(targets(document), QStringList({"a", "b"}));
    QMimeData broken;
    broken.setData(StepMime::rows(), "broken");
    document.model().dropMimeData(&broken, Qt::MoveAction, 0, 0, QModelIndex());
    QCOMPARE(targets(document), QStringList({"a", "b"}));
}

void TestWorkbenchScript::duplicateAndPaste()
{
    ScriptDocument document(m_catalogue);
    const QAbstractItemModelTester tester(&document.model());
    place(document, {"a", "b", "c"});
    document.setEnabled(rows({1}), false);
    document.duplicateSteps(rows({1, 0}), 3);
    QCOMPARE(targets(document), QStringList({"a", "b", "c", "a", "b"}));
    QVERIFY(!document.model().isEnabled(4));
    const QByteArray copied = document.stepsAs(StepHost::ScriptForm::Binary, rows({4, 2}));
    document.insertScript(copied, 0);
    QCOMPARE(targets(document), QStringList({"c", "b", "a", "b", "c", "a", "b"}));
    QVERIFY(!document.model().isEnabled(1));
    document.undoStack().undo();
    document.undoStack().undo();
    QCOMPARE(targets(document), QStringList({"a", "b", "c"}));
}

void TestWorkbenchScript::pasteRefusesOtherTexts()
{
    ScriptDocument document(m_catalogue);
    const QSignalSpy refused(&document, &ScriptDocument::refused);
    document.insertScript("anything", 0);
    document.insertScript(R"({"steps": [{"type": "no.such.step"}]})", 0);
    QCOMPARE(refused.count(), 2);
    QVERIFY(refused.last().first().toString().contains("no.such.step"));
    document.insertScript("{}", 0);
    QCOMPARE(document.model().rowCount(), 0);
    QVERIFY(document.undoStack().isClean());
}

void TestWorkbenchScript::enable()
{
    ScriptDocument document(m_catalogue);
    place(document, {"a", "b"});
    document.setEnabled(rows({0}), false);
    const int commands = document.undoStack().count();
    document.setEnabled(rows({0}), false);
    QCOMPARE(document.undoStack().count(), commands);
    document.setEnabled(rows({0, 1}), false);
    QVERIFY(!document.model().isEnabled(1));
    document.undoStack().undo();
    QVERIFY(!document.model().isEnabled(0));
    QVERIFY(document.model().isEnabled(1));
    QVERIFY(document.model().setData(document.model().index(0), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(document.model().isEnabled(0));
}

void TestWorkbenchScript::settingsMergeIntoOneUndo()
{
    ScriptDocument document(m_catalogue);
    document.placeStep("list.add", 0);
    const int commands = document.undoStack().count();
    for (const char *text : {"n", "na", "nam"})
        document.setSetting(0, "targetVar", QString(text));
    QCOMPARE(document.undoStack().count(), commands + 1);
    document.setSetting(0, "value", QString("x"));
    QCOMPARE(document.undoStack().count(), commands + 2);
    document.undoStack().undo();
    document.undoStack().undo();
    QCOMPARE(document.model().step(0).property("targetVar").toString(), QString());

    document.setSetting(0, "targetVar", QString("n"));
    document.setSetting(0, "targetVar", QString());
    QCOMPARE(document.undoStack().count(), commands);
}

void TestWorkbenchScript::variablesAreUndone()
{
    ScriptDocument document(m_catalogue);
    const QSignalSpy changes(&document, &ScriptDocument::variablesChanged);
    VariableScope variables;
    variables.set("a", 1);
    document.setVariables(variables, "Add");
    QCOMPARE(document.variables().names(), QStringList("a"));
    QCOMPARE(document.undoStack().undoText(), QString("Add"));
    document.undoStack().undo();
    QVERIFY(document.variables().names().isEmpty());
    document.undoStack().redo();
    QCOMPARE(document.variables().get("a"), QVariant(1));
    QCOMPARE(changes.count(), 3);
}

void TestWorkbenchScript::everythingIsUndone()
{
    ScriptDocument document(m_catalogue);
    const QAbstractItemModelTester tester(&document.model());
    place(document, {"a", "b", "c"});
    document.moveSteps(rows({0}), 3);
    document.duplicateSteps(rows({1}), 2);
    document.setEnabled(rows({0, 2}), false);
    document.removeSteps(rows({1, 3}));
    document.insertScript(R"({"steps": [{"type": "list.add", "value": "$x"}]})", 1);
    const QByteArray end = document.stepsAs(StepHost::ScriptForm::Binary, rows({0, 1, 2}));
    while (document.undoStack().canUndo())
        document.undoStack().undo();
    QCOMPARE(document.model().rowCount(), 0);
    while (document.undoStack().canRedo())
        document.undoStack().redo();
    QCOMPARE(document.stepsAs(StepHost::ScriptForm::Binary, rows({0, 1, 2})), end);
}

void TestWorkbenchScript::savesAndOpens_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isBinary");
    QTest::newRow("JSON") << "script.json" << false;
    QTest::newRow("binary") << "script.qms" << true;
    QTest::newRow("another suffix") << "script.txt" << false;
}

void TestWorkbenchScript::savesAndOpens()
{
    QFETCH(QString, name);
    QFETCH(bool, isBinary);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(name);
    ScriptDocument document(m_catalogue);
    place(document, {"a", "b"});
    document.setEnabled(rows({1}), false);
    VariableScope variables;
    variables.declare("a", VarType::List);
    variables.set("a", QVariantList{1, 1.0, "x", QVariant()});
    document.setVariables(variables, "Change");
    QVERIFY(!document.undoStack().isClean());
    QCOMPARE(document.save(fileName), QString());
    QVERIFY(document.undoStack().isClean());
    QCOMPARE(document.fileName(), QFileInfo(fileName).absoluteFilePath());
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(StepHost::isBinaryScript(file.readAll()), isBinary);

    ScriptDocument opened(m_catalogue);
    place(opened, {"old"});
    QCOMPARE(opened.open(fileName), QString());
    QCOMPARE(targets(opened), QStringList({"a", "b"}));
    QVERIFY(opened.model().isEnabled(0));
    QVERIFY(!opened.model().isEnabled(1));
    QCOMPARE(opened.variables().get("a"), variables.get("a"));
    QCOMPARE(opened.variables().typeOf("a"), VarType::List);
    QVERIFY(!opened.undoStack().canUndo());
    opened.clear();
    QCOMPARE(opened.model().rowCount(), 0);
    QVERIFY(opened.fileName().isEmpty());
    QVERIFY(opened.variables().names().isEmpty());
}

void TestWorkbenchScript::saveKeepsTheOldFile()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    place(document, {"a"});
    const QString error = document.save(folder.filePath("no folder/script.json"));
    QVERIFY(error.contains("script.json"));
    QVERIFY(!document.undoStack().isClean());
    QVERIFY(document.fileName().isEmpty());

    // What cannot be written at all leaves the file as it was.
    QVariantList deep;
    for (int i = 0; i < 1000; ++i)
        deep = QVariantList{QVariant(deep)};
    VariableScope variables;
    variables.set("deep", deep);
    const QString fileName = folder.filePath("script.json");
    QCOMPARE(document.save(fileName), QString());
    document.setVariables(variables, "Change");
    QVERIFY(!document.save(fileName).isEmpty());
    QVERIFY(!document.undoStack().isClean());
    ScriptDocument opened(m_catalogue);
    QCOMPARE(opened.open(fileName), QString());
    QCOMPARE(targets(opened), QStringList("a"));
}

void TestWorkbenchScript::openRefusesAndChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no JSON") << QByteArray("steps");
    QTest::newRow("unknown step") << QByteArray(R"({"steps": [{"type": "no.such.step"}]})");
    QTest::newRow("half a file") << QByteArray(R"({"steps": [{"type": "list.sort")");
    QTest::newRow("missing") << QByteArray();
}

void TestWorkbenchScript::openRefusesAndChangesNothing()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("bad.json");
    if (!content.isEmpty()) {
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    ScriptDocument document(m_catalogue);
    place(document, {"a"});
    QVERIFY(document.open(fileName).contains("bad.json"));
    QCOMPARE(targets(document), QStringList("a"));
    QVERIFY(document.undoStack().canUndo());
    QVERIFY(document.fileName().isEmpty());
}

namespace
{
/// Sorts names, fails to clear a variable that there is not, and takes the first name.
const char exampleScript[] = R"({
    "variables": [{"name": "names", "type": "list", "value": ["b", "a"]}, {"name": "first", "type": "string"}],
    "steps": [
        {"type": "list.sort", "targetVar": "names"},
        {"type": "list.clear", "targetVar": "missing"},
        {"type": "list.clear", "targetVar": "names", "enabled": false},
        {"type": "list.get", "sourceVar": "names", "index": "0", "targetVar": "first"}
    ]
})";

QString writeExample(const QTemporaryDir &folder)
{
    QFile file(folder.filePath("example.json"));
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(exampleScript);
    return file.fileName();
}
} // namespace

void TestWorkbenchScript::runsAll()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(writeExample(folder)), QString());
    session.runAll();
    QVERIFY(session.isRunning());
    waitForEnd(session);
    QVERIFY(session.hasResult());
    QCOMPARE(session.before().get("first"), QVariant(""));
    QCOMPARE(session.after().get("first"), QVariant("a"));
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Wrote);
    QCOMPARE(outcome(document, 1), StepHost::StepOutcome::Skipped);
    QCOMPARE(outcome(document, 2), StepHost::StepOutcome::Disabled);
    QCOMPARE(outcome(document, 3), StepHost::StepOutcome::Wrote);
    const QStringList warnings = document.model().index(1).data(ScriptModel::WarningsRole).toStringList();
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.first().contains("missing"));
    QVERIFY(document.model().index(1).data(Qt::ToolTipRole).toString().contains(warnings.first()));

    QCOMPARE(log.rowCount(), 2);
    QCOMPARE(log.index(0, LogModel::MessageColumn).data().toString(), warnings.first());
    QCOMPARE(log.index(0, 0).data(LogModel::StepRole).value<QObject *>(), &document.model().step(1));
    QVERIFY(log.index(0, LogModel::StepColumn).data().toString().startsWith("2  "));
    QVERIFY(!log.index(1, 0).data(LogModel::WarningRole).toBool());
}

void TestWorkbenchScript::runsToAStep()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(writeExample(folder)), QString());
    session.runTo(0);
    waitForEnd(session);
    QCOMPARE(session.after().get("names"), QVariant(QVariantList{"a", "b"}));
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Wrote);
    QCOMPARE(outcome(document, 1), StepHost::StepOutcome::NotRun);
    session.runTo(4);
    session.runTo(-1);
    QVERIFY(!session.isRunning());
}

void TestWorkbenchScript::runsOneStepOnWhatTheLastRunLeft()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(writeExample(folder)), QString());
    session.runStep(3);
    waitForEnd(session);
    QCOMPARE(session.after().get("first"), QVariant("b"));
    session.runStep(0);
    waitForEnd(session);
    session.runStep(3);
    waitForEnd(session);
    QCOMPARE(session.before().get("first"), QVariant("b"));
    QCOMPARE(session.after().get("first"), QVariant("a"));
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Wrote);
}

void TestWorkbenchScript::restoresTheVariables()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(writeExample(folder)), QString());
    session.runAll();
    waitForEnd(session);
    session.restore();
    QVERIFY(!session.hasResult());
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::NotRun);
    session.runStep(3);
    waitForEnd(session);
    QCOMPARE(session.after().get("first"), QVariant("b"));
}

void TestWorkbenchScript::runLeavesTheScriptAlone()
{
    const QTemporaryDir folder;
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(writeExample(folder)), QString());
    session.runAll();
    waitForEnd(session);
    QCOMPARE(document.variables().get("names"), QVariant(QVariantList{"b", "a"}));
    QVERIFY(document.undoStack().isClean());
}

namespace
{
std::vector<StepHost::ScriptStep> waitingSteps(int count, QSemaphore &begun, QSemaphore &mayEnd)
{
    std::vector<StepHost::ScriptStep> steps;
    for (int i = 0; i < count; ++i) {
        StepHost::ScriptStep step;
        step.operation = std::make_unique<WaitingStep>(begun, mayEnd);
        steps.push_back(std::move(step));
    }
    return steps;
}
} // namespace

void TestWorkbenchScript::stepsThroughTheScript()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    placeMerges(document);
    session.step();
    waitForPause(session, document, 0);
    QVERIFY(session.isRunning() && session.hasResult());
    QCOMPARE(int(outcome(document, 0)), int(StepHost::StepOutcome::NotRun));
    const int lastLine = log.rowCount() - 1;
    QCOMPARE(log.index(lastLine, LogModel::MessageColumn).data().toString(),
             QString("Paused before this step"));
    QVERIFY(log.index(lastLine, LogModel::StepColumn).data().toString().startsWith("1  "));
    session.step();
    waitForPause(session, document, 1);
    QCOMPARE(int(outcome(document, 0)), int(StepHost::StepOutcome::Wrote));
    QCOMPARE(session.after().get("a").toList().size(), 1);
    QCOMPARE(session.before().get("a").toList().size(), 0);
    // To the step before it, there is nothing to go on to.
    session.runTo(0);
    QVERIFY(session.isPaused());
    session.runTo(1);
    waitForPause(session, document, 2);
    QCOMPARE(session.after().get("a").toList().size(), 2);
    session.step();
    waitForEnd(session);
    QCOMPARE(session.after().get("a").toList().size(), 3);
    QVERIFY(!document.model().index(2).data(ScriptModel::NextRole).toBool());
    QCOMPARE(int(outcome(document, 2)), int(StepHost::StepOutcome::Wrote));
}

void TestWorkbenchScript::waitsAtBreakpoints()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    placeMerges(document);
    session.breakpoints().toggle({1, 2});
    session.runAll();
    waitForPause(session, document, 1);
    // One that is taken away meanwhile does not count any more.
    session.breakpoints().toggle({2});
    session.runAll();
    waitForEnd(session);
    QCOMPARE(session.after().get("a").toList().size(), 3);
    // A single step is run because it is wanted.
    session.runStep(1);
    waitForEnd(session);
    QCOMPARE(session.after().get("a").toList().size(), 4);
}

void TestWorkbenchScript::passesAStepOver()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    placeMerges(document);
    session.skip();
    QVERIFY(!session.isRunning());
    session.breakpoints().toggle({1});
    session.runAll();
    waitForPause(session, document, 1);
    session.skip();
    waitForPause(session, document, 2);
    session.runAll();
    waitForEnd(session);
    QCOMPARE(int(outcome(document, 1)), int(StepHost::StepOutcome::NotRun));
    QCOMPARE(int(outcome(document, 2)), int(StepHost::StepOutcome::Wrote));
    QCOMPARE(session.after().get("a").toList().size(), 2);
    QVERIFY(document.model().isEnabled(1));
}

void TestWorkbenchScript::startsOver()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    placeMerges(document);
    session.breakpoints().toggle({1});
    session.runAll();
    waitForPause(session, document, 1);
    session.startOver();
    waitForPause(session, document, 0);
    QCOMPARE(session.after().get("a").toList().size(), 0);
    QCOMPARE(int(outcome(document, 0)), int(StepHost::StepOutcome::NotRun));
    session.breakpoints().clear();
    session.runAll();
    waitForEnd(session);
    QCOMPARE(session.after().get("a").toList().size(), 3);
}

void TestWorkbenchScript::takesVariablesWhileItWaits()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    placeMerges(document);
    session.changeVariables(VariableScope(), "nothing");
    session.step();
    waitForPause(session, document, 0);
    VariableScope variables = session.after();
    variables.set("b", QVariantList{"x", "y"});
    session.changeVariables(variables, "Change");
    QCOMPARE(log.index(log.rowCount() - 1, LogModel::MessageColumn).data().toString(),
             QString("While paused: Change"));
    session.runAll();
    waitForEnd(session);
    QCOMPARE(session.after().get("a").toList(), QVariantList({"x", "y", "x", "y", "x", "y"}));
    // What the script starts with stays as it is.
    QCOMPARE(document.variables().get("b").toList(), QVariantList{1});
}

void TestWorkbenchScript::stopsWhileItWaits()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    auto session = std::make_unique<RunSession>(document, log);
    placeMerges(document);
    session->step();
    waitForPause(*session, document, 0);
    session->stop();
    waitForEnd(*session);
    QCOMPARE(int(outcome(document, 0)), int(StepHost::StepOutcome::NotRun));
    QVERIFY(
        log.index(log.rowCount() - 1, LogModel::MessageColumn).data().toString().startsWith("Run stopped"));
    // Whoever waits ends with the session.
    session->step();
    waitForPause(*session, document, 0);
    session.reset();
}

void TestWorkbenchScript::breakpointsFollowTheirSteps()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    place(document, {"a", "b", "c"});
    const auto marked = [&document] {
        QList<int> rows;
        for (int row = 0; row < document.model().rowCount(); ++row) {
            if (document.model().index(row).data(ScriptModel::BreakpointRole).toBool())
                rows.append(row);
        }
        return rows;
    };
    QVERIFY(document.model().setData(document.model().index(1), true, ScriptModel::BreakpointRole));
    QCOMPARE(marked(), rows({1}));
    QVERIFY(document.model().index(1).data(Qt::AccessibleTextRole).toString().contains("breakpoint"));
    document.moveSteps({1}, 0);
    QCOMPARE(marked(), rows({0}));
    document.removeSteps({0});
    QCOMPARE(marked(), rows({}));
    document.undoStack().undo();
    QCOMPARE(marked(), rows({0}));
    session.breakpoints().toggle({0, 2});
    QCOMPARE(marked(), rows({0, 2}));
    session.breakpoints().toggle({0, 2});
    QCOMPARE(marked(), rows({}));
}

void TestWorkbenchScript::keepsBreakpointsBesideTheScript()
{
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("clean.json");
    const QString kept = Breakpoints::fileFor(fileName);
    {
        ScriptDocument document(m_catalogue);
        LogModel log;
        RunSession session(document, log);
        place(document, {"a", "b", "c"});
        session.breakpoints().toggle({1});
        QVERIFY(!QFile::exists(kept));
        QCOMPARE(document.save(fileName), QString());
        QVERIFY(QFile::exists(kept));
        // Their numbers are those of the saved script.
        document.removeSteps({0});
        session.breakpoints().toggle({1});
        document.undoStack().undo();
    }
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    QCOMPARE(document.open(fileName), QString());
    QVERIFY(session.breakpoints().contains(&document.model().step(1)));
    QVERIFY(!session.breakpoints().contains(&document.model().step(2)));
    session.breakpoints().clear();
    QVERIFY(!QFile::exists(kept));
    session.breakpoints().toggle({2});
    QVERIFY(QFile::exists(kept));
    document.clear();
    QVERIFY(session.breakpoints().isEmpty());
    QVERIFY(QFile::exists(kept));
}

void TestWorkbenchScript::readsBreakpointsOfAnyFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("count");
    QTest::newRow("one") << QByteArray(R"({"breakpoints": [{"step": 2, "type": "list.clear"}]})") << 1;
    QTest::newRow("of another type") << QByteArray(R"({"breakpoints": [{"step": 2, "type": "list.sort"}]})")
                                     << 0;
    QTest::newRow("of no step") << QByteArray(R"({"breakpoints": [{"step": 3, "type": "list.clear"},
        {"step": 0, "type": "list.clear"}, {"step": "2", "type": "list.clear"}, 2]})")
                                << 0;
    QTest::newRow("something else") << QByteArray(R"({"breakpoints": {"step": 2}})") << 0;
    QTest::newRow("no JSON") << QByteArray("step 2") << 0;
    QTest::newRow("nothing") << QByteArray() << 0;
}

void TestWorkbenchScript::readsBreakpointsOfAnyFile()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("clean.json");
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    place(document, {"a", "b"});
    QCOMPARE(document.save(fileName), QString());
    QFile file(Breakpoints::fileFor(fileName));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
    file.close();
    QCOMPARE(document.open(fileName), QString());
    int count = 0;
    for (int row = 0; row < document.model().rowCount(); ++row)
        count += session.breakpoints().contains(&document.model().step(row)) ? 1 : 0;
    QTEST(count, "count");
}

void TestWorkbenchScript::stopsBetweenSteps()
{
    QSemaphore begun;
    QSemaphore mayEnd;
    ScriptDocument document(m_catalogue);
    LogModel log;
    document.model().setSteps(waitingSteps(3, begun, mayEnd));
    RunSession session(document, log, runHere);
    session.runAll();
    begun.acquire();
    session.stop();
    session.restore();
    session.runStep(0);
    QVERIFY(session.isRunning());
    mayEnd.release();
    waitForEnd(session);
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Skipped);
    QCOMPARE(outcome(document, 1), StepHost::StepOutcome::NotRun);
    const QModelIndex last = log.index(log.rowCount() - 1, LogModel::MessageColumn);
    QVERIFY(last.data().toString().startsWith("Run stopped"));
}

void TestWorkbenchScript::resultsFollowTheirSteps()
{
    QSemaphore begun;
    QSemaphore mayEnd;
    ScriptDocument document(m_catalogue);
    LogModel log;
    document.model().setSteps(waitingSteps(2, begun, mayEnd));
    RunSession session(document, log, runHere);
    session.runAll();
    begun.acquire();
    document.placeStep("list.sort", 0);
    document.removeSteps(rows({2}));
    mayEnd.release(2);
    waitForEnd(session);
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::NotRun);
    QCOMPARE(outcome(document, 1), StepHost::StepOutcome::Skipped);
}

void TestWorkbenchScript::resultsBelongToTheSettingsOfTheRun()
{
    QSemaphore begun;
    QSemaphore mayEnd;
    ScriptDocument document(m_catalogue);
    LogModel log;
    document.model().setSteps(waitingSteps(2, begun, mayEnd));
    RunSession session(document, log, runHere);
    session.runAll();
    begun.acquire();
    document.setEnabled(rows({0}), false);
    mayEnd.release(2);
    waitForEnd(session);
    const auto isOutdated = [&](int row) {
        return document.model().index(row).data(ScriptModel::OutdatedRole).toBool();
    };
    QVERIFY(isOutdated(0));
    QVERIFY(!isOutdated(1));
    document.undoStack().undo();
    QVERIFY(!isOutdated(0));
}

void TestWorkbenchScript::tellsWhyAStepWasSkipped()
{
    ScriptDocument document(m_catalogue);
    LogModel log;
    RunSession session(document, log);
    document.placeStep("list.clear", 0);
    session.runAll();
    waitForEnd(session);
    const QStringList reasons = document.model().index(0).data(ScriptModel::WarningsRole).toStringList();
    QCOMPARE(reasons.size(), 1);
    QVERIFY2(reasons.first().endsWith(": No variable is chosen."), qPrintable(reasons.first()));
    QCOMPARE(log.index(0, LogModel::MessageColumn).data().toString(), reasons.first());
    QVERIFY(document.model().index(0).data(Qt::ToolTipRole).toString().contains(reasons.first()));
}

void TestWorkbenchScript::anotherScriptEndsTheRun()
{
    QSemaphore begun;
    QSemaphore mayEnd;
    ScriptDocument document(m_catalogue);
    LogModel log;
    document.model().setSteps(waitingSteps(2, begun, mayEnd));
    RunSession session(document, log, runHere);
    session.runAll();
    begun.acquire();
    mayEnd.release();
    begun.acquire();
    mayEnd.release();
    document.clear();
    QVERIFY(!session.isRunning());
    QVERIFY(!session.hasResult());
    QCoreApplication::processEvents();
    QVERIFY(!session.hasResult());
}

void TestWorkbenchScript::stepsThatThrow()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("RudeSteps")));
    const PaletteModel palette(catalogue);
    QStringList names;
    for (int row = 0; row < palette.rowCount(); ++row) {
        names.append(palette.index(row, 0).data().toString());
        names.append(palette.index(0, 0, palette.index(row, 0)).data().toString());
    }
    QVERIFY(names.contains("(the plug-in threw an exception: out of places)"));
    QVERIFY(names.contains("(the plug-in threw an exception: out of names)"));

    ScriptDocument document(catalogue);
    document.placeStep("fixture.throw", 0);
    const QModelIndex step = document.model().index(0);
    QCOMPARE(step.data().toString(), QString("(the plug-in threw an exception: out of words)"));
    QCOMPARE(step.data(Qt::ToolTipRole).toString(), QString("(the plug-in threw an exception)"));
    step.data(Qt::DecorationRole);

    const QString noCopy("step 1: the plug-in gives no copy of it");
    QSignalSpy refused(&document, &ScriptDocument::refused);
    document.duplicateSteps({0}, 1);
    QCOMPARE(refused.size(), 1);
    QCOMPARE(refused.first().first().toString(), noCopy);
    QCOMPARE(document.model().rowCount(), 1);
    QCOMPARE(document.stepsAs(StepHost::ScriptForm::Json, {0}), QByteArray());
    const QTemporaryDir folder;
    QCOMPARE(document.save(folder.filePath("script.json")), noCopy);
    QVERIFY(!QFile::exists(folder.filePath("script.json")));

    LogModel log;
    RunSession session(document, log);
    session.runAll();
    QVERIFY(!session.isRunning());
    QCOMPARE(log.index(0, LogModel::MessageColumn).data().toString(), noCopy);
}

void TestWorkbenchScript::textsWithoutBound()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("RudeSteps")));
    ScriptDocument document(catalogue);
    document.placeStep("fixture.talk", 0);
    const QString summary = document.model().index(0).data().toString();
    QVERIFY(summary.size() < 10000100);
    QVERIFY(summary.startsWith("beginx"));
    QVERIFY(summary.contains("x ... (20000008 characters) ... x"));
    QVERIFY(summary.endsWith("xend"));
}

void TestWorkbenchScript::textsThatDeceive()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("RudeSteps")));
    ScriptDocument document(catalogue);
    document.placeStep("fixture.deceive", 0);
    const QModelIndex step = document.model().index(0);
    QCOMPARE(step.data().toString(), QString("a\\u202eb"));
    QCOMPARE(step.data(Qt::ToolTipRole).toString(), QString("a\\u2066b\\u001b"));
}

void TestWorkbenchScript::saveTellsWhatItCouldNotKeep()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("script.json");
    ScriptDocument document(m_catalogue);
    QSignalSpy remarked(&document, &ScriptDocument::remarked);
    QCOMPARE(document.save(fileName), QString());
    QCOMPARE(remarked.size(), 0);
    QCOMPARE(::link(QFile::encodeName(fileName).constData(), QFile::encodeName(fileName + "2").constData()),
             0);
    QCOMPARE(document.save(fileName), QString());
    QCOMPARE(remarked.size(), 1);
    QCOMPARE(remarked.first().first().toString(), fileName + ": the old file's hard links could not be kept");
#else
    QSKIP("what a hard link is differs on this system");
#endif
}

void TestWorkbenchScript::aStepThatCrashesLeavesTheScript()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("FatalSteps")));
    ScriptDocument document(catalogue);
    document.placeStep("fixture.abort", 0);
    LogModel log;
    RunSession session(document, log);
    session.runAll();
    waitForEnd(session);
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Failed);
    const QStringList lines = document.model().index(0).data(ScriptModel::WarningsRole).toStringList();
#ifdef Q_OS_UNIX
    QVERIFY2(lines.join('\n').contains("abort"), qPrintable(lines.join('\n')));
#endif
    QCOMPARE(log.index(0, 0).data(LogModel::StepRole).value<QObject *>(), &document.model().step(0));
}

void TestWorkbenchScript::aStepThatHangsIsStopped()
{
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("FatalSteps")));
    ScriptDocument document(catalogue);
    document.placeStep("fixture.hang", 0);
    LogModel log;
    RunSession session(document, log);
    session.runAll();
    const auto isShownRunning = [&] {
        return document.model().index(0).data(ScriptModel::RunningRole).toBool();
    };
    QTRY_VERIFY(isShownRunning());
    session.stop();
    QVERIFY(session.isRunning());
    session.stop();
    waitForEnd(session);
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Failed);
    const QString last = log.index(log.rowCount() - 1, LogModel::MessageColumn).data().toString();
    QVERIFY2(last.startsWith("Run stopped"), qPrintable(last));

    // Another script does not wait for it either, and can be run.
    session.runAll();
    QTRY_VERIFY(isShownRunning());
    document.clear();
    QVERIFY(!session.isRunning());
    document.placeStep("fixture.first", 0);
    session.runAll();
    waitForEnd(session);
    QCOMPARE(outcome(document, 0), StepHost::StepOutcome::Skipped);
}

void TestWorkbenchScript::endsWhatStepsLeftRunning()
{
#ifdef Q_OS_LINUX
    const QTemporaryDir folder;
    const DaemonPipe pipe(folder.path());
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    StepHost::StepCatalogue catalogue;
    QVERIFY(catalogue.addPlugin(TestPaths::fixture("FatalSteps")));
    ScriptDocument document(catalogue);
    document.placeStep("fixture.daemon", 0);
    LogModel log;
    RunSession session(document, log);
    session.runAll();
    waitForEnd(session);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(pipe.wasHeld());
    QVERIFY(!pipe.isHeld());
    const QString last = log.index(log.rowCount() - 1, LogModel::MessageColumn).data().toString();
    QVERIFY2(last.contains("that the steps left running"), qPrintable(last));
#else
    QSKIP("this system does not tell what a process started");
#endif
}

RUN_TEST_MAIN(QApplication, TestWorkbenchScript)
#include "tst_workbenchscript.moc"
