#include "RunWorkerMain.h"

#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/Language.h"
#include "tools/workbench/look/TypeNames.h"
#include "tools/workbench/settings/PropertyEditor.h"
#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/values/ImportDialog.h"
#include "tools/workbench/values/ListValueModel.h"
#include "tools/workbench/values/ValueDialog.h"
#include "tools/workbench/values/ValueViewer.h"
#include "tools/workbench/variables/VariablesModel.h"
#include "tools/workbench/variables/VariablesPane.h"
#include "tools/workbench/window/LogPane.h"
#include "tools/workbench/window/MainWindow.h"
#include "tools/workbench/window/PaletteModel.h"
#include "tools/workbench/window/ScriptPane.h"

#include "host/files/ValueFile.h"
#include "host/plugins/StepCatalogue.h"
#include "host/scripts/VariableEdits.h"
#include "host/values/CsvText.h"
#include "host/values/ItemValue.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/FixtureStep.h"
#include "tests/support/TestPaths.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCompleter>
#include <QDialog>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Workbench;

namespace
{
/// A step of another plug-in, with settings that the list steps do not have.
class OtherStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(int mode MEMBER m_mode)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(int level MEMBER m_level)
    Q_PROPERTY(QStringList tags MEMBER m_tags)
    Q_PROPERTY(QString anyVariable MEMBER m_anyVariable)
    Q_PROPERTY(QString note MEMBER m_note)
    Q_CLASSINFO("prop_mode", "Mode")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "one|two|three")
    Q_CLASSINFO("prop_ratio", "Ratio")
    Q_CLASSINFO("prop_level", "Level")
    Q_CLASSINFO("editor_level", "SLIDER")
    Q_CLASSINFO("prop_tags", "Tags")
    Q_CLASSINFO("editor_anyVariable", "VARNAME")
    Q_CLASSINFO("prop_note", "Note")
    Q_CLASSINFO("show_when_note", "mode=2")

public:
    OtherStep() : FixtureStep("other.step") { }

    QString root() const override
    {
        return "Other";
    }
    QString typeName() const override
    {
        return "Other step";
    }
    QString icon() const override
    {
        return ":/no/such/icon.svg";
    }
    QString toString() const override
    {
        return "Other step";
    }
    QString description() const override
    {
        return "Does nothing";
    }
    Operation *clone(QObject *) const override
    {
        return new OtherStep;
    }

    int m_mode = 7;
    double m_ratio = 0.5;
    int m_level = 3;
    QStringList m_tags{"a", "b"};
    QString m_anyVariable;
    QString m_note;
};

/// Calls \a action with the modal dialog that is shown next, and closes it if it is still there then.
template<typename Dialog, typename Action>
void inNextDialog(Action action)
{
    QTimer::singleShot(0, qApp, [action] {
        QPointer<QWidget> widget = QApplication::activeModalWidget();
        QVERIFY(widget);
        QApplication::setActiveWindow(widget);
        if (auto *dialog = qobject_cast<Dialog *>(widget.data()))
            action(dialog);
        else
            QTest::qFail("the dialog is of another kind", __FILE__, __LINE__);
        if (widget && widget->isVisible())
            static_cast<QDialog *>(widget.data())->reject();
    });
}

void answer(const QString &buttonText)
{
    inNextDialog<QMessageBox>([buttonText](QMessageBox *box) {
        const QList<QAbstractButton *> buttons = box->buttons();
        for (QAbstractButton *button : buttons) {
            if (button->text().remove(QLatin1Char('&')) == buttonText)
                button->click();
        }
    });
}
/// Ends the editing in \a editor; a delegate takes the value over with an event of its own.
void pressReturn(QWidget *editor)
{
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
}
} // namespace

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void placesByDoubleClick();
    void placesFromTheKeyboard();
    void searches_data();
    void searches();
    void placesBehindTheCurrentStep();

    void editsTheScriptFromTheKeyboard();
    void copiesThroughTheClipboard();
    void togglesByTheCheckBox();

    void editsVariableNames();
    void editsReferences();
    void completesReferences_data();
    void completesReferences();
    void editsIntegers_data();
    void editsIntegers();
    void editsChoicesAndAppliesVisibility();
    void editsBooleans();
    void editsPlainTexts();
    void undoesWhileAFieldHasTheFocus();
    void editsTheSettingsOfAnyStep();

    void tellsWhatStepsLackBeforeTheRun();
    void createsAListThatASettingNames();

    void runsAndShowsTheOutcome();
    void keepsResults();
    void leadsFromTheLogToTheStep();

    void editsVariables();
    void editsAListInItsDialog();
    void viewsWhatARunLeft();
    void importsAndExportsAList();
    void editsATable();

    void savesAndReopens();
    void guardsUnsavedChanges();
    void reportsAFileThatCannotBeRead();
    void keepsTheStateOfTheWindow();
    void speaksChinese();
    void everyPaneIsReachedByKeyboard();

    void largeListsStayFluid();

private:
    ScriptModel &script() const;
    ScriptPane *scriptPane() const;
    PropertyPane *properties() const;
    VariablesModel &variables() const;
    QModelIndex paletteStep(const QString &typeId) const;
    void place(const QString &typeId);
    void setVariable(const QString &name, const QVariant &value, VarType type);
    QVariant setting(const char *property) const;
    template<typename Widget>
    Widget *field(const char *property) const;
    void typeInto(QLineEdit *edit, const QString &text);
    void run();

    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<MainWindow> m_window;
};

