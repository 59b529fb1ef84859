#include "SpokenLanguage.h"
#include "WindowFixture.h"

#include "tools/workbench/settings/PropertyPane.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QDockWidget>
#include <QPushButton>
#include <QTreeView>

using namespace Workbench;

/// What is to be said of a script before it runs, as the user sees it.
class TestWorkbenchProblems : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void areListed_data();
    void areListed();
    void followTheScript();
    void leadToTheSetting();
    void makeWhatIsMissing();
    void areCountedInTheTitle();
    void keepTheCurrentOne();

private:
    static QTreeView *view(WindowFixture &fixture)
    {
        return fixture.window.findChild<QTreeView *>("problems");
    }
    static QStringList lines(WindowFixture &fixture);

    StepHost::StepCatalogue m_catalogue;
};

void TestWorkbenchProblems::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

/// The lines of the list, the cells of each joined.
QStringList TestWorkbenchProblems::lines(WindowFixture &fixture)
{
    QApplication::processEvents();
    const QAbstractItemModel *model = view(fixture)->model();
    QStringList lines;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells.append(model->index(row, column).data().toString());
        lines.append(cells.join(" | "));
    }
    return lines;
}

void TestWorkbenchProblems::areListed_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const char *language, const char *typeId,
                        const QVariantMap &settings, const char *line) {
        QTest::newRow(name) << language << typeId << settings << QString::fromUtf8(line);
    };
    const QVariantMap unknown{{"targetVar", "others"}};
    const QVariantMap wrongKind{{"targetVar", "count"}};
    const QVariantMap noNumber{{"targetVar", "names"}, {"index", "first"}};
    const QVariantMap unresolved{{"targetVar", "names"}, {"value", "$names.Size"}};
    row("missing", "en", "list.sort", {}, "No variable is chosen. | Change the setting");
    row("unknown", "en", "list.sort", unknown, "There is no variable “others” yet. | Create list “others”");
    row("wrong kind", "en", "list.sort", wrongKind, "“count” is not a list. | Change the setting");
    row("no number", "en", "list.remove", noNumber,
        "Not an integer. The step may skip its work. | Change the setting");
    row("unresolved", "en", "list.add", unresolved,
        "The variable has no “Size”, so this is empty. | Change the setting");
    row("missing, Chinese", "zh_CN", "list.sort", {}, "尚未选择变量。 | 更改设置");
    row("unknown, Chinese", "zh_CN", "list.sort", unknown, "还没有变量“others”。 | 创建列表“others”");
    row("wrong kind, Chinese", "zh_CN", "list.sort", wrongKind, "“count”不是列表。 | 更改设置");
    row("no number, Chinese", "zh_CN", "list.remove", noNumber, "不是整数，步骤可能会跳过。 | 更改设置");
    row("unresolved, Chinese", "zh_CN", "list.add", unresolved,
        "此变量没有“Size”，因此结果为空。 | 更改设置");
}

void TestWorkbenchProblems::areListed()
{
    QFETCH(QString, language);
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QString, line);
    const SpokenLanguage spoken(language);
    WindowFixture fixture(m_catalogue);
    fixture.setVariable("names", QVariantList{"b", "a"}, VarType::List);
    fixture.setVariable("count", 1, VarType::Int);
    fixture.place(typeId, settings);
    const QStringList shown = lines(fixture);
    QCOMPARE(shown.size(), 1);
    QVERIFY2(shown.first().startsWith("1  ") && shown.first().endsWith(line), qPrintable(shown.first()));
    // On the row, too.
    const QString problem = line.section(" | ", 0, 0);
    const QString row = fixture.script().index(0).data(ScriptModel::ProblemsRole).toStringList().join('\n');
    QVERIFY2(row.endsWith(problem), qPrintable(row));
}

