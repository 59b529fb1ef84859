#include "PaneDocks.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QScreen>
#include <QSettings>

namespace Workbench
{
namespace
{
// Counted up when docks or tool bars change, so that an older state is not applied to them.
constexpr int stateVersion = 3;

QString geometryKey()
{
    return QStringLiteral("window/geometry");
}

QString stateKey()
{
    return QStringLiteral("window/state");
}
} // namespace

PaneDocks::PaneDocks(QMainWindow &window, const Panes &panes, QMenu &viewMenu)
    : m_window(window), m_viewMenu(viewMenu),
      m_palette(add(tr("Palette"), QStringLiteral("paletteDock"), panes.palette, Qt::CTRL | Qt::Key_1)),
      m_settings(add(tr("Settings"), QStringLiteral("settingsDock"), panes.settings, Qt::CTRL | Qt::Key_3)),
      m_variables(
          add(tr("Variables"), QStringLiteral("variablesDock"), panes.variables, Qt::CTRL | Qt::Key_4)),
      m_log(add(tr("Log"), QStringLiteral("logDock"), panes.log, Qt::CTRL | Qt::Key_5)),
      m_problems(add(tr("Problems"), QStringLiteral("problemsDock"), panes.problems, Qt::CTRL | Qt::Key_6)),
      m_search(add(tr("Find"), QStringLiteral("searchDock"), panes.search, Qt::CTRL | Qt::Key_7))
{
    arrange();
    connect(qApp, &QApplication::focusChanged, this, &PaneDocks::showFocused);
}

PaneDocks::~PaneDocks()
{
    // The focus changes until the last of them is gone.
    disconnect(qApp, nullptr, this, nullptr);
    for (const QDockWidget *dock : {m_palette, m_settings, m_variables, m_log, m_problems, m_search})
        delete dock;
}

QDockWidget *PaneDocks::add(const QString &title, const QString &name, QWidget *pane, const QKeySequence &key)
{
    auto *dock = new QDockWidget(title, &m_window);
    dock->setObjectName(name);
    dock->setWidget(pane);
    m_viewMenu.addAction(dock->toggleViewAction());

    auto *go = new QAction(tr("Go to “%1”").arg(title), &m_window);
    go->setShortcut(key);
    connect(go, &QAction::triggered, dock, [dock, pane] {
        dock->show();
        dock->raise();
        pane->setFocus(Qt::ShortcutFocusReason);
    });
    m_window.addAction(go);
    return dock;
}

bool PaneDocks::isOnSmallScreen(const QMainWindow &window)
{
    constexpr int smallWidth = 1000;
    return window.screen()->availableSize().width() < smallWidth;
}

void PaneDocks::arrange()
{
    m_window.setDockNestingEnabled(true);
    m_window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    m_window.setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
    m_window.addDockWidget(Qt::LeftDockWidgetArea, m_palette);
    m_window.addDockWidget(Qt::RightDockWidgetArea, m_settings);
    for (QDockWidget *dock : {m_variables, m_log, m_problems, m_search})
        m_window.addDockWidget(Qt::BottomDockWidgetArea, dock);
    m_window.tabifyDockWidget(m_log, m_problems);
    m_window.tabifyDockWidget(m_problems, m_search);
    m_log->raise();
    if (isOnSmallScreen(m_window)) {
        // The middle is what the window is for: the docks give way to it.
        m_window.tabifyDockWidget(m_variables, m_log);
        m_window.tabifyDockWidget(m_log, m_problems);
        m_window.tabifyDockWidget(m_problems, m_search);
        m_variables->raise();
        m_window.resizeDocks({m_palette, m_settings}, {140, 180}, Qt::Horizontal);
        m_window.resizeDocks({m_variables}, {110}, Qt::Vertical);
    } else {
        m_window.resizeDocks({m_palette, m_settings}, {220, 270}, Qt::Horizontal);
        m_window.resizeDocks({m_variables, m_log}, {250, 250}, Qt::Vertical);
        m_window.resizeDocks({m_variables, m_log}, {520, 520}, Qt::Horizontal);
    }
}

void PaneDocks::showFocused(const QWidget *, QWidget *now)
{
    // The keys may not go to a pane that lies behind another one.
    for (QWidget *widget = now; widget && m_window.isAncestorOf(widget); widget = widget->parentWidget()) {
        if (qobject_cast<QDockWidget *>(widget))
            widget->raise();
    }
}

void PaneDocks::showSettings()
{
    m_settings->show();
    m_settings->raise();
}

void PaneDocks::showSearch()
{
    m_search->show();
    m_search->raise();
    m_search->widget()->setFocus(Qt::ShortcutFocusReason);
}

void PaneDocks::showProblemCount(int count)
{
    m_problems->setWindowTitle(count > 0 ? tr("Problems (%1)").arg(count) : tr("Problems"));
}

void PaneDocks::readState(const QSettings &settings)
{
    // At a high scale a screen has fewer pixels for the window than it seems.
    m_window.resize(QSize(1280, 800).boundedTo(m_window.screen()->availableSize()));
    m_window.restoreGeometry(settings.value(geometryKey()).toByteArray());
    m_window.restoreState(settings.value(stateKey()).toByteArray(), stateVersion);
}

void PaneDocks::writeState(QSettings &settings) const
{
    settings.setValue(geometryKey(), m_window.saveGeometry());
    settings.setValue(stateKey(), m_window.saveState(stateVersion));
}
} // namespace Workbench
