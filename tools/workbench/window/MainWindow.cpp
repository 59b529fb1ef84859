#include "MainWindow.h"

#include "FileBar.h"
#include "LogPane.h"
#include "PalettePane.h"
#include "PaneDocks.h"
#include "ProblemsPane.h"
#include "ScriptPane.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/search/SearchPane.h"
#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/variables/VariablesPane.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
constexpr int messageTimeMs = 8000;

/// Adds \a actions to \a menu; null stands for a separator.
void fillMenu(QMenu *menu, const QList<QAction *> &actions)
{
    for (QAction *action : actions) {
        if (action)
            menu->addAction(action);
        else
            menu->addSeparator();
    }
}
} // namespace

MainWindow::MainWindow(const StepHost::StepCatalogue &catalogue, QSettings &settings, QWidget *parent)
    : QMainWindow(parent), m_settings(settings), m_document(catalogue), m_session(m_document, m_log),
      m_recovery(m_document, Recovery::folderFor(settings)), m_recoveryBar(new FileBar),
      m_fileBar(new FileBar), m_files(m_document, settings, *m_fileBar, *this),
      m_recoveryOffer(m_recovery, *m_recoveryBar, m_files), m_script(new ScriptPane(m_document)),
      m_runActions(m_session, m_document, *m_script, this), m_palette(new PalettePane(catalogue)),
      m_properties(new PropertyPane), m_variables(new VariablesPane(m_document, m_session)),
      m_problems(new ProblemsPane(m_document.model())), m_search(new SearchPane(m_document)),
      m_toolBar(addToolBar(tr("Tools")))
{
    m_variables->setSettings(settings);
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize(QSize(18, 18));
    setWindowIcon(QIcon(QStringLiteral(":/workbench/images/workbench.svg")));
    setAcceptDrops(true);
    createCentre();
    createFileMenu();
    createEditMenu();
    createVariablesMenu();
    createRunMenu();
    createDocks();
    createHelpMenu();
    statusBar()->addPermanentWidget(m_runActions.progressBar());
    connectPanes();
    showFileName();
    m_recoveryOffer.begin();
    m_script->setFocus();
}

MainWindow::~MainWindow()
{
    // The panes look at members of the window, which go before the widgets do.
    m_docks.reset();
    delete takeCentralWidget();
}

ScriptDocument &MainWindow::document()
{
    return m_document;
}

RunSession &MainWindow::session()
{
    return m_session;
}

LogModel &MainWindow::log()
{
    return m_log;
}

void MainWindow::createCentre()
{
    auto *centre = new QWidget;
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_recoveryBar->setObjectName(QStringLiteral("recoveryBar"));
    layout->addWidget(m_recoveryBar);
    layout->addWidget(m_fileBar);
    layout->addWidget(m_script, 1);
    setCentralWidget(centre);
}

void MainWindow::createDocks()
{
    QMenu *viewMenu = menuBar()->addMenu(tr("&View"));
    auto *log = new LogPane(m_log);
    connect(log, &LogPane::stepRequested, this, &MainWindow::goToStep);
    m_docks = std::make_unique<PaneDocks>(
        *this, PaneDocks::Panes{m_palette, m_properties, m_variables, log, m_problems, m_search}, *viewMenu);
    if (PaneDocks::isOnSmallScreen(*this))
        m_toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_docks->readState(m_settings);

    auto *goToScript = new QAction(tr("Go to the script"), this);
    goToScript->setShortcut(Qt::CTRL | Qt::Key_2);
    connect(goToScript, &QAction::triggered, m_script,
            [this] { m_script->setFocus(Qt::ShortcutFocusReason); });
    addAction(goToScript);
}

void MainWindow::createFileMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    fillMenu(menu, m_files.actions());
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    m_toolBar->addActions(m_files.toolBarActions());
    m_toolBar->addSeparator();
}

void MainWindow::createEditMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    QUndoStack &stack = m_document.undoStack();
    QAction *undo = stack.createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    undo->setIcon(themedIcon(QStringLiteral("undo")));
    undo->setIconText(toolBarText(tr("&Undo")));
    QAction *redo = stack.createRedoAction(this, tr("&Redo"));
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    redo->setIcon(themedIcon(QStringLiteral("redo")));
    redo->setIconText(toolBarText(tr("&Redo")));
    menu->addAction(undo);
    menu->addAction(redo);
    menu->addSeparator();
    fillMenu(menu, m_script->editActions());
    menu->addSeparator();
    menu->addAction(themedIcon(QStringLiteral("search")), tr("&Find and replace"), this,
                    [this] { m_docks->showSearch(); })
        ->setShortcut(QKeySequence::Find);
    m_toolBar->addAction(undo);
    m_toolBar->addAction(redo);
    m_toolBar->addSeparator();
}

void MainWindow::createVariablesMenu()
{
    fillMenu(menuBar()->addMenu(tr("V&ariables")), m_variables->editActions());
}

void MainWindow::createRunMenu()
{
    fillMenu(menuBar()->addMenu(tr("&Run")), m_runActions.actions());
    m_toolBar->addActions(m_runActions.toolBarActions());
}

void MainWindow::createHelpMenu()
{
    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About the workbench"), this, &MainWindow::showAbout);
}