void TestWorkbenchProblems::followTheScript()
{
    WindowFixture fixture(m_catalogue);
    ScriptDocument &document = fixture.window.document();
    fixture.place("list.sort", {{"targetVar", "a"}});
    fixture.place("list.clear", {{"targetVar", "b"}});
    QCOMPARE(lines(fixture).size(), 2);
    document.setEnabled({0}, false);
    QCOMPARE(lines(fixture).size(), 1);
    document.undoStack().undo();
    document.moveSteps({0}, 2);
    QVERIFY(lines(fixture).first().startsWith("1  "));
    QVERIFY2(lines(fixture).first().contains("“b”"), qPrintable(lines(fixture).first()));
    document.removeSteps({0});
    QCOMPARE(lines(fixture).size(), 1);
    QVERIFY(lines(fixture).first().startsWith("1  "));
    fixture.setVariable("a", QVariantList(), VarType::List);
    QVERIFY(lines(fixture).isEmpty());
    // A run changes nothing about them.
    document.undoStack().undo();
    fixture.run();
    QCOMPARE(lines(fixture).size(), 1);
    document.clear();
    QVERIFY(lines(fixture).isEmpty());
}

void TestWorkbenchProblems::leadToTheSetting()
{
    WindowFixture fixture(m_catalogue);
    fixture.setVariable("names", QVariantList(), VarType::List);
    fixture.place("list.remove", {{"targetVar", "names"}, {"index", "first"}});
    fixture.place("list.sort", {{"targetVar", "names"}});
    fixture.scriptPane()->setCurrentRow(1);
    QCOMPARE(lines(fixture).size(), 1);
    fixture.window.findChild<QDockWidget *>("settingsDock")->hide();
    QTest::keyClick(&fixture.window, Qt::Key_6, Qt::ControlModifier);
    QVERIFY(view(fixture)->hasFocus());
    view(fixture)->setCurrentIndex(view(fixture)->model()->index(0, 0));
    QTest::keyClick(view(fixture), Qt::Key_Return);
    QCOMPARE(fixture.scriptPane()->currentRow(), 0);
    const QWidget *setting = fixture.window.findChild<PropertyPane *>()->findChild<QWidget *>("index");
    QVERIFY(setting->isVisible());
    QVERIFY(QApplication::focusWidget() && setting->isAncestorOf(QApplication::focusWidget()));
}

void TestWorkbenchProblems::makeWhatIsMissing()
{
    WindowFixture fixture(m_catalogue);
    fixture.place("list.sort", {{"targetVar", "$names"}});
    fixture.place("list.clear");
    QCOMPARE(lines(fixture).size(), 2);
    auto *create = fixture.window.findChild<QPushButton *>("createMissing");
    QTest::keyClick(&fixture.window, Qt::Key_6, Qt::ControlModifier);
    view(fixture)->setCurrentIndex(view(fixture)->model()->index(1, 0));
    QVERIFY(!create->isVisible());
    view(fixture)->setCurrentIndex(view(fixture)->model()->index(0, 0));
    QVERIFY(create->isVisible());
    QCOMPARE(create->text(), QString::fromUtf8("Create list “names”"));
    QTest::keyClick(view(fixture), Qt::Key_Tab);
    QVERIFY(create->hasFocus());
    QTest::keyClick(create, Qt::Key_Space);
    QCOMPARE(fixture.window.document().variables().typeOf("names"), VarType::List);
    QCOMPARE(lines(fixture).size(), 1);
    fixture.window.document().undoStack().undo();
    QCOMPARE(lines(fixture).size(), 2);
}

void TestWorkbenchProblems::areCountedInTheTitle()
{
    WindowFixture fixture(m_catalogue);
    auto *dock = fixture.window.findChild<QDockWidget *>("problemsDock");
    QCOMPARE(dock->windowTitle(), QString("Problems"));
    fixture.place("list.sort");
    fixture.place("list.sort");
    lines(fixture);
    QCOMPARE(dock->windowTitle(), QString("Problems (2)"));
    fixture.window.document().removeSteps({0, 1});
    lines(fixture);
    QCOMPARE(dock->windowTitle(), QString("Problems"));
}

void TestWorkbenchProblems::keepTheCurrentOne()
{
    WindowFixture fixture(m_catalogue);
    for (int i = 0; i < 3; ++i)
        fixture.place("list.sort");
    QCOMPARE(lines(fixture).size(), 3);
    view(fixture)->setCurrentIndex(view(fixture)->model()->index(2, 0));
    fixture.window.document().removeSteps({0});
    QCOMPARE(lines(fixture).size(), 2);
    QCOMPARE(view(fixture)->currentIndex().row(), 1);
}

RUN_TEST_MAIN(QApplication, TestWorkbenchProblems)
#include "tst_workbenchproblems.moc"
