#include "WindowFixture.h"

#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/variables/VariablesModel.h"
#include "tools/workbench/variables/VariablesPane.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QAccessible>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QTableView>
#include <QTreeView>

using namespace Workbench;

class TestWorkbenchKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void everyStopOfTabIsSeen();
    void oneSelectionIsBright();
    void theCurrentStepIsMarked();
    void mnemonicsAreUnique();
    void addsAVariable();
    void keepsResults();
    void copiesTheLog();
    void outcomesAreSpoken();
    void settingsAreSpoken();

private:
    QImage picture() const
    {
        return m->window.grab().toImage();
    }

    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<WindowFixture> m;
};

void TestWorkbenchKeyboard::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestWorkbenchKeyboard::init()
{
    m = std::make_unique<WindowFixture>(m_catalogue);
    m->setVariable("names", QVariantList{"b", "a"}, VarType::List);
    m->place("list.sort", {{"targetVar", "names"}});
    m->place("list.clear", {{"targetVar", "missing"}});
    m->place("list.clear");
    m->run();
}

void TestWorkbenchKeyboard::cleanup()
{
    m.reset();
}

void TestWorkbenchKeyboard::everyStopOfTabIsSeen()
{
    m->scriptPane()->setCurrentRow(0);
    m->scriptPane()->setFocus();
    QSet<QWidget *> stops;
    constexpr int enough = 50;
    for (int i = 0; i < enough; ++i) {
        QWidget *before = QApplication::focusWidget();
        QApplication::processEvents();
        const QImage pictureBefore = picture();
        QTest::keyClick(before, Qt::Key_Tab);
        QApplication::processEvents();
        QWidget *stop = QApplication::focusWidget();
        if (stops.contains(stop))
            break;
        stops.insert(stop);
        const QByteArray name =
            stop->metaObject()->className() + QByteArray(" ") + stop->objectName().toUtf8();
        QVERIFY2(stop->isVisible(), name);
        // Leaving one and reaching the next both show; the caret may be in its dark half.
        QVERIFY2(picture() != pictureBefore, name);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(stop);
        QVERIFY2(!spoken->text(QAccessible::Name).isEmpty(), name);
        QVERIFY2(!qobject_cast<PropertyPane *>(stop), name);
    }
    for (const char *pane : {"paletteSearch", "paletteTree", "script", "variables", "log"})
        QVERIFY2(stops.contains(m->window.findChild<QWidget *>(pane)), pane);
}

void TestWorkbenchKeyboard::oneSelectionIsBright()
{
    const QList<QAbstractItemView *> views{m->window.findChild<QTreeView *>("paletteTree"), m->scriptPane(),
                                           m->window.findChild<QTableView *>("variables"),
                                           m->window.findChild<LogPane *>()};
    for (QAbstractItemView *view : views)
        view->setCurrentIndex(view->model()->index(0, 0));
    for (QAbstractItemView *focused : views) {
        // It may be behind another pane.
        for (QWidget *widget = focused; widget; widget = widget->parentWidget())
            widget->raise();
        focused->setFocus();
        QApplication::processEvents();
        for (QAbstractItemView *view : views) {
            if (!view->isVisible())
                continue;
            const QImage image = view->viewport()->grab().toImage();
            const QRgb bright = view->palette().color(QPalette::Active, QPalette::Highlight).rgb();
            int pixels = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    pixels += image.pixel(x, y) == bright ? 1 : 0;
            }
            QVERIFY2((pixels > 100) == (view == focused), qPrintable(view->objectName()));
        }
    }
}

