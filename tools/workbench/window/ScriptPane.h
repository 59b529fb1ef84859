#pragma once

#include "host/scripts/ScriptMerge.h"
#include "tools/workbench/look/PaneView.h"

#include <QListView>

#include <optional>

namespace Workbench
{
class ScriptDocument;

/// The list of the script's steps, with the actions that change it.
class ScriptPane : public PaneView<QListView>
{
    Q_OBJECT

public:
    explicit ScriptPane(ScriptDocument &document, QWidget *parent = nullptr);

    /// The row of the current step; -1 when there is none.
    int currentRow() const;

    /// Makes the step in \a row the current and only selected one.
    void setCurrentRow(int row);

    /// Places a new step of type \a typeId behind the current one, or at the end.
    void placeStep(const QString &typeId);

    /// The rows of the selected steps, in ascending order.
    QList<int> selectedRows() const;

    /// The actions on steps, for a menu; null stands for a separator.
    QList<QAction *> editActions() const;

signals:
    /// Another step is the current one now; -1 when there is none.
    void currentRowChanged(int row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    QAction *addEditAction(const QString &text, const QString &icon, const QKeySequence &key,
                           void (ScriptPane::*slot)());
    int rowBehindCurrent() const;
    void cut();
    void copy();
    void paste();
    void duplicate();
    void removeSelected();
    void moveUp();
    void moveDown();
    void toggleEnabled();
    std::optional<StepHost::Clash> askOnClash(const QStringList &names);
    void updateActions();
    void showTouched(int row, int count);

    ScriptDocument &m_document;
    QList<QAction *> m_editActions;
    QList<QAction *> m_selectionActions;
};
} // namespace Workbench