void MainWindow::connectPanes()
{
    connect(m_palette, &PalettePane::placeRequested, m_script, &ScriptPane::placeStep);
    connect(m_script, &ScriptPane::currentRowChanged, this, &MainWindow::showStep);
    connect(m_properties, &PropertyPane::settingEdited, this,
            [this](const QString &property, const QVariant &value) {
                m_document.setSetting(m_script->currentRow(), property, value);
            });
    connect(m_properties, &PropertyPane::variableWanted, m_variables, &VariablesPane::addVariable);
    connect(m_problems, &ProblemsPane::variableWanted, m_variables, &VariablesPane::addVariable);
    connect(m_problems, &ProblemsPane::settingRequested, this, &MainWindow::goToSetting);
    connect(m_problems, &ProblemsPane::countChanged, m_docks.get(), &PaneDocks::showProblemCount);
    connect(&m_document.model(), &QAbstractItemModel::dataChanged, this, &MainWindow::refreshStep);
    connect(&m_document, &ScriptDocument::variablesChanged, this,
            [this] { m_properties->setVariables(m_document.variables()); });
    connect(&m_document, &ScriptDocument::refused, this, &MainWindow::showMessage);
    connect(&m_document, &ScriptDocument::refused, &m_log,
            [this](const QString &reason) { m_log.appendWarning(reason); });
    connect(&m_document, &ScriptDocument::remarked, &m_log,
            [this](const QString &remark) { m_log.appendWarning(remark); });
    connect(m_variables, &VariablesPane::refused, this, &MainWindow::showMessage);
    connect(&m_document, &ScriptDocument::fileNameChanged, this, &MainWindow::showFileName);
    connect(&m_files, &FileActions::done, this, &MainWindow::showMessage);
    connect(&m_files, &FileActions::failed, this, &MainWindow::showError);
    connect(&m_files, &FileActions::warned, &m_log,
            [this](const QString &warning) { m_log.appendWarning(warning); });
    connect(&m_recoveryOffer, &RecoveryOffer::failed, this, &MainWindow::showError);
    connect(&m_recovery, &Recovery::failed, &m_log, [this](const QString &reason) {
        m_log.appendWarning(tr("Changes that are not saved would be lost in a crash: %1").arg(reason));
    });
    connect(&m_document.undoStack(), &QUndoStack::cleanChanged, this,
            [this](bool clean) { setWindowModified(!clean); });
    connect(&m_runActions, &RunActions::done, this, &MainWindow::showMessage);
    connect(&m_session.breakpoints(), &Breakpoints::failed, &m_log,
            [this](const QString &reason) { m_log.appendWarning(reason); });
    connectSearch();
}

void MainWindow::connectSearch()
{
    connect(m_search, &SearchPane::settingRequested, this, &MainWindow::goToSetting);
    connect(m_search, &SearchPane::variableRequested, m_variables, &VariablesPane::setCurrentVariable);
    connect(m_variables, &VariablesPane::usesRequested, this, [this](const QString &name) {
        m_docks->showSearch();
        m_search->showUses(name);
    });
}

void MainWindow::openFile(const QString &fileName)
{
    m_files.open(fileName);
}

void MainWindow::showFileName()
{
    const QString fileName = m_document.fileName();
    setWindowFilePath(fileName);
    // Twice, the mark of a changed script is a part of a name.
    const QString name = StepHost::inOneLine(QFileInfo(fileName).fileName())
                             .replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    setWindowTitle(tr("%1[*] – Quillmap workbench").arg(fileName.isEmpty() ? tr("New script") : name));
    setWindowModified(!m_document.undoStack().isClean());
}

void MainWindow::goToStep(const Operation *step)
{
    const int row = step ? m_document.model().rowOf(step) : -1;
    if (row < 0) {
        showMessage(tr("The script does not have this step any more."));
        return;
    }
    m_script->setCurrentRow(row);
    m_script->setFocus();
}

void MainWindow::goToSetting(int row, const QString &property)
{
    if (row < 0)
        return;
    m_script->setCurrentRow(row);
    if (property.isEmpty()) {
        m_script->setFocus();
        return;
    }
    m_docks->showSettings();
    m_properties->focusSetting(property);
}

void MainWindow::refreshStep(const QModelIndex &first, const QModelIndex &last)
{
    const int current = m_script->currentRow();
    if (first.row() <= current && current <= last.row())
        m_properties->refresh();
}

void MainWindow::showStep(int row)
{
    m_properties->setStep(row >= 0 ? &m_document.model().step(row) : nullptr);
}

void MainWindow::showMessage(const QString &message)
{
    statusBar()->showMessage(StepHost::inOneLine(shortened(message)), messageTimeMs);
}

void MainWindow::showError(const QString &title, const QString &error)
{
    m_log.appendWarning(error);
    QMessageBox box(QMessageBox::Warning, title, StepHost::inLines(shortened(error)), QMessageBox::NoButton,
                    this);
    box.setTextFormat(Qt::PlainText);
    box.addButton(tr("OK"), QMessageBox::AcceptRole);
    box.exec();
}

void MainWindow::showAbout()
{
    QMessageBox::about(
        this, tr("About the workbench"),
        tr("The Quillmap workbench, version %1: a place to try out the steps of plug-ins by hand.")
            .arg(QApplication::applicationVersion()));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_files.mayDiscard()) {
        event->ignore();
        return;
    }
    m_recovery.forget();
    m_docks->writeState(m_settings);
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().first().isLocalFile())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    openFile(event->mimeData()->urls().first().toLocalFile());
}
} // namespace Workbench
