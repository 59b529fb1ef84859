#pragma once

#include <QTreeView>

namespace Workbench
{
class LogModel;

/// The lines of the log. Activating one leads to its step.
class LogPane : public QTreeView
{
    Q_OBJECT

public:
    explicit LogPane(LogModel &log, QWidget *parent = nullptr);

signals:
    /// The user wants to see the step in \a row of the script.
    void stepRequested(int row);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void copyLines() const;

    LogModel &m_log;
};
} // namespace Workbench