void TestWorkbenchWindow::initTestCase()
{
    const auto added = m_catalogue.addPlugin(TestPaths::listPlugin());
    QVERIFY2(added, qPrintable(errorOf(added)));
}

void TestWorkbenchWindow::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_folder->filePath("settings.ini"), QSettings::IniFormat);
    m_window = std::make_unique<MainWindow>(m_catalogue, *m_settings);
    m_window->show();
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TestWorkbenchWindow::cleanup()
{
    m_window.reset();
    m_settings.reset();
    m_folder.reset();
}

ScriptModel &TestWorkbenchWindow::script() const
{
    return m_window->document().model();
}

ScriptPane *TestWorkbenchWindow::scriptPane() const
{
    return m_window->findChild<ScriptPane *>();
}

PropertyPane *TestWorkbenchWindow::properties() const
{
    return m_window->findChild<PropertyPane *>();
}

VariablesModel &TestWorkbenchWindow::variables() const
{
    return m_window->findChild<VariablesPane *>()->model();
}

QModelIndex TestWorkbenchWindow::paletteStep(const QString &typeId) const
{
    const QAbstractItemModel *model = m_window->findChild<QTreeView *>("paletteTree")->model();
    return model
        ->match(model->index(0, 0), PaletteModel::TypeIdRole, typeId, 1,
                Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

void TestWorkbenchWindow::place(const QString &typeId)
{
    scriptPane()->placeStep(typeId);
}

void TestWorkbenchWindow::setVariable(const QString &name, const QVariant &value, VarType type)
{
    VariableScope scope = m_window->document().variables();
    scope.declare(name, type);
    scope.set(name, value);
    m_window->document().setVariables(scope, "Set");
}

QVariant TestWorkbenchWindow::setting(const char *property) const
{
    return script().step(scriptPane()->currentRow()).property(property);
}

template<typename Widget>
Widget *TestWorkbenchWindow::field(const char *property) const
{
    const PropertyEditor *editor = properties()->editor(property);
    return editor ? editor->findChild<Widget *>() : nullptr;
}

void TestWorkbenchWindow::typeInto(QLineEdit *edit, const QString &text)
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void TestWorkbenchWindow::run()
{
    QTest::keyClick(m_window.get(), Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->session().isRunning(), 60000);
}

void TestWorkbenchWindow::placesByDoubleClick()
{
    auto *tree = m_window->findChild<QTreeView *>("paletteTree");
    const QModelIndex index = paletteStep("list.clear");
    QVERIFY(index.isValid());
    const QPoint center = tree->visualRect(index).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, center);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, center);
    QCOMPARE(script().rowCount(), 1);
    QCOMPARE(script().step(0).typeId(), QString("list.clear"));
    QCOMPARE(scriptPane()->currentRow(), 0);
    QVERIFY(field<QComboBox>("targetVar"));
}

void TestWorkbenchWindow::placesFromTheKeyboard()
{
    QTest::keyClick(m_window.get(), Qt::Key_1, Qt::ControlModifier);
    auto *search = m_window->findChild<QLineEdit *>("paletteSearch");
    QVERIFY(search->hasFocus());
    QTest::keyClicks(search, "dedup");
    QTest::keyClick(search, Qt::Key_Return);
    QCOMPARE(script().rowCount(), 1);
    QCOMPARE(script().step(0).typeId(), QString("list.dedup"));

    search->clear();
    QTest::keyClick(search, Qt::Key_Down);
    auto *tree = m_window->findChild<QTreeView *>("paletteTree");
    QVERIFY(tree->hasFocus());
    QTest::keyClick(tree, Qt::Key_Down);
    QTest::keyClick(tree, Qt::Key_Return);
    const QModelIndex second = paletteStep("list.sort").siblingAtRow(1);
    QCOMPARE(script().step(1).typeId(), second.data(PaletteModel::TypeIdRole).toString());
}

void TestWorkbenchWindow::searches_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::newRow("nothing") << "" << 10;
    QTest::newRow("Chinese") << QString::fromUtf8("排序") << 1;
    QTest::newRow("category") << QString::fromUtf8("列表") << 10;
    QTest::newRow("type id") << "list.re" << 2;
    QTest::newRow("other case") << "SORT" << 1;
    QTest::newRow("blanks around") << " sort " << 1;
    QTest::newRow("no pattern") << "list.*" << 0;
    QTest::newRow("unknown") << "xyz" << 0;
}

void TestWorkbenchWindow::searches()
{
    QFETCH(QString, text);
    QFETCH(int, count);
    m_window->findChild<QLineEdit *>("paletteSearch")->setText(text);
    const QAbstractItemModel *model = m_window->findChild<QTreeView *>("paletteTree")->model();
    QCOMPARE(model->rowCount(model->index(0, 0)), count);
}

void TestWorkbenchWindow::placesBehindTheCurrentStep()
{
    place("list.add");
    place("list.sort");
    scriptPane()->setCurrentRow(0);
    place("list.clear");
    QCOMPARE(script().step(1).typeId(), QString("list.clear"));
    QCOMPARE(scriptPane()->currentRow(), 1);
}

