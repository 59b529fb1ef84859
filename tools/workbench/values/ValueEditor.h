#pragma once

#include "CellTransfer.h"
#include "ValueHistory.h"
#include "host/values/ItemValue.h"
#include "hostapi/VariableScope.h"

#include <QWidget>

#include <functional>

class QAction;
class QMenu;
class QToolBar;
class QToolButton;

namespace Workbench
{
class FindBar;
class ListValueModel;
class TableValueModel;
class ValueModel;
class ValueView;

/// Edits a list or a table as a spreadsheet does: a grid of cells with the commands around it, each of which is one edit
/// to be undone.
class ValueEditor : public QWidget
{
    Q_OBJECT

public:
    /// \param type VarType::List or VarType::Table
    ValueEditor(VarType type, const QVariantList &value, QWidget *parent = nullptr);

    QVariantList value() const;

    /// Takes \a value in place of the present one, as an edit.
    void replaceValue(const QVariantList &value);

    /// Whether there are edits that are not undone.
    bool isEdited() const;

    ValueModel &model() const;
    QToolBar &toolBar() const;
    ValueView &view() const;

signals:
    /// An edit was not carried out, for the reason \a message; empty when the next one is begun.
    void told(const QString &message);

private:
    QAction *addCommand(const QString &text, const QString &icon, const QKeySequence &key,
                        const std::function<void()> &command,
                        Qt::ShortcutContext context = Qt::WindowShortcut);
    void addIcon(QAction *action);
    void createCommands();
    void createClipboardCommands(QMenu &menu);
    void createRowCommands();
    void createTypeMenu();
    void showType();
    void edit(const std::function<void()> &action);
    Cells selectedCells() const;
    void putAtSelection(const Cells &cells);

    void copy();
    void cut();
    void paste();
    void fillDown();
    void clear();
    void insertRow(int distance);
    void removeRows();
    void insertColumn();
    void removeColumns();
    void moveRows(int distance);
    void sort(Qt::SortOrder order);
    void convertSelected(StepHost::ItemKind kind);

    ListValueModel *m_list = nullptr; ///< Null for a table.
    TableValueModel *m_table = nullptr; ///< Null for a list.
    ValueModel *m_model = nullptr; ///< The one of the two that there is.
    ValueHistory *m_history;
    ValueView *m_view;
    QToolBar *m_toolBar;
    FindBar *m_findBar;
    QToolButton *m_type = nullptr;
};
} // namespace Workbench
