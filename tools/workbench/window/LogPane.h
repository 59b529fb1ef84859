#pragma once

#include "tools/workbench/look/PaneView.h"

#include <QTreeView>

class Operation;

namespace Workbench
{
class LogModel;

/// The lines of the log. Activating one leads to its step.
class LogPane : public PaneView<QTreeView>
{
    Q_OBJECT

public:
    explicit LogPane(LogModel &log, QWidget *parent = nullptr);

signals:
    /// The user wants to see the step \a step; null for one that is gone.
    void stepRequested(const Operation *step);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void copyLines() const;

    LogModel &m_log;
};
} // namespace Workbench
