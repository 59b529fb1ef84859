#pragma once

#include "FileActions.h"
#include "RecoveryOffer.h"
#include "RunActions.h"
#include "tools/workbench/document/LogModel.h"
#include "tools/workbench/document/Recovery.h"
#include "tools/workbench/document/RunSession.h"
#include "tools/workbench/document/ScriptDocument.h"

#include <QMainWindow>

#include <memory>

class QSettings;
class QToolBar;

namespace Workbench
{
class FileBar;
class PalettePane;
class PaneDocks;
class ProblemsPane;
class PropertyPane;
class ScriptPane;
class SearchPane;
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
    void createCentre();
    void createFileMenu();
    void createEditMenu();
    void createVariablesMenu();
    void createRunMenu();
    void createDocks();
    void createHelpMenu();
    void connectPanes();
    void connectSearch();

    void showFileName();
    void goToStep(const Operation *step);
    void goToSetting(int row, const QString &property);
    void showStep(int row);
    void refreshStep(const QModelIndex &first, const QModelIndex &last);
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
    RunActions m_runActions;
    PalettePane *m_palette = nullptr;
    PropertyPane *m_properties = nullptr;
    VariablesPane *m_variables = nullptr;
    ProblemsPane *m_problems = nullptr;
    SearchPane *m_search = nullptr;
    std::unique_ptr<PaneDocks> m_docks;
    QToolBar *m_toolBar;
};
} // namespace Workbench
