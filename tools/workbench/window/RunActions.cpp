#include "RunActions.h"

#include "ScriptPane.h"
#include "tools/workbench/document/RunSession.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QAction>
#include <QProgressBar>

namespace Workbench
{
RunActions::RunActions(RunSession &session, const ScriptDocument &document, const ScriptPane &script,
                       QObject *parent)
    : QObject(parent), m_session(session), m_document(document), m_script(script),
      m_progressBar(new QProgressBar)
{
    constexpr int progressWidth = 200;
    m_progressBar->setMaximumWidth(progressWidth);
    m_progressBar->hide();
    createActions();
    connect(&session, &RunSession::changed, this, &RunActions::showSession);
    connect(&session, &RunSession::progressed, this, &RunActions::showProgress);
    connect(&script, &ScriptPane::currentRowChanged, this, &RunActions::showSession);
    const ScriptModel &model = document.model();
    connect(&model, &QAbstractItemModel::rowsInserted, this, &RunActions::showSession);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &RunActions::showSession);
    connect(&model, &QAbstractItemModel::modelReset, this, &RunActions::showSession);
    showSession();
}

QAction *RunActions::addAction(const QString &text, const QString &icon, const QKeySequence &key,
                               const QString &name, const QString &toolTip)
{
    auto *action = new QAction(themedIcon(icon), text, this);
    action->setIconText(toolBarText(text));
    action->setShortcut(key);
    action->setObjectName(name);
    action->setToolTip(toolTip.arg(action->shortcut().toString()));
    return action;
}

void RunActions::createActions()
{
    m_runAll = addAction(tr("&Run"), QStringLiteral("run"), Qt::Key_F5, QStringLiteral("runAll"),
                         tr("Run the whole script on its start values, or go on with a run that waits (%1)"));
    m_runTo = addAction(tr("Run to &here"), QStringLiteral("run-to"), Qt::CTRL | Qt::Key_F10,
                        QStringLiteral("runTo"), tr("Run the script up to the current step (%1)"));
    m_runStep = addAction(tr("Run &step"), QStringLiteral("run-step"), Qt::Key_F10, QStringLiteral("runStep"),
                          tr("Run the current step alone, on what the last run left (%1)"));
    m_stop = addAction(tr("S&top"), QStringLiteral("stop"), Qt::SHIFT | Qt::Key_F5, QStringLiteral("stop"),
                       tr("Stop before the next step; once more: at once (%1)"));
    m_restore = addAction(tr("&Clear results"), QStringLiteral("restore"), Qt::CTRL | Qt::Key_F5,
                          QStringLiteral("restore"),
                          tr("Forget what the last run did and left in the variables (%1)"));
    createSteppingActions();
    connect(m_runAll, &QAction::triggered, &m_session, &RunSession::runAll);
    connect(m_runTo, &QAction::triggered, this, [this] { m_session.runTo(m_script.currentRow()); });
    connect(m_runStep, &QAction::triggered, this, [this] { m_session.runStep(m_script.currentRow()); });
    connect(m_stop, &QAction::triggered, this, &RunActions::stop);
    connect(m_restore, &QAction::triggered, &m_session, &RunSession::restore);
}

void RunActions::createSteppingActions()
{
    m_step = addAction(tr("St&ep"), QStringLiteral("run-next"), Qt::Key_F11, QStringLiteral("step"),
                       tr("Begin a run that waits before each step, or run the step that is next (%1)"));
    m_skip = addAction(tr("S&kip once"), QString(), Qt::CTRL | Qt::Key_F11, QStringLiteral("skipOnce"),
                       tr("Leave the step that is next out this once (%1)"));
    m_startOver = addAction(tr("Start &over"), QString(), Qt::CTRL | Qt::SHIFT | Qt::Key_F5,
                            QStringLiteral("startOver"),
                            tr("Give the run up and wait before the first step of a new one (%1)"));
    m_toggleBreakpoint =
        addAction(tr("&Breakpoint"), QString(), Qt::Key_F9, QStringLiteral("toggleBreakpoint"),
                  tr("Have runs wait before the selected steps, or not any more (%1)"));
    m_clearBreakpoints = addAction(tr("C&lear breakpoints"), QString(), Qt::CTRL | Qt::SHIFT | Qt::Key_F9,
                                   QStringLiteral("clearBreakpoints"), tr("Take all breakpoints away (%1)"));
    connect(m_step, &QAction::triggered, &m_session, &RunSession::step);
    connect(m_skip, &QAction::triggered, &m_session, &RunSession::skip);
    connect(m_startOver, &QAction::triggered, &m_session, &RunSession::startOver);
    connect(m_toggleBreakpoint, &QAction::triggered, this,
            [this] { m_session.breakpoints().toggle(m_script.selectedRows()); });
    connect(m_clearBreakpoints, &QAction::triggered, &m_session.breakpoints(), &Breakpoints::clear);
    connect(&m_session.breakpoints(), &Breakpoints::changed, this, &RunActions::showSession);
}

QList<QAction *> RunActions::actions() const
{
    return {m_runAll,
            m_runTo,
            m_runStep,
            nullptr,
            m_step,
            m_skip,
            m_startOver,
            nullptr,
            m_toggleBreakpoint,
            m_clearBreakpoints,
            nullptr,
            m_stop,
            m_restore};
}

QList<QAction *> RunActions::toolBarActions() const
{
    return {m_runAll, m_step, m_runTo, m_runStep, m_stop, m_restore};
}

QProgressBar *RunActions::progressBar() const
{
    return m_progressBar;
}

void RunActions::showSession()
{
    const bool isRunning = m_session.isRunning();
    const bool hasSteps = m_document.model().rowCount() > 0;
    const bool hasCurrent = m_script.currentRow() >= 0;
    const bool isPaused = m_session.isPaused();
    m_runAll->setEnabled((!isRunning || isPaused) && hasSteps);
    m_runTo->setEnabled((!isRunning || isPaused) && hasCurrent);
    m_step->setEnabled((!isRunning || isPaused) && hasSteps);
    m_skip->setEnabled(isPaused);
    m_startOver->setEnabled(isRunning && hasSteps);
    m_toggleBreakpoint->setEnabled(hasCurrent);
    m_clearBreakpoints->setEnabled(!m_session.breakpoints().isEmpty());
    m_runStep->setEnabled(!isRunning && hasCurrent);
    m_stop->setEnabled(isRunning);
    m_restore->setEnabled(!isRunning && m_session.hasResult());
    if (!isRunning)
        m_progressBar->hide();
}

void RunActions::showProgress(int done, int total)
{
    m_progressBar->setRange(0, total);
    m_progressBar->setValue(done);
    m_progressBar->show();
}

void RunActions::stop()
{
    m_session.stop();
    emit done(tr("The run stops before its next step. Stop again to end it at once."));
}
} // namespace Workbench
