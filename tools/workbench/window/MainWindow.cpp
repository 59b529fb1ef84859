#include "MainWindow.h"

#include "FileBar.h"
#include "LogPane.h"
#include "PalettePane.h"
#include "ProblemsPane.h"
#include "ScriptPane.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/settings/PropertyPane.h"
#include "tools/workbench/variables/VariablesPane.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
constexpr int messageTimeMs = 8000;
/// \a text of a menu without what marks its key, for a tool bar.
QString withoutMnemonic(QString text)
{
    static const QRegularExpression mark(QStringLiteral("\\(&\\w\\)|&|…"));
    return text.remove(mark);
}

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

/// Where copies of unsaved scripts stand: beside settings that have a file of their own, else in the user's folder for
/// the program's data.
QString recoveryFolder(const QSettings &settings)
{
    const QString folder = settings.format() == QSettings::IniFormat
        ? QFileInfo(settings.fileName()).path()
        : QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return folder + QLatin1String("/recovery");
}

// Counted up when docks or tool bars change, so that an older state is not applied to them.
constexpr int stateVersion = 2;
} // namespace

MainWindow::MainWindow(const StepHost::StepCatalogue &catalogue, QSettings &settings, QWidget *parent)
    : QMainWindow(parent), m_settings(settings), m_document(catalogue), m_session(m_document, m_log),
      m_recovery(m_document, recoveryFolder(settings)), m_recoveryBar(new FileBar), m_fileBar(new FileBar),
      m_files(m_document, settings, *m_fileBar, *this), m_recoveryOffer(m_recovery, *m_recoveryBar, m_files),
      m_script(new ScriptPane(m_document)), m_palette(new PalettePane(catalogue)),
      m_properties(new PropertyPane), m_variables(new VariablesPane(m_document, m_session)),
      m_problems(new ProblemsPane(m_document.model())), m_toolBar(addToolBar(tr("Tools")))
{
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize(QSize(18, 18));
    setWindowIcon(QIcon(QStringLiteral(":/workbench/images/workbench.svg")));
    setAcceptDrops(true);
    setDockNestingEnabled(true);
    createCentre();
    createFileMenu();
    createEditMenu();
    createVariablesMenu();
    createRunMenu();
    createViewMenu();
    createDocks();
    createStatusBar();
    connectPanes();
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::showFocused);
    readState();
    showFileName();
    showSession();
    m_recoveryOffer.begin();
    m_script->setFocus();
}

MainWindow::~MainWindow()
{
    // The focus changes until the last widget is gone.
    disconnect(qApp, nullptr, this, nullptr);
    // The panes look at members of the window, which go before the widgets do.
    delete takeCentralWidget();
    const QList<QDockWidget *> docks = findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks)
        delete dock;
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

QDockWidget *MainWindow::addDock(const QString &title, const QString &name, QWidget *pane,
                                 Qt::DockWidgetArea area, const QKeySequence &key)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(pane);
    addDockWidget(area, dock);
    m_viewMenu->addAction(dock->toggleViewAction());

    auto *go = new QAction(tr("Go to “%1”").arg(title), this);
    go->setShortcut(key);
    connect(go, &QAction::triggered, dock, [dock, pane] {
        dock->show();
        dock->raise();
        pane->setFocus(Qt::ShortcutFocusReason);
    });
    addAction(go);
    return dock;
}