void TestWorkbenchWindow::editsTheScriptFromTheKeyboard()
{
    for (const char *typeId : {"list.add", "list.sort", "list.clear"})
        place(typeId);
    const auto types = [this] {
        QStringList ids;
        for (int row = 0; row < script().rowCount(); ++row)
            ids.append(script().step(row).typeId().mid(5));
        return ids;
    };
    ScriptPane *pane = scriptPane();
    pane->setFocus();
    QTest::keyClick(pane, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(types(), QStringList({"add", "clear", "sort"}));
    QTest::keyClick(pane, Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(types(), QStringList({"add", "sort", "clear"}));
    QTest::keyClick(pane, Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(types(), QStringList({"add", "sort", "clear"}));
    QTest::keyClick(pane, Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(types(), QStringList({"add", "sort", "clear", "clear"}));
    QTest::keyClick(pane, Qt::Key_Space);
    QVERIFY(!script().isEnabled(3));
    QTest::keyClick(pane, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(pane, Qt::Key_Delete);
    QCOMPARE(script().rowCount(), 0);
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(types(), QStringList({"add", "sort", "clear", "clear"}));
    QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 0);
}

void TestWorkbenchWindow::copiesThroughTheClipboard()
{
    place("list.add");
    m_window->document().setSetting(0, "value", QString("$x"));
    ScriptPane *pane = scriptPane();
    pane->setFocus();
    QTest::keyClick(pane, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 0);
    QVERIFY(QApplication::clipboard()->text().contains("\"list.add\""));
    QTest::keyClick(pane, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(pane, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(pane, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 2);
    QCOMPARE(script().step(1).property("value").toString(), QString("$x"));
    QApplication::clipboard()->setText("no steps");
    QTest::keyClick(pane, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 2);
}

void TestWorkbenchWindow::togglesByTheCheckBox()
{
    place("list.add");
    ScriptPane *pane = scriptPane();
    const QRect row = pane->visualRect(script().index(0));
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(row.left() + 14, row.center().y()));
    QVERIFY(!script().isEnabled(0));
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, Qt::NoModifier, row.center());
    QVERIFY(!script().isEnabled(0));
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(row.left() + 14, row.center().y()));
    QVERIFY(script().isEnabled(0));
}

void TestWorkbenchWindow::editsVariableNames()
{
    setVariable("names", QVariantList(), VarType::List);
    setVariable("table", QVariantList(), VarType::Table);
    setVariable("count", 1, VarType::Int);
    place("list.get");
    auto *source = field<QComboBox>("sourceVar");
    auto *target = field<QComboBox>("targetVar");
    QCOMPARE(source->count(), 1);
    QCOMPARE(source->itemText(0), QString("names"));
    QCOMPARE(target->count(), 1);
    QCOMPARE(target->itemText(0), QString("count"));

    source->setCurrentIndex(0);
    QCOMPARE(setting("sourceVar").toString(), QString("names"));
    typeInto(source->lineEdit(), "$other");
    QCOMPARE(setting("sourceVar").toString(), QString("$other"));
    QVERIFY(properties()->hint("sourceVar").contains("$other"));
    setVariable("other", QVariantList(), VarType::List);
    QCOMPARE(source->count(), 2);
    QCOMPARE(source->currentText(), QString("$other"));
    QVERIFY(properties()->hint("sourceVar").isEmpty());
    typeInto(source->lineEdit(), "count");
    QVERIFY(!properties()->hint("sourceVar").isEmpty());
    QCOMPARE(setting("targetVar").toString(), QString());
}

void TestWorkbenchWindow::editsReferences()
{
    place("list.add");
    typeInto(field<QLineEdit>("value"), " literal ");
    QCOMPARE(setting("value").toString(), QString(" literal "));
    QVERIFY(properties()->hint("value").isEmpty());
    typeInto(field<QLineEdit>("value"), "$x.Count");
    QCOMPARE(setting("value").toString(), QString("$x.Count"));
    QVERIFY(properties()->hint("value").contains(QString::fromUtf8("“x”")));
    setVariable("x", QVariantList(), VarType::List);
    QVERIFY(properties()->hint("value").isEmpty());
    QCOMPARE(scriptPane()->model()->index(0, 0).data().toString(), script().step(0).toString());
}

void TestWorkbenchWindow::completesReferences_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("completions");
    QTest::newRow("literal") << "n" << QStringList{};
    QTest::newRow("the mark") << "$" << QStringList{"$names", "$number", "$staff"};
    QTest::newRow("part of a name") << "$n" << QStringList{"$names", "$number"};
    QTest::newRow("members of a list")
        << "$names." << QStringList{"$names.Count", "$names.Rows", "$names.Items"};
    QTest::newRow("member of a table") << "$staff.col" << QStringList{"$staff.Columns"};
    QTest::newRow("members of a number") << "$number." << QStringList{};
}

void TestWorkbenchWindow::completesReferences()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, completions);
    setVariable("names", QVariantList(), VarType::List);
    setVariable("number", 1, VarType::Int);
    setVariable("staff", QVariantList(), VarType::Table);
    place("list.add");
    auto *edit = field<QLineEdit>("value");
    typeInto(edit, typed);
    QStringList offered;
    for (int row = 0; row < edit->completer()->completionCount(); ++row) {
        edit->completer()->setCurrentRow(row);
        offered.append(edit->completer()->currentCompletion());
    }
    QCOMPARE(offered, completions);
}

