#include "RunWorkerMain.h"

#include "tools/workbench/settings/PropertyEditor.h"
#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/values/ValueDialog.h"
#include "tools/workbench/window/MainWindow.h"
#include "tools/workbench/window/PaletteModel.h"

#include "host/plugins/StepCatalogue.h"
#include "tests/support/FixtureStep.h"
#include "tests/support/TestPaths.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSettings>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QtTest>

using namespace Workbench;

namespace
{
const QString deceiving = QString::fromUtf8("a%1&b").arg(QChar(0x202e));
const QString shown = QString::fromUtf8("a\\u202e&b");
const QString shownInMenu = QString::fromUtf8("a\\u202e&&b");

/// A step whose texts are not what they seem.
class DeceivingStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(int mode MEMBER m_mode)
    Q_PROPERTY(QString name MEMBER m_name)
    Q_PROPERTY(QString value MEMBER m_value)
    Q_CLASSINFO("prop_mode", "a\xe2\x80\xae&b")
    Q_CLASSINFO("editor_mode", "COMBO")
    Q_CLASSINFO("choices_mode", "a\xe2\x80\xae&b|c")
    Q_CLASSINFO("editor_name", "VARNAME")
    Q_CLASSINFO("editor_value", "VARREF")

public:
    DeceivingStep() : FixtureStep("other.deceive") { }

    int m_mode = 0;
    QString m_name;
    QString m_value;
};

/// A text of a list to choose from, as \a view shows it.
QString shownText(const QAbstractItemView *view, int row)
{
    const auto *delegate = qobject_cast<const QStyledItemDelegate *>(view->itemDelegate());
    return delegate ? delegate->displayText(view->model()->index(row, 0).data(), QLocale::c()) : QString();
}
} // namespace

// Nothing that the workbench shows looks like something else.
class TestWorkbenchTexts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fileNames();
    void titleWithAMark();
    void messages();
    void namesOfCommands();
    void palette();
    void labelsAndChoices();
    void listsToChooseFrom();
    void fieldsTellWhatIsNotSeen();
    void valueDialog();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QSettings> m_settings;
    StepHost::StepCatalogue m_catalogue;
    std::unique_ptr<MainWindow> m_window;
};

void TestWorkbenchTexts::init()
{
    if (m_catalogue.typeIds().isEmpty())
        QVERIFY(m_catalogue.addPlugin(TestPaths::fixture("RudeSteps")));
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_folder->filePath("settings.ini"), QSettings::IniFormat);
    m_window = std::make_unique<MainWindow>(m_catalogue, *m_settings);
}

void TestWorkbenchTexts::cleanup()
{
    m_window.reset();
}

void TestWorkbenchTexts::fileNames()
{
    const QString fileName = m_folder->filePath(deceiving + ".json");
    QCOMPARE(m_window->document().save(fileName), QString());
    m_window->openFile(fileName);
    QVERIFY2(m_window->windowTitle().startsWith(shown + ".json[*]"), qPrintable(m_window->windowTitle()));
    const QString message = m_window->statusBar()->currentMessage();
    QVERIFY2(message.endsWith(shown + ".json"), qPrintable(message));
    QStringList entries;
    const QList<QMenu *> menus = m_window->findChildren<QMenu *>();
    for (QMenu *menu : menus) {
        emit menu->aboutToShow();
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions)
            entries.append(action->text());
    }
    QCOMPARE(entries.filter(".json").size(), 1);
    QVERIFY2(entries.filter(".json").first().endsWith(shownInMenu + ".json"),
             qPrintable(entries.filter(".json").first()));
}

void TestWorkbenchTexts::titleWithAMark()
{
    const QString fileName = m_folder->filePath("a[*].json");
    QCOMPARE(m_window->document().save(fileName), QString());
    QVERIFY2(m_window->windowTitle().startsWith("a[*][*].json[*]"), qPrintable(m_window->windowTitle()));
}

void TestWorkbenchTexts::messages()
{
    m_window->document().insertScript("{\"" + deceiving.toUtf8() + "\": 1}", 0);
    const QString message = m_window->statusBar()->currentMessage();
    QVERIFY2(message.contains(shown), qPrintable(message));
    emit m_window->document().refused(QString(100000, 'x') + "\n");
    QVERIFY(m_window->statusBar()->currentMessage().size() < 1100);
}

