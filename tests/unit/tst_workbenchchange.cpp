#include "SpokenLanguage.h"
#include "WindowFixture.h"

#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/variables/VariablesModel.h"

#include "tests/support/ErrorOf.h"
#include "tests/support/TestPaths.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTreeView>

using namespace Workbench;

/// Changes that go through the whole script, by hand.
class TestWorkbenchChange : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void renamesWithItsUses();
    void refusesANameThatUsesCannotHave();
    void showsWhereAVariableIsUsed();
    void asksBeforeRemoving_data();
    void asksBeforeRemoving();
    void removesWhatIsNotUsedUnasked();
    void pastesWithVariables_data();
    void pastesWithVariables();
    void findsAndReplaces();
    void findsAgainAfterChanges();
    void leadsToWhatWasFound();

private:
    QTableView *variables()
    {
        return m->window.findChild<QTableView *>("variables");
    }
    QTreeView *hits()
    {
        return m->window.findChild<QTreeView *>("searchHits");
    }
    QString summary()
    {
        return m->window.findChild<QLabel *>("searchSummary")->text();
    }
    QString setting(int row, const char *property)
    {
        return m->script().step(row).property(property).toString();
    }
    void selectVariable(int row, int column = VariablesModel::NameColumn)
    {
        variables()->setFocus();
        variables()->setCurrentIndex(variables()->model()->index(row, column));
    }

    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<SpokenLanguage> m_language;
    std::unique_ptr<WindowFixture> m;
};

void TestWorkbenchChange::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
    m_language = std::make_unique<SpokenLanguage>("en");
}

void TestWorkbenchChange::cleanupTestCase()
{
    m_language.reset();
}

void TestWorkbenchChange::init()
{
    m = std::make_unique<WindowFixture>(m_catalogue);
    m->setVariable("old", QVariantList{"Bob", "Ann"}, VarType::List);
    m->setVariable("spare", 1, VarType::Int);
    m->place("list.sort", {{"targetVar", "$old"}});
    m->place("list.add", {{"targetVar", "old"}, {"value", "$old.Count"}});
    m->place("list.clear", {{"targetVar", "other"}});
}

void TestWorkbenchChange::cleanup()
{
    m.reset();
}

void TestWorkbenchChange::renamesWithItsUses()
{
    const int before = m->window.document().undoStack().count();
    selectVariable(0);
    QTest::keyClick(variables(), Qt::Key_Return);
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(editor);
    editor->setText("people");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m->window.document().variables().names(), QStringList({"people", "spare"}));
    QCOMPARE(setting(0, "targetVar"), QString("$people"));
    QCOMPARE(setting(1, "targetVar"), QString("people"));
    QCOMPARE(setting(1, "value"), QString("$people.Count"));
    QCOMPARE(setting(2, "targetVar"), QString("other"));
    QCOMPARE(m->window.document().undoStack().count(), before + 1);
    QCOMPARE(m->window.document().undoStack().undoText(), QString::fromUtf8("Rename “old” to “people”"));

    m->window.document().undoStack().undo();
    QCOMPARE(m->window.document().variables().names(), QStringList({"old", "spare"}));
    QCOMPARE(setting(0, "targetVar"), QString("$old"));
    QCOMPARE(setting(1, "value"), QString("$old.Count"));
    m->window.document().undoStack().redo();
    QCOMPARE(setting(1, "value"), QString("$people.Count"));
}

void TestWorkbenchChange::refusesANameThatUsesCannotHave()
{
    const QAbstractItemModel *model = variables()->model();
    const_cast<QAbstractItemModel *>(model)->setData(model->index(0, 0), "a.b", Qt::EditRole);
    QCOMPARE(m->window.document().variables().names(), QStringList({"old", "spare"}));
    QCOMPARE(setting(0, "targetVar"), QString("$old"));
}

void TestWorkbenchChange::showsWhereAVariableIsUsed()
{
    selectVariable(0);
    QTest::keyClick(variables(), Qt::Key_U, Qt::ControlModifier);
    QVERIFY(hits()->hasFocus());
    QCOMPARE(hits()->model()->rowCount(), 3);
    QCOMPARE(summary(), QString::fromUtf8("“old” is used in 3 settings"));
    hits()->setCurrentIndex(hits()->model()->index(2, 0));
    QCOMPARE(hits()->model()->index(2, 2).data().toString(), QString("$old.Count"));
    QTest::keyClick(hits(), Qt::Key_Return);
    QCOMPARE(m->scriptPane()->currentRow(), 1);
    const QWidget *value = m->window.findChild<PropertyPane *>()->findChild<QWidget *>("value");
    QVERIFY(QApplication::focusWidget() && value->isAncestorOf(QApplication::focusWidget()));
}

void TestWorkbenchChange::asksBeforeRemoving_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("remove") << "Remove" << QStringList{"spare"};
    QTest::newRow("cancel") << "Cancel" << QStringList{"old", "spare"};
    QTest::newRow("show") << "Show uses" << QStringList{"old", "spare"};
}

void TestWorkbenchChange::asksBeforeRemoving()
{
    QFETCH(QString, button);
    selectVariable(0);
    QString text;
    inNextDialog<QMessageBox>([&](QMessageBox *box) {
        text = box->text();
        press(box, button);
    });
    QTest::keyClick(variables(), Qt::Key_Delete);
    QVERIFY2(text.contains(QString::fromUtf8("“old” is used by 2 steps: 1, 2.")), qPrintable(text));
    QTEST(m->window.document().variables().names(), "left");
    QCOMPARE(hits()->model()->rowCount(), button == "Show uses" ? 3 : 0);
}