void TestWorkbenchWindow::editsIntegers_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("hinted");
    QTest::newRow("integer") << "12" << false;
    QTest::newRow("negative, with blanks") << " -3 " << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("fraction") << "1.5" << true;
    QTest::newRow("word") << "first" << true;
    QTest::newRow("reference") << "$i" << true;
    QTest::newRow("too large") << "2147483648" << true;
}

void TestWorkbenchWindow::editsIntegers()
{
    QFETCH(QString, typed);
    QFETCH(bool, hinted);
    place("list.get");
    typeInto(field<QLineEdit>("index"), typed);
    QCOMPARE(setting("index").toString(), typed);
    QCOMPARE(!properties()->hint("index").isEmpty(), hinted);
}

void TestWorkbenchWindow::editsChoicesAndAppliesVisibility()
{
    place("list.remove");
    auto *combo = field<QComboBox>("mode");
    QCOMPARE(combo->count(), 2);
    QVERIFY(properties()->editor("index")->isVisible());
    QVERIFY(!properties()->editor("value")->isVisible());
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(setting("mode"), QVariant(1));
    QVERIFY(!properties()->editor("index")->isVisible());
    QVERIFY(properties()->editor("value")->isVisible());
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(setting("mode"), QVariant(0));
    QCOMPARE(combo->currentIndex(), 0);
    QVERIFY(properties()->editor("index")->isVisible());
}

void TestWorkbenchWindow::editsBooleans()
{
    place("list.sort");
    auto *box = field<QCheckBox>("ascending");
    QVERIFY(box->isChecked());
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(setting("ascending"), QVariant(false));
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(setting("ascending"), QVariant(true));
    QVERIFY(box->isChecked());
}

void TestWorkbenchWindow::editsPlainTexts()
{
    place("list.add");
    typeInto(field<QLineEdit>("index"), "anything at all");
    QCOMPARE(setting("index").toString(), QString("anything at all"));
    QVERIFY(properties()->hint("index").isEmpty());
}

void TestWorkbenchWindow::undoesWhileAFieldHasTheFocus()
{
    place("list.add");
    auto *edit = field<QLineEdit>("value");
    typeInto(edit, "first");
    typeInto(field<QLineEdit>("index"), "7");
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(setting("index").toString(), QString());
    QCOMPARE(setting("value").toString(), QString("first"));
    QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(edit->text(), QString());
    QCOMPARE(script().rowCount(), 1);
    QTest::keyClick(edit, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(edit->text(), QString("first"));
}

void TestWorkbenchWindow::editsTheSettingsOfAnyStep()
{
    OtherStep step;
    VariableScope scope;
    scope.declare("list", VarType::List);
    scope.declare("number", VarType::Int);
    PropertyPane pane;
    pane.setVariables(scope);
    pane.setStep(&step);
    pane.show();
    connect(&pane, &PropertyPane::settingEdited, &step, [&](const QString &property, const QVariant &value) {
        step.setProperty(property.toUtf8().constData(), value);
        pane.refresh();
    });

    auto *mode = pane.editor("mode")->findChild<QComboBox *>();
    QCOMPARE(mode->currentIndex(), -1);
    QVERIFY(pane.hint("mode").contains("7"));
    QCOMPARE(pane.editor("mode")->value(), QVariant(7));
    QVERIFY(!pane.editor("note")->isVisible());
    QTest::keyClick(mode, Qt::Key_End);
    QCOMPARE(step.m_mode, 2);
    QVERIFY(pane.editor("note")->isVisible());

    auto *ratio = pane.editor("ratio")->findChild<QLineEdit *>();
    typeInto(ratio, "0.25");
    QCOMPARE(step.m_ratio, 0.25);
    typeInto(ratio, "much");
    QCOMPARE(ratio->text(), QString("much"));
    QVERIFY(!pane.hint("ratio").isEmpty());

    typeInto(pane.editor("level")->findChild<QLineEdit *>(), "12");
    QCOMPARE(step.m_level, 12);
    QVERIFY(pane.editor("tags")->findChild<QLineEdit *>()->isReadOnly());
    QCOMPARE(pane.editor("anyVariable")->findChild<QComboBox *>()->count(), 2);
    QVERIFY(!pane.editor("missing"));
    pane.setStep(nullptr);
    QVERIFY(!pane.editor("mode"));
}

void TestWorkbenchWindow::tellsWhatStepsLackBeforeTheRun()
{
    place("list.sort");
    const auto problems = [this] {
        return script().index(0).data(ScriptModel::ProblemsRole).toStringList().join('\n');
    };
    QVERIFY2(problems().contains("No variable is chosen"), qPrintable(problems()));
    m_window->document().setSetting(0, "targetVar", QString("names"));
    QVERIFY2(problems().contains("names"), qPrintable(problems()));
    QVERIFY(script().index(0).data(Qt::AccessibleTextRole).toString().contains(problems()));
    const int height = scriptPane()->sizeHintForRow(0);
    setVariable("names", 1, VarType::Int);
    QVERIFY2(problems().contains("is not a list"), qPrintable(problems()));
    setVariable("names", QVariantList{2, 1}, VarType::List);
    QCOMPARE(problems(), QString());
    QVERIFY(scriptPane()->sizeHintForRow(0) < height);
    m_window->document().setSetting(0, "targetVar", QString("other"));
    m_window->document().setEnabled({0}, false);
    QCOMPARE(problems(), QString());
}

void TestWorkbenchWindow::createsAListThatASettingNames()
{
    place("list.sort");
    const auto button = [this] {
        return properties()->editor("targetVar")->parentWidget()->findChild<QPushButton *>("createVariable");
    };
    QVERIFY(!button()->isVisible());
    typeInto(field<QComboBox>("targetVar")->lineEdit(), "$names");
    QVERIFY(button()->isVisible());
    QVERIFY2(button()->text().contains("names"), qPrintable(button()->text()));
    button()->click();
    QCOMPARE(m_window->document().variables().names(), QStringList("names"));
    QCOMPARE(m_window->document().variables().typeOf("names"), VarType::List);
    QVERIFY(!button()->isVisible());
    m_window->document().undoStack().undo();
    QVERIFY(m_window->document().variables().names().isEmpty());
}

void TestWorkbenchWindow::runsAndShowsTheOutcome()
{
    setVariable("names", QVariantList{"b", "a"}, VarType::List);
    place("list.sort");
    m_window->document().setSetting(0, "targetVar", QString("names"));
    place("list.clear");
    m_window->document().setSetting(1, "targetVar", QString("missing"));
    run();
    QCOMPARE(script().index(0).data(ScriptModel::OutcomeRole).toInt(), int(StepHost::StepOutcome::Wrote));
    QCOMPARE(script().index(1).data(ScriptModel::OutcomeRole).toInt(), int(StepHost::StepOutcome::Skipped));
    QVERIFY(variables().index(0, VariablesModel::ResultColumn).data(VariablesModel::ChangedRole).toBool());
    QVERIFY(variables().index(0, VariablesModel::ResultColumn).data().toString().endsWith("[a, b]"));
    QVERIFY(variables().index(0, VariablesModel::ValueColumn).data().toString().endsWith("[b, a]"));
    QCOMPARE(m_window->log().rowCount(), 2);

    auto *restore = m_window->findChild<QAction *>("restore");
    QVERIFY(restore->isEnabled());
    restore->trigger();
    QVERIFY(!restore->isEnabled());
    QVERIFY(!variables().index(0, VariablesModel::ResultColumn).data(VariablesModel::ChangedRole).toBool());

    scriptPane()->setCurrentRow(0);
    m_window->findChild<QAction *>("runTo")->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->session().isRunning(), 60000);
    QCOMPARE(script().index(1).data(ScriptModel::OutcomeRole).toInt(), int(StepHost::StepOutcome::NotRun));
    scriptPane()->setCurrentRow(1);
    m_window->findChild<QAction *>("runStep")->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->session().isRunning(), 60000);
    QCOMPARE(script().index(1).data(ScriptModel::OutcomeRole).toInt(), int(StepHost::StepOutcome::Skipped));
    QCOMPARE(script().index(0).data(ScriptModel::OutcomeRole).toInt(), int(StepHost::StepOutcome::Wrote));
    QVERIFY(!m_window->findChild<QAction *>("stop")->isEnabled());

    QVERIFY(!script().index(1).data(ScriptModel::OutdatedRole).toBool());
    m_window->document().setSetting(1, "targetVar", QString("names"));
    QVERIFY(script().index(1).data(ScriptModel::OutdatedRole).toBool());
    m_window->document().setSetting(1, "targetVar", QString("missing"));
    QVERIFY(!script().index(1).data(ScriptModel::OutdatedRole).toBool());
}