void MainWindow::showFocused(const QWidget *, QWidget *now)
{
    // The keys may not go to a pane that lies behind another one.
    for (QWidget *widget = now; widget && isAncestorOf(widget); widget = widget->parentWidget()) {
        if (qobject_cast<QDockWidget *>(widget))
            widget->raise();
    }
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
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
    auto *logPane = new LogPane(m_log);
    connect(logPane, &LogPane::stepRequested, this, &MainWindow::goToStep);

    QDockWidget *palette = addDock(tr("Palette"), QStringLiteral("paletteDock"), m_palette,
                                   Qt::LeftDockWidgetArea, Qt::CTRL | Qt::Key_1);
    m_settingsDock = addDock(tr("Settings"), QStringLiteral("settingsDock"), m_properties,
                             Qt::RightDockWidgetArea, Qt::CTRL | Qt::Key_3);
    QDockWidget *variables = addDock(tr("Variables"), QStringLiteral("variablesDock"), m_variables,
                                     Qt::BottomDockWidgetArea, Qt::CTRL | Qt::Key_4);
    QDockWidget *log = addDock(tr("Log"), QStringLiteral("logDock"), logPane, Qt::BottomDockWidgetArea,
                               Qt::CTRL | Qt::Key_5);
    m_problemsDock = addDock(tr("Problems"), QStringLiteral("problemsDock"), m_problems,
                             Qt::BottomDockWidgetArea, Qt::CTRL | Qt::Key_6);
    tabifyDockWidget(log, m_problemsDock);
    log->raise();
    if (hasSmallScreen()) {
        // The script is what the window is for: the other panes give way to it.
        tabifyDockWidget(variables, log);
        tabifyDockWidget(log, m_problemsDock);
        variables->raise();
        m_toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
        resizeDocks({palette, m_settingsDock}, {140, 180}, Qt::Horizontal);
        resizeDocks({variables}, {110}, Qt::Vertical);
    } else {
        resizeDocks({palette, m_settingsDock}, {220, 270}, Qt::Horizontal);
        resizeDocks({variables, log}, {250, 250}, Qt::Vertical);
        resizeDocks({variables, log}, {520, 520}, Qt::Horizontal);
    }

    auto *goToScript = new QAction(tr("Go to the script"), this);
    goToScript->setShortcut(Qt::CTRL | Qt::Key_2);
    connect(goToScript, &QAction::triggered, m_script,
            [this] { m_script->setFocus(Qt::ShortcutFocusReason); });
    addAction(goToScript);
}

bool MainWindow::hasSmallScreen() const
{
    constexpr int smallWidth = 1000;
    return screen()->availableSize().width() < smallWidth;
}

void MainWindow::createFileMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    const auto add = [this, menu](const QString &text, const QString &icon, const QKeySequence &key,
                                  auto slot) {
        QAction *action = menu->addAction(themedIcon(icon), text, &m_files, slot);
        action->setIconText(withoutMnemonic(text));
        action->setShortcut(key);
        return action;
    };
    m_toolBar->addAction(add(tr("&New"), QStringLiteral("new"), QKeySequence::New, &FileActions::newFile));
    m_toolBar->addAction(
        add(tr("&Open…"), QStringLiteral("open"), QKeySequence::Open, &FileActions::chooseFile));
    m_recentMenu = menu->addMenu(tr("Open &recent"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::showRecentFiles);
    menu->addSeparator();
    m_toolBar->addAction(add(tr("&Save"), QStringLiteral("save"), QKeySequence::Save, &FileActions::save));
    add(tr("Save &as…"), QStringLiteral("save"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
        &FileActions::saveAs);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    m_toolBar->addSeparator();
}

void MainWindow::createEditMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    QUndoStack &stack = m_document.undoStack();
    QAction *undo = stack.createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    undo->setIcon(themedIcon(QStringLiteral("undo")));
    undo->setIconText(withoutMnemonic(tr("&Undo")));
    QAction *redo = stack.createRedoAction(this, tr("&Redo"));
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    redo->setIcon(themedIcon(QStringLiteral("redo")));
    redo->setIconText(withoutMnemonic(tr("&Redo")));
    menu->addAction(undo);
    menu->addAction(redo);
    menu->addSeparator();
    fillMenu(menu, m_script->editActions());
    m_toolBar->addAction(undo);
    m_toolBar->addAction(redo);
    m_toolBar->addSeparator();
}

void MainWindow::createVariablesMenu()
{
    fillMenu(menuBar()->addMenu(tr("V&ariables")), m_variables->editActions());
}

QAction *MainWindow::addRunAction(const QString &text, const QString &icon, const QKeySequence &key,
                                  const QString &name)
{
    auto *action = new QAction(themedIcon(icon), text, this);
    action->setIconText(withoutMnemonic(text));
    action->setShortcut(key);
    action->setObjectName(name);
    m_toolBar->addAction(action);
    return action;
}

