#pragma once

#include "tools/workbench/look/PaneView.h"

#include <QTableView>

namespace Workbench
{
class ValueModel;

/// A list or a table as a grid of cells, with the keys of a spreadsheet: Return goes down, Shift+Return up, also out of a
/// cell that is edited.
class ValueView : public PaneView<QTableView>
{
    Q_OBJECT

public:
    /// Shows \a model. The cells of a list are selected by rows.
    explicit ValueView(ValueModel &model, bool isList, QWidget *parent = nullptr);

    /// The rows with a selected cell, and the columns, in order.
    QList<int> selectedRows() const;
    QList<int> selectedColumns() const;

    /// Selects \a index, or its row in a list, and nothing else, whatever keys are held down.
    void selectOnly(const QModelIndex &index);

signals:
    /// The current cell is another one, or its value is.
    void currentChangedOrEdited();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void keepPlace();
    void goDown(int rows);

    ValueModel &m_model;
    bool m_isList;
    QPoint m_place; ///< Column and row of the current cell while the model is reset.
};
} // namespace Workbench