void TestWorkbenchWindow::keepsResults()
{
    setVariable("names", QVariantList{"b", "a"}, VarType::List);
    place("list.sort");
    m_window->document().setSetting(0, "targetVar", QString("names"));
    run();
    m_window->findChild<QAction *>("keepResults")->trigger();
    QCOMPARE(m_window->document().variables().get("names"), QVariant(QVariantList{"a", "b"}));
    m_window->document().undoStack().undo();
    QCOMPARE(m_window->document().variables().get("names"), QVariant(QVariantList{"b", "a"}));
    setVariable("$$x", 1, VarType::Int); // As a step may do, but no script.
    run();
    m_window->findChild<QAction *>("keepResults")->trigger();
    QCOMPARE(m_window->document().variables().names(), QStringList("names"));
}

void TestWorkbenchWindow::leadsFromTheLogToTheStep()
{
    place("list.clear");
    m_window->document().setSetting(0, "targetVar", QString("missing"));
    place("list.sort");
    run();
    QCOMPARE(scriptPane()->currentRow(), 1);
    auto *log = m_window->findChild<LogPane *>();
    log->setFocus();
    log->setCurrentIndex(log->model()->index(0, 0));
    QTest::keyClick(log, Qt::Key_Return);
    QCOMPARE(scriptPane()->currentRow(), 0);
    QVERIFY(scriptPane()->hasFocus());
    // Wherever it stands now.
    m_window->document().moveSteps({0}, 2);
    scriptPane()->setCurrentRow(0);
    QTest::keyClick(log, Qt::Key_Return);
    QCOMPARE(scriptPane()->currentRow(), 1);
    // And nowhere when it is gone.
    m_window->document().removeSteps({1});
    QTest::keyClick(log, Qt::Key_Return);
    QCOMPARE(scriptPane()->currentRow(), 0);
    QVERIFY(m_window->statusBar()->currentMessage().contains("any more"));
    m_window->document().undoStack().undo();
    scriptPane()->setCurrentRow(0);
    QTest::keyClick(log, Qt::Key_Return);
    QCOMPARE(scriptPane()->currentRow(), 1);
}