void TestWorkbenchKeyboard::theCurrentStepIsMarked()
{
    ScriptPane *pane = m->scriptPane();
    pane->setFocus();
    pane->setCurrentRow(0);
    pane->selectAll();
    QApplication::processEvents();
    const QImage first = pane->viewport()->grab().toImage();
    // Moves the current step and leaves the selection as it is.
    QTest::keyClick(pane, Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(pane->currentRow(), 1);
    QCOMPARE(pane->selectionModel()->selectedRows().size(), 3);
    QApplication::processEvents();
    QVERIFY(pane->viewport()->grab().toImage() != first);
}

void TestWorkbenchKeyboard::mnemonicsAreUnique()
{
    const auto mnemonics = [](const QList<QAction *> &actions) {
        QStringList keys;
        for (const QAction *action : actions) {
            const QString key = QKeySequence::mnemonic(action->text()).toString();
            if (!key.isEmpty() && action->isVisible())
                keys.append(key);
        }
        return keys;
    };
    const auto verifyUnique = [&](const QList<QAction *> &actions, const QString &menu) {
        const QStringList keys = mnemonics(actions);
        QVERIFY2(QSet<QString>(keys.begin(), keys.end()).size() == keys.size(),
                 qPrintable(menu + ": " + keys.join(" ")));
    };
    const QList<QAction *> menus = m->window.menuBar()->actions();
    QCOMPARE(mnemonics(menus).size(), menus.size());
    verifyUnique(menus, "menu bar");
    for (const QAction *menu : menus)
        verifyUnique(menu->menu()->actions(), menu->text());
}

void TestWorkbenchKeyboard::addsAVariable()
{
    QTest::keyClick(&m->window, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClicks(QApplication::focusWidget(), "count");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QApplication::processEvents();
    QCOMPARE(m->window.document().variables().names(), QStringList({"names", "count"}));
}

void TestWorkbenchKeyboard::keepsResults()
{
    QTest::keyClick(&m->window, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(m->window.document().variables().get("names"), QVariant(QVariantList{"a", "b"}));
}

void TestWorkbenchKeyboard::copiesTheLog()
{
    auto *log = m->window.findChild<LogPane *>();
    log->setFocus();
    log->selectAll();
    QTest::keyClick(log, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    QCOMPARE(lines.size(), m->window.log().rowCount());
    QVERIFY(lines.size() > 1);
    QVERIFY2(lines.first().contains("missing"), qPrintable(lines.first()));
    QCOMPARE(lines.first().count('\t'), 2);
    QVERIFY2(lines.last().contains("Run completed"), qPrintable(lines.last()));
}

namespace
{
/// What a screen reader has of the cells of \a view.
QStringList spokenCells(QAbstractItemView *view)
{
    QStringList texts;
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view);
    for (int i = 0; i < list->childCount(); ++i)
        texts.append(list->child(i)->text(QAccessible::Name));
    return texts;
}
} // namespace

void TestWorkbenchKeyboard::outcomesAreSpoken()
{
    const QStringList steps = spokenCells(m->scriptPane());
    QCOMPARE(steps.size(), 3);
    QVERIFY2(steps.at(0).contains("wrote"), qPrintable(steps.at(0)));
    QVERIFY2(steps.at(1).contains("skipped") && steps.at(1).contains("missing"), qPrintable(steps.at(1)));
    QVERIFY2(steps.at(2).contains("No variable is chosen"), qPrintable(steps.at(2)));
    m->window.document().setEnabled({0}, false);
    const QStringList later = spokenCells(m->scriptPane());
    QVERIFY2(later.at(0).contains("not enabled"), qPrintable(later.at(0)));
    QVERIFY2(later.at(0).contains("before its settings were changed"), qPrintable(later.at(0)));

    QVERIFY(spokenCells(m->window.findChild<LogPane *>()).join('\n').contains("Warning: "));
    const QString variables = spokenCells(m->window.findChild<QTableView *>("variables")).join('\n');
    QVERIFY2(variables.contains("changed by the last run"), qPrintable(variables));
}

void TestWorkbenchKeyboard::settingsAreSpoken()
{
    m->scriptPane()->setCurrentRow(1);
    QTest::keyClick(&m->window, Qt::Key_3, Qt::ControlModifier);
    QAccessibleInterface *setting = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
    QVERIFY(!setting->text(QAccessible::Name).isEmpty());
    const QString hint = setting->text(QAccessible::Description);
    QVERIFY2(hint.contains("missing"), qPrintable(hint));
}

RUN_TEST_MAIN(QApplication, TestWorkbenchKeyboard)
#include "tst_workbenchkeyboard.moc"
