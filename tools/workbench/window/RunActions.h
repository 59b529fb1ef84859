#pragma once

#include <QList>
#include <QObject>

class QAction;
class QKeySequence;
class QProgressBar;

namespace Workbench
{
class RunSession;
class ScriptDocument;
class ScriptPane;

/// The actions that start, step and end runs and forget their results, each enabled while it can do something, and the bar that
/// shows how far a run is.
class RunActions : public QObject
{
    Q_OBJECT

public:
    /// The actions of \a session, which runs the steps of \a document; the current one is that of \a script. All
    /// have to outlive them.
    RunActions(RunSession &session, const ScriptDocument &document, const ScriptPane &script,
               QObject *parent = nullptr);

    /// For a menu; null stands for a separator.
    QList<QAction *> actions() const;

    /// Those that are at hand in a tool bar.
    QList<QAction *> toolBarActions() const;

    /// Shown while a run goes on. It belongs to whoever gives it a parent.
    QProgressBar *progressBar() const;

signals:
    /// Something was done, which \a message tells.
    void done(const QString &message);

private:
    QAction *addAction(const QString &text, const QString &icon, const QKeySequence &key, const QString &name,
                       const QString &toolTip);
    void createActions();
    void createSteppingActions();
    void showSession();
    void showProgress(int done, int total);
    void stop();

    RunSession &m_session;
    const ScriptDocument &m_document;
    const ScriptPane &m_script;
    QAction *m_runAll = nullptr;
    QAction *m_runTo = nullptr;
    QAction *m_runStep = nullptr;
    QAction *m_step = nullptr;
    QAction *m_skip = nullptr;
    QAction *m_startOver = nullptr;
    QAction *m_toggleBreakpoint = nullptr;
    QAction *m_clearBreakpoints = nullptr;
    QAction *m_stop = nullptr;
    QAction *m_restore = nullptr;
    QProgressBar *m_progressBar;
};
} // namespace Workbench