void TestWorkbenchWindow::editsVariables()
{
    auto *view = m_window->findChild<QTableView *>("variables");
    m_window->findChild<QAction *>("addVariable")->trigger();
    QCOMPARE(variables().rowCount(), 1);
    auto *name = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(name);
    name->setText("count");
    pressReturn(name);
    QCOMPARE(m_window->document().variables().names(), QStringList("count"));

    view->setCurrentIndex(variables().index(0, VariablesModel::TypeColumn));
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Return);
    auto *type = qobject_cast<QComboBox *>(QApplication::focusWidget());
    QVERIFY(type);
    type->setCurrentIndex(type->findData(int(VarType::Int)));
    emit type->activated(type->currentIndex());
    QApplication::processEvents();
    QCOMPARE(m_window->document().variables().typeOf("count"), VarType::Int);

    view->setCurrentIndex(variables().index(0, VariablesModel::ValueColumn));
    QTest::keyClick(view, Qt::Key_Return);
    auto *value = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(value);
    value->setText("12");
    pressReturn(value);
    QCOMPARE(m_window->document().variables().get("count"), QVariant(12));

    QTest::keyClick(view, Qt::Key_Delete);
    QVERIFY(m_window->document().variables().names().isEmpty());
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(m_window->document().variables().names().isEmpty());
    QVERIFY(!m_window->document().undoStack().canUndo());
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(m_window->document().variables().get("count"), QVariant(12));
}

void TestWorkbenchWindow::editsAListInItsDialog()
{
    setVariable("names", QVariantList{"b", "a", 3}, VarType::List);
    auto *view = m_window->findChild<QTableView *>("variables");
    view->setFocus();
    view->setCurrentIndex(variables().index(0, VariablesModel::ValueColumn));
    inNextDialog<ValueDialog>([](ValueDialog *dialog) {
        auto *values = dialog->findChild<QTableView *>("values");
        values->setCurrentIndex(values->model()->index(0, 0));
        QTest::keyClick(values, Qt::Key_Return, Qt::ControlModifier);
        auto *edit = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(edit);
        edit->setText("new");
        pressReturn(edit);
        values->setCurrentIndex(values->model()->index(2, 0));
        QTest::keyClick(values, Qt::Key_Up, Qt::AltModifier);
        values->setCurrentIndex(values->model()->index(3, 0));
        QTest::keyClick(values, Qt::Key_Delete, Qt::ControlModifier);
        dialog->accept();
    });
    QTest::keyClick(view, Qt::Key_Return);
    QCOMPARE(m_window->document().variables().get("names"), QVariant(QVariantList{"b", "a", "new"}));

    QApplication::setActiveWindow(m_window.get());
    inNextDialog<ValueDialog>([](ValueDialog *dialog) {
        dialog->findChild<QTableView *>("values")->model()->removeRow(0);
        dialog->reject();
    });
    QTest::keyClick(view, Qt::Key_Return);
    QCOMPARE(m_window->document().variables().get("names").toList().size(), 3);
    m_window->document().undoStack().undo();
    QCOMPARE(m_window->document().variables().get("names"), QVariant(QVariantList{"b", "a", 3}));
}

void TestWorkbenchWindow::viewsWhatARunLeft()
{
    setVariable("names", QVariantList{"b", "a"}, VarType::List);
    place("list.sort");
    m_window->document().setSetting(0, "targetVar", QString("names"));
    auto *view = m_window->findChild<QTableView *>("variables");
    view->setFocus();
    const QModelIndex result = variables().index(0, VariablesModel::ResultColumn);
    view->setCurrentIndex(result);
    bool isOpened = false;
    const auto look = [&](ValueViewer *viewer) {
        isOpened = true;
        auto *tabs = viewer->findChild<QTabWidget *>("tabs");
        auto *values = tabs->widget(0)->findChild<QTableView *>("values");
        QCOMPARE(values->model()->index(0, 0).data().toString(), QString("a"));
        QCOMPARE(tabs->count(), 3);
        viewer->reject();
    };
    QTest::keyClick(view, Qt::Key_Return);
    QVERIFY(!isOpened);
    run();
    inNextDialog<ValueViewer>(look);
    view->setFocus();
    view->setCurrentIndex(result);
    QTest::keyClick(view, Qt::Key_Return);
    QVERIFY(isOpened);
    isOpened = false;
    inNextDialog<ValueViewer>(look);
    emit view->doubleClicked(result);
    QVERIFY(isOpened);
}

void TestWorkbenchWindow::importsAndExportsAList()
{
    ValueDialog dialog("names", VarType::List, {"old"});
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    const QString fileName = m_folder->filePath("names.txt");
    auto *message = dialog.findChild<QLabel *>("message");
    dialog.importFile(fileName);
    QVERIFY(message->isVisible());
    QVERIFY(message->text().contains("names.txt"));
    QCOMPARE(dialog.value(), QVariantList{"old"});
    dialog.exportFile(fileName);
    QVERIFY(!message->isVisible());
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append));
    file.write("new\n");
    file.close();
    inNextDialog<ImportDialog>([](ImportDialog *import) { import->accept(); });
    dialog.importFile(fileName);
    QCOMPARE(dialog.value(), QVariantList({"old", "new"}));
}

