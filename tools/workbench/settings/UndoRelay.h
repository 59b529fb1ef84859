#pragma once

#include <QObject>

class QLineEdit;

namespace Workbench
{
/// Leaves the undo and redo keys of a line edit to the window, whose undo knows of the same edits.
class UndoRelay : public QObject
{
    Q_OBJECT

public:
    /// Installs a relay on \a edit, which owns it.
    static void install(QLineEdit *edit);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit UndoRelay(QObject *parent);
};
} // namespace Workbench