void MainWindow::createRunMenu()
{
    m_runAll = addRunAction(tr("&Run"), QStringLiteral("run"), Qt::Key_F5, QStringLiteral("runAll"));
    m_runTo = addRunAction(tr("Run to &here"), QStringLiteral("run-to"), Qt::CTRL | Qt::Key_F10,
                           QStringLiteral("runTo"));
    m_runStep =
        addRunAction(tr("Run &step"), QStringLiteral("run-step"), Qt::Key_F10, QStringLiteral("runStep"));
    m_stop =
        addRunAction(tr("S&top"), QStringLiteral("stop"), Qt::SHIFT | Qt::Key_F5, QStringLiteral("stop"));
    m_restore = addRunAction(tr("&Clear results"), QStringLiteral("restore"), Qt::CTRL | Qt::Key_F5,
                             QStringLiteral("restore"));
    m_runAll->setToolTip(
        tr("Run the whole script on its start values (%1)").arg(m_runAll->shortcut().toString()));
    m_runTo->setToolTip(tr("Run the script up to the current step (%1)").arg(m_runTo->shortcut().toString()));
    m_runStep->setToolTip(tr("Run the current step alone, on what the last run left (%1)")
                              .arg(m_runStep->shortcut().toString()));
    m_stop->setToolTip(
        tr("Stop before the next step; once more: at once (%1)").arg(m_stop->shortcut().toString()));
    m_restore->setToolTip(tr("Forget what the last run did and left in the variables (%1)")
                              .arg(m_restore->shortcut().toString()));
    connect(m_runAll, &QAction::triggered, &m_session, &RunSession::runAll);
    connect(m_runTo, &QAction::triggered, this, [this] { m_session.runTo(m_script->currentRow()); });
    connect(m_runStep, &QAction::triggered, this, [this] { m_session.runStep(m_script->currentRow()); });
    connect(m_stop, &QAction::triggered, this, &MainWindow::stopRun);
    connect(m_restore, &QAction::triggered, &m_session, &RunSession::restore);

    QMenu *menu = menuBar()->addMenu(tr("&Run"));
    menu->addActions({m_runAll, m_runTo, m_runStep, m_stop});
    menu->addSeparator();
    menu->addAction(m_restore);
}

void MainWindow::createViewMenu()
{
    m_viewMenu = menuBar()->addMenu(tr("&View"));
    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About the workbench"), this, &MainWindow::showAbout);
}

void MainWindow::createStatusBar()
{
    m_progress = new QProgressBar;
    m_progress->setMaximumWidth(200);
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);
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
    connect(m_problems, &ProblemsPane::countChanged, this, &MainWindow::showProblemCount);
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
    connect(&m_session, &RunSession::changed, this, &MainWindow::showSession);
    connect(&m_session, &RunSession::progressed, this, &MainWindow::showProgress);
    connect(&m_document.model(), &QAbstractItemModel::rowsInserted, this, &MainWindow::showSession);
    connect(&m_document.model(), &QAbstractItemModel::rowsRemoved, this, &MainWindow::showSession);
    connect(&m_document.model(), &QAbstractItemModel::modelReset, this, &MainWindow::showSession);
}

void MainWindow::readState()
{
    // At a high scale a screen has fewer pixels for the window than it seems.
    resize(QSize(1280, 800).boundedTo(screen()->availableSize()));
    restoreGeometry(m_settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(m_settings.value(QStringLiteral("window/state")).toByteArray(), stateVersion);
}

void MainWindow::writeState()
{
    m_settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    m_settings.setValue(QStringLiteral("window/state"), saveState(stateVersion));
}

void MainWindow::openFile(const QString &fileName)
{
    m_files.open(fileName);
}

void MainWindow::showRecentFiles()
{
    m_recentMenu->clear();
    const QStringList paths = m_files.recentFiles();
    for (const QString &path : paths)
        m_recentMenu->addAction(menuText(QDir::toNativeSeparators(path)), this,
                                [this, path] { openFile(path); });
    if (m_recentMenu->isEmpty())
        m_recentMenu->addAction(tr("None yet"))->setEnabled(false);
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
    m_settingsDock->show();
    m_settingsDock->raise();
    m_properties->focusSetting(property);
}

void MainWindow::showProblemCount(int count)
{
    m_problemsDock->setWindowTitle(count > 0 ? tr("Problems (%1)").arg(count) : tr("Problems"));
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
    showSession();
}

void MainWindow::showSession()
{
    const bool isRunning = m_session.isRunning();
    const bool hasSteps = m_document.model().rowCount() > 0;
    const bool hasCurrent = m_script->currentRow() >= 0;
    m_runAll->setEnabled(!isRunning && hasSteps);
    m_runTo->setEnabled(!isRunning && hasCurrent);
    m_runStep->setEnabled(!isRunning && hasCurrent);
    m_stop->setEnabled(isRunning);
    m_restore->setEnabled(!isRunning && m_session.hasResult());
    if (!isRunning)
        m_progress->hide();
}

void MainWindow::stopRun()
{
    m_session.stop();
    showMessage(tr("The run stops before its next step. Stop again to end it at once."));
}

void MainWindow::showProgress(int done, int total)
{
    m_progress->setRange(0, total);
    m_progress->setValue(done);
    m_progress->show();
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
    writeState();
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