void TestWorkbenchWindow::editsATable()
{
    ValueDialog dialog("staff", VarType::Table, {QVariant(QVariantList{"a", "b"})});
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    auto *view = dialog.findChild<QTableView *>("values");
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(view->model()->rowCount(), 2);
    QTest::keyClick(view, Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(view->model()->columnCount(), 3);
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(view->model()->columnCount(), 2);
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(view->model()->rowCount(), 1);
}

void TestWorkbenchWindow::savesAndReopens()
{
    setVariable("names", QVariantList{"b", 1, 1.0}, VarType::List);
    place("list.sort");
    m_window->document().setSetting(0, "targetVar", QString("names"));
    place("list.remove");
    m_window->document().setSetting(1, "mode", 1);
    m_window->document().setEnabled({1}, false);
    const QString fileName = m_folder->filePath("script.json");
    QCOMPARE(m_window->document().save(fileName), QString());
    QVERIFY(!m_window->isWindowModified());
    m_window->document().setSetting(0, "ascending", false);
    QVERIFY(m_window->isWindowModified());
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!m_window->isWindowModified());

    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 0);
    QVERIFY(m_window->document().fileName().isEmpty());
    m_window->openFile(fileName);
    QCOMPARE(script().rowCount(), 2);
    // The settings that are shown are those of the step that is selected.
    QVERIFY(scriptPane()->selectionModel()->isSelected(script().index(0)));
    QVERIFY(field<QCheckBox>("ascending"));
    QCOMPARE(script().step(0).property("ascending"), QVariant(false));
    QCOMPARE(script().step(1).property("mode"), QVariant(1));
    QVERIFY(!script().isEnabled(1));
    QVERIFY(StepHost::ItemValue::same(m_window->document().variables().get("names"),
                                      QVariantList({"b", 1, 1.0})));
    QVERIFY(m_window->windowTitle().contains("script.json"));
    QVERIFY(!m_window->isWindowModified());
    QCOMPARE(RecentFiles(*m_settings).paths().constFirst(), QFileInfo(fileName).absoluteFilePath());
}

void TestWorkbenchWindow::guardsUnsavedChanges()
{
    const QString fileName = m_folder->filePath("script.json");
    QCOMPARE(m_window->document().save(fileName), QString());
    place("list.sort");
    answer("Cancel");
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QApplication::setActiveWindow(m_window.get());
    answer("Cancel");
    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(script().rowCount(), 1);
    answer("Discard");
    m_window->openFile(fileName);
    QCOMPARE(script().rowCount(), 0);
    place("list.sort");
    answer("Save");
    QVERIFY(m_window->close());
    QVERIFY(m_window->document().undoStack().isClean());
    QCOMPARE(m_window->document().open(fileName), QString());
    QCOMPARE(script().rowCount(), 1);
}

void TestWorkbenchWindow::reportsAFileThatCannotBeRead()
{
    place("list.sort");
    m_window->document().undoStack().setClean();
    QString text;
    inNextDialog<QMessageBox>([&text](QMessageBox *box) {
        text = box->text();
        box->accept();
    });
    m_window->openFile(m_folder->filePath("missing.json"));
    QVERIFY2(text.contains("missing.json"), qPrintable(text));
    QCOMPARE(script().rowCount(), 1);
    QCOMPARE(m_window->log().rowCount(), 1);
    QVERIFY(RecentFiles(*m_settings).paths().isEmpty());
}

void TestWorkbenchWindow::keepsTheStateOfTheWindow()
{
    m_window->findChild<QDockWidget *>("logDock")->hide();
    m_window->resize(1100, 650);
    QVERIFY(m_window->close());
    m_window = std::make_unique<MainWindow>(m_catalogue, *m_settings);
    m_window->show();
    QVERIFY(!m_window->findChild<QDockWidget *>("logDock")->isVisible());
    QVERIFY(m_window->findChild<QDockWidget *>("paletteDock")->isVisible());
    QCOMPARE(m_window->size(), QSize(1100, 650));
}

