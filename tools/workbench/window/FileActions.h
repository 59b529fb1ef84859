#pragma once

#include "RecentFiles.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

namespace Workbench
{
class FileBar;
class ScriptDocument;

/// Opens and saves the script, and asks the user before anything would be lost: changes that are not saved, and what
/// another program wrote into the script's file meanwhile.
class FileActions : public QObject
{
    Q_OBJECT

public:
    /// \param bar where a file that was changed by others is reported
    /// \param window what dialogs and actions belong to
    FileActions(ScriptDocument &document, QSettings &settings, FileBar &bar, QWidget &window);

    /// The actions for a menu; null stands for a separator.
    QList<QAction *> actions() const;

    /// Those of them that a tool bar has, too.
    QList<QAction *> toolBarActions() const;

    /// Whether the present script may be given up: it is saved, or the user says so.
    bool mayDiscard();

    void newFile();
    void chooseFile();
    void open(const QString &fileName);

    /// Both return whether the script was saved. Where it cannot be, the user is told why, and offered another place.
    bool save();
    bool saveAs();

signals:
    /// Something was done, which \a message tells.
    void done(const QString &message);

    /// Something could not be done, which \a title names, for the reason \a error.
    void failed(const QString &title, const QString &error);

    /// The user was told \a warning.
    void warned(const QString &warning);

private:
    void createActions();
    void showRecentFiles();
    QString shownFileName() const;
    void show(const QString &fileName);
    bool saveTo(const QString &fileName);
    bool saveElsewhere(const QString &error);
    bool maySaveOverOthers();
    void showForeignFile();
    void showDifference();
    void reload();
    void keepMine();

    ScriptDocument &m_document;
    RecentFiles m_recentFiles;
    FileBar &m_bar;
    QWidget &m_window;
    QMenu *m_recentMenu;
    QAction *m_new = nullptr;
    QAction *m_open = nullptr;
    QAction *m_save = nullptr;
    QAction *m_saveAs = nullptr;
};
} // namespace Workbench
