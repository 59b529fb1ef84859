#pragma once

#include <QObject>

class QDockWidget;
class QKeySequence;
class QMainWindow;
class QMenu;
class QSettings;
class QWidget;

namespace Workbench
{
/// The docks of a window: each has a pane and a key that leads to it, and the one with the focus lies in front. On a small
/// screen they give way to the middle of the window.
class PaneDocks : public QObject
{
    Q_OBJECT

public:
    /// What the docks show.
    struct Panes
    {
        QWidget *palette;
        QWidget *settings;
        QWidget *variables;
        QWidget *log;
        QWidget *problems;
        QWidget *search;
    };

    /// Adds docks with \a panes, which then belong to the docks, to \a window, and to \a viewMenu what shows and hides
    /// them.
    PaneDocks(QMainWindow &window, const Panes &panes, QMenu &viewMenu);

    /// Deletes the docks with their panes.
    ~PaneDocks() override;

    /// Whether the screen of \a window is a small one.
    static bool isOnSmallScreen(const QMainWindow &window);

    /// Brings the pane of the settings to the front.
    void showSettings();

    /// Brings the pane of the search to the front and gives it the keyboard.
    void showSearch();

    void showProblemCount(int count);

    /// Gives the window the size and the docks the places that writeState() wrote.
    void readState(const QSettings &settings);
    void writeState(QSettings &settings) const;

private:
    QDockWidget *add(const QString &title, const QString &name, QWidget *pane, const QKeySequence &key);
    void arrange();
    void showFocused(const QWidget *before, QWidget *now);

    QMainWindow &m_window;
    QMenu &m_viewMenu;
    QDockWidget *m_palette;
    QDockWidget *m_settings;
    QDockWidget *m_variables;
    QDockWidget *m_log;
    QDockWidget *m_problems;
    QDockWidget *m_search;
};
} // namespace Workbench