void TestWorkbenchWindow::speaksChinese()
{
    m_window.reset();
    const QObjectList before = qApp->children();
    Language::install(*qApp, "zh_CN");
    m_window = std::make_unique<MainWindow>(m_catalogue, *m_settings);
    const QStringList menus = [this] {
        QStringList titles;
        const QList<QAction *> actions = m_window->menuBar()->actions();
        for (const QAction *action : actions)
            titles.append(action->text());
        return titles;
    }();
    QCOMPARE(menus.size(), 6);
    for (const QString &title : menus)
        QVERIFY2(title.at(0).unicode() >= 0x4e00, qPrintable(title));
    QCOMPARE(m_window->findChild<QDockWidget *>("logDock")->windowTitle(), QString::fromUtf8("日志"));
    QCOMPARE(VariablesModel::tr("%n item(s): %1", nullptr, 2).arg("x"), QString::fromUtf8("2 项：x"));
    QCOMPARE(TypeNames::of(VarType::Table), QString::fromUtf8("表格"));
    const auto value = StepHost::ItemValue::parse("x", StepHost::ItemKind::Bool);
    QVERIFY(!value);
    QCOMPARE(value.error(), QString::fromUtf8("“x”既不是 true 也不是 false"));
    VariableScope scope;
    scope.set("x", 1);
    const auto added = StepHost::VariableEdits::add(scope, "x", VarType::Int);
    QVERIFY(!added);
    QCOMPARE(added.error(), QString::fromUtf8("已经有变量“x”。"));
    const auto rows = StepHost::parseCsv("\"");
    QVERIFY(!rows);
    QCOMPARE(rows.error(), QString::fromUtf8("第 1 行第 1 列：此处的左引号没有对应的右引号"));
    const auto written = StepHost::writeList("a.txt", {"a\nb"});
    QVERIFY(!written);
    QVERIFY(written.error().contains(QString::fromUtf8("第 0 项含有换行")));
    QCOMPARE(m_window->document().save("no folder/a"), QString::fromUtf8("no folder/a：没有此文件或文件夹"));
    QCOMPARE(m_window->document().open("missing.json"),
             QString::fromUtf8("missing.json: 没有此文件或文件夹"));
    QVERIFY(
        m_window->document().open(m_folder->path()).endsWith(QString::fromUtf8(": 这是文件夹，不是文件")));
#ifdef Q_OS_UNIX
    const QByteArray file = QFile::encodeName(m_folder->filePath("linked.json"));
    QCOMPARE(m_window->document().save(file), QString());
    QCOMPARE(::link(file.constData(), (file + '2').constData()), 0);
    QCOMPARE(m_window->document().save(file), QString());
    QCOMPARE(m_window->log().index(0, LogModel::MessageColumn).data().toString(),
             QString::fromUtf8(file + "：未能保留原文件的硬链接"));
#endif
    for (QObject *child : qApp->children()) {
        if (!before.contains(child))
            delete child;
    }
    Language::install(*qApp, "en");
    QCOMPARE(VariablesModel::tr("%n item(s): %1", nullptr, 1).arg("x"), QString("1 item: x"));
    QCOMPARE(VariablesModel::tr("%n item(s): %1", nullptr, 2).arg("x"), QString("2 items: x"));
}

void TestWorkbenchWindow::everyPaneIsReachedByKeyboard()
{
    place("list.add");
    QTest::keyClick(m_window.get(), Qt::Key_1, Qt::ControlModifier);
    QVERIFY(m_window->findChild<QLineEdit *>("paletteSearch")->hasFocus());
    QTest::keyClick(m_window.get(), Qt::Key_2, Qt::ControlModifier);
    QVERIFY(scriptPane()->hasFocus());
    QTest::keyClick(m_window.get(), Qt::Key_3, Qt::ControlModifier);
    QVERIFY(properties()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(m_window.get(), Qt::Key_4, Qt::ControlModifier);
    QVERIFY(m_window->findChild<QTableView *>("variables")->hasFocus());
    m_window->findChild<QDockWidget *>("logDock")->hide();
    QTest::keyClick(m_window.get(), Qt::Key_5, Qt::ControlModifier);
    QVERIFY(m_window->findChild<LogPane *>()->hasFocus());

    QSet<QWidget *> reached;
    for (int i = 0; i < 20; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (const char *name : {"paletteSearch", "paletteTree", "script", "variables", "log"})
        QVERIFY2(reached.contains(m_window->findChild<QWidget *>(name)), name);
    QVERIFY(reached.contains(field<QLineEdit>("value")));
}

namespace
{
/// Runs \a action and the events that follow, and returns how long the event loop was kept from others.
template<typename Action>
qint64 stallOf(Action action)
{
    QElapsedTimer clock;
    clock.start();
    action();
    QApplication::processEvents();
    return clock.elapsed();
}

qint64 longestStallWhileScrolling(QAbstractItemView *view)
{
    qint64 longest = 0;
    QScrollBar *bar = view->verticalScrollBar();
    for (int i = 0; i <= 50; ++i)
        longest = qMax(longest, stallOf([bar, i] { bar->setValue(int(qint64(bar->maximum()) * i / 50)); }));
    return longest;
}
} // namespace

void TestWorkbenchWindow::largeListsStayFluid()
{
    QVariantList items;
    for (int i = 0; i < 100000; ++i) {
        const int number = int((qint64(i) * 7919) % 100003);
        items.append(i % 2 == 0 ? QVariant(number) : QVariant(QStringLiteral("item %1").arg(number)));
    }
    const qint64 shown = stallOf([this, &items] { setVariable("large", items, VarType::List); });
    std::unique_ptr<ValueDialog> dialog;
    const qint64 opened = stallOf([&] {
        dialog = std::make_unique<ValueDialog>("large", VarType::List, items);
        dialog->show();
    });
    auto *view = dialog->findChild<QTableView *>("values");
    const qint64 scrolled = longestStallWhileScrolling(view);
    const qint64 sorted =
        stallOf([view] { view->model()->sort(ListValueModel::ValueColumn, Qt::AscendingOrder); });
    const qint64 inserted = stallOf([view] { view->model()->insertRow(50000); });
    QCOMPARE(dialog->value().size(), 100001);
    // Numbers come first in order; every other item was a text.
    QCOMPARE(dialog->value().at(1).userType(), int(QMetaType::Int));
    QVERIFY(dialog->value().at(1).toInt() < dialog->value().at(2).toInt());
    qInfo(
        "longest stalls with 100,000 items: shown %lld ms, opened %lld ms, scrolled %lld ms, sorted %lld ms, "
        "inserted %lld ms",
        shown, opened, scrolled, sorted, inserted);
}

RUN_TEST_MAIN(QApplication, TestWorkbenchWindow)
#include "tst_workbenchwindow.moc"