void TestWorkbenchChange::removesWhatIsNotUsedUnasked()
{
    selectVariable(1);
    QTest::keyClick(variables(), Qt::Key_Delete);
    QCOMPARE(m->window.document().variables().names(), QStringList{"old"});
}

void TestWorkbenchChange::pastesWithVariables_data()
{
    QTest::addColumn<QVariant>("present");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("target");
    const QVariantList same{"Bob", "Ann"};
    const QVariantList other{"Eve"};
    QTest::newRow("missing") << QVariant() << "" << QStringList{"old"} << "$old";
    QTest::newRow("the same") << QVariant(same) << "" << QStringList{"old"} << "$old";
    QTest::newRow("another, use it") << QVariant(other) << "Use the one here" << QStringList{"old"} << "$old";
    QTest::newRow("another, rename") << QVariant(other) << "Bring under a new name"
                                     << QStringList{"old", "old2"} << "$old2";
    QTest::newRow("another, cancel") << QVariant(other) << "Cancel" << QStringList{"old"} << "";
}

void TestWorkbenchChange::pastesWithVariables()
{
    QFETCH(QVariant, present);
    QFETCH(QString, button);
    QFETCH(QString, target);
    m->scriptPane()->setFocus();
    m->scriptPane()->setCurrentRow(0);
    QTest::keyClick(m->scriptPane(), Qt::Key_C, Qt::ControlModifier);

    WindowFixture other(m_catalogue);
    if (present.isValid())
        other.setVariable("old", present, VarType::List);
    const VariableScope before = other.window.document().variables();
    if (!button.isEmpty())
        inNextDialog<QMessageBox>([&](QMessageBox *box) { press(box, button); });
    other.scriptPane()->setFocus();
    QTest::keyClick(other.scriptPane(), Qt::Key_V, Qt::ControlModifier);
    const VariableScope &variables = other.window.document().variables();
    QTEST(variables.names(), "names");
    QCOMPARE(other.script().rowCount(), target.isEmpty() ? 0 : 1);
    if (target.isEmpty())
        return;
    QCOMPARE(other.script().step(0).property("targetVar").toString(), target);
    QCOMPARE(variables.get(target),
             button.startsWith("Use") ? present : QVariant(QVariantList{"Bob", "Ann"}));
    other.window.document().undoStack().undo();
    QCOMPARE(other.script().rowCount(), 0);
    QCOMPARE(variables.names(), before.names());
}

void TestWorkbenchChange::findsAndReplaces()
{
    QTest::keyClick(&m->window, Qt::Key_F, Qt::ControlModifier);
    auto *text = m->window.findChild<QLineEdit *>("searchText");
    auto *replacement = m->window.findChild<QLineEdit *>("replacementText");
    QVERIFY(text->hasFocus());
    QVERIFY(!m->window.findChild<QPushButton *>("replaceAll")->isEnabled());
    QTest::keyClicks(text, "OLD");
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(summary(), QString("Found in 4 places"));
    m->window.findChild<QCheckBox *>("matchCase")->click();
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(summary(), QString("Found in 0 places"));
    text->setText("Bob");
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(summary(), QString("Found in 1 place"));
    replacement->setText("Eve");
    auto *replace = m->window.findChild<QPushButton *>("replaceAll");
    replace->setFocus();
    QTest::keyClick(replace, Qt::Key_Space);
    QCOMPARE(summary(), QString("Replaced in 1 text"));
    QCOMPARE(m->window.document().variables().get("old").toList(), QVariantList({"Eve", "Ann"}));
    m->window.document().undoStack().undo();
    QCOMPARE(m->window.document().variables().get("old").toList(), QVariantList({"Bob", "Ann"}));
}

void TestWorkbenchChange::findsAgainAfterChanges()
{
    QTest::keyClick(&m->window, Qt::Key_F, Qt::ControlModifier);
    auto *text = m->window.findChild<QLineEdit *>("searchText");
    text->setText("old");
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(hits()->model()->rowCount(), 4);
    m->window.document().removeSteps({0});
    QTRY_COMPARE(hits()->model()->rowCount(), 3);
    m->window.document().clear();
    QCOMPARE(hits()->model()->rowCount(), 0);
}

void TestWorkbenchChange::leadsToWhatWasFound()
{
    QTest::keyClick(&m->window, Qt::Key_F, Qt::ControlModifier);
    auto *text = m->window.findChild<QLineEdit *>("searchText");
    text->setText("list.clear");
    QTest::keyClick(text, Qt::Key_Return);
    hits()->setFocus();
    hits()->setCurrentIndex(hits()->model()->index(0, 0));
    QTest::keyClick(hits(), Qt::Key_Return);
    QCOMPARE(m->scriptPane()->currentRow(), 2);
    QVERIFY(m->scriptPane()->hasFocus());
    text->setText("spare");
    QTest::keyClick(text, Qt::Key_Return);
    hits()->setFocus();
    hits()->setCurrentIndex(hits()->model()->index(0, 0));
    QTest::keyClick(hits(), Qt::Key_Return);
    QVERIFY(variables()->hasFocus());
    QCOMPARE(variables()->currentIndex().row(), 1);
}

RUN_TEST_MAIN(QApplication, TestWorkbenchChange)
#include "tst_workbenchchange.moc"