void TestWorkbenchTexts::namesOfCommands()
{
    ScriptDocument &document = m_window->document();
    document.placeStep("fixture.deceive", 0);
    QCOMPARE(document.undoStack().undoText(), QString::fromUtf8("Place “<b>a\\u202eb|c`d”"));
    document.setVariables(VariableScope(), QString::fromUtf8("Remove “%1”").arg(deceiving + '\n'));
    QCOMPARE(document.undoStack().undoText(), QString::fromUtf8("Remove “%1\\n”").arg(shownInMenu));
}

void TestWorkbenchTexts::palette()
{
    const PaletteModel palette(m_catalogue);
    QStringList toolTips;
    for (int row = 0; row < palette.rowCount(); ++row) {
        const QModelIndex category = palette.index(row, 0);
        for (int step = 0; step < palette.rowCount(category); ++step)
            toolTips.append(palette.index(step, 0, category).data(Qt::ToolTipRole).toString());
    }
    const QString toolTip = toolTips.filter("fixture.deceive").value(0);
    QVERIFY2(toolTip.contains("&lt;b&gt;a\\u202eb|c`d"), qPrintable(toolTip));
}

void TestWorkbenchTexts::labelsAndChoices()
{
    const DeceivingStep step;
    PropertyPane pane;
    pane.setStep(&step);
    QStringList labels;
    const QList<QLabel *> all = pane.findChildren<QLabel *>();
    for (const QLabel *label : all)
        labels.append(label->text());
    QVERIFY2(labels.contains(shownInMenu), qPrintable(labels.join('\n')));
    const auto *choices = pane.editor("mode")->findChild<QComboBox *>();
    QCOMPARE(choices->itemText(0), shown);
}

void TestWorkbenchTexts::listsToChooseFrom()
{
    const DeceivingStep step;
    VariableScope scope;
    scope.set(deceiving, 1);
    PropertyPane pane;
    pane.setVariables(scope);
    pane.setStep(&step);
    const auto *names = pane.editor("name")->findChild<QComboBox *>();
    QCOMPARE(names->itemText(0), deceiving);
    QCOMPARE(shownText(names->view(), 0), shown);
    QCOMPARE(shownText(names->completer()->popup(), 0), shown);
    QCompleter *completer = pane.editor("value")->findChild<QLineEdit *>()->completer();
    completer->setCompletionPrefix("$");
    QCOMPARE(shownText(completer->popup(), 0), '$' + shown);
}

void TestWorkbenchTexts::fieldsTellWhatIsNotSeen()
{
    DeceivingStep step;
    step.m_name = deceiving;
    step.m_value = deceiving;
    VariableScope scope;
    PropertyPane pane;
    pane.setStep(&step);
    const QString missing = QString::fromUtf8("There is no variable “%1” yet.").arg(shown);
    const QString unseen = QString("Some characters are not seen in the field: \"%1\"").arg(shown);
    const auto hints = [&pane] {
        QStringList texts;
        const QList<QLabel *> labels = pane.findChildren<QLabel *>();
        for (const QLabel *label : labels)
            texts.append(label->text());
        return texts;
    };
    QVERIFY2(hints().contains(missing), qPrintable(hints().join('\n')));
    QVERIFY2(hints().contains(unseen), qPrintable(hints().join('\n')));
    scope.set(deceiving, 1);
    pane.setVariables(scope);
    QVERIFY(!hints().contains(missing));
    QCOMPARE(hints().count(unseen), 2);
    step.m_value = "plain";
    pane.refresh();
    QCOMPARE(hints().count(unseen), 1);
}

void TestWorkbenchTexts::valueDialog()
{
    ValueDialog dialog(deceiving, VarType::List, {1});
    QVERIFY2(dialog.windowTitle().contains(shown), qPrintable(dialog.windowTitle()));
    dialog.importFile(m_folder->filePath(deceiving + ".txt"));
    const QString message = dialog.findChild<QLabel *>("message")->text();
    QVERIFY2(message.contains(shown), qPrintable(message));
}

RUN_TEST_MAIN(QApplication, TestWorkbenchTexts)
#include "tst_workbenchtexts.moc"
