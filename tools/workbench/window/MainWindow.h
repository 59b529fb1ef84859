#pragma once

#include "FileActions.h"
#include "RecoveryOffer.h"
#include "tools/workbench/document/LogModel.h"
#include "tools/workbench/document/Recovery.h"
#include "tools/workbench/document/RunSession.h"
#include "tools/workbench/document/ScriptDocument.h"

#include <QMainWindow>

class QLabel;
class QMenu;
class QProgressBar;
class QSettings;
class QToolBar;

namespace Workbench
{
class FileBar;
class PalettePane;
class ProblemsPane;
class PropertyPane;
class ScriptPane;
class VariablesPane;

/// The program's window: puts the panes together and offers their actions.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \param catalogue the steps on offer
    /// \param settings where recent files and the state of the window are kept
    /// Both have to outlive the window.
    MainWindow(const StepHost::StepCatalogue &catalogue, QSettings &settings, QWidget *parent = nullptr);
    ~MainWindow() override;

    ScriptDocument &document();
    RunSession &session();
    LogModel &log();

    /// Opens the file \a fileName, after the user had a say about unsaved changes. A file that cannot be read
    /// is reported and changes nothing.
    void openFile(const QString &fileName);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QDockWidget *addDock(const QString &title, const QString &name, QWidget *pane, Qt::DockWidgetArea area,
                         const QKeySequence &key);
    QAction *addRunAction(const QString &text, const QString &icon, const QKeySequence &key,
                          const QString &name);
    bool hasSmallScreen() const;
    void showFocused(const QWidget *before, QWidget *now);
    void createCentre();
    void createDocks();
    void createFileMenu();
    void createEditMenu();
    void createVariablesMenu();
    void createRunMenu();
    void createViewMenu();
    void createStatusBar();
    void connectPanes();
    void readState();
    void writeState();

    void showRecentFiles();
    void showFileName();
    void goToStep(const Operation *step);
    void goToSetting(int row, const QString &property);
    void showStep(int row);
    void refreshStep(const QModelIndex &first, const QModelIndex &last);
    void showProblemCount(int count);
    void showSession();
    void stopRun();
    void showProgress(int done, int total);
    void showMessage(const QString &message);
    void showError(const QString &title, const QString &error);
    void showAbout();

    QSettings &m_settings;
    LogModel m_log;
    ScriptDocument m_document;
    RunSession m_session;

    Recovery m_recovery;
    FileBar *m_recoveryBar;
    FileBar *m_fileBar;
    FileActions m_files;
    RecoveryOffer m_recoveryOffer;
    ScriptPane *m_script;
    PalettePane *m_palette = nullptr;
    PropertyPane *m_properties = nullptr;
    VariablesPane *m_variables = nullptr;
    ProblemsPane *m_problems = nullptr;
    QDockWidget *m_settingsDock = nullptr;
    QDockWidget *m_problemsDock = nullptr;
    QToolBar *m_toolBar;
    QMenu *m_viewMenu = nullptr;
    QMenu *m_recentMenu = nullptr;
    QAction *m_runAll = nullptr;
    QAction *m_runTo = nullptr;
    QAction *m_runStep = nullptr;
    QAction *m_stop = nullptr;
    QAction *m_restore = nullptr;
    QProgressBar *m_progress = nullptr;
};
} // namespace Workbench
