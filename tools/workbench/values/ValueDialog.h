#pragma once

#include "host/values/ItemValue.h"

#include "hostapi/VariableScope.h"

#include <QDialog>
#include <QUndoStack>
#include <QVariantList>

#include <functional>

class QLabel;
class QModelIndex;
class QSettings;
class QTableView;
class QToolBar;

namespace Workbench
{
class ListValueModel;
class TableValueModel;
class ValueModel;

/// Edits the value of a list or table variable: a list with one item a line and the type of each, a table
/// as a grid of cells.
class ValueDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param type VarType::List or VarType::Table
    ValueDialog(const QString &name, VarType type, const QVariantList &value, QWidget *parent = nullptr);

    /// The value as edited.
    QVariantList value() const;

    /// Closes the dialog without the edits. When there are some, the user is asked before.
    void reject() override;

    /// Where the folder of the last import or export is kept. Without, each begins in the current folder.
    void setSettings(QSettings &settings);

    /// Asks how the file \a fileName is to be read, and takes the value from it. If that cannot be read, says why and
    /// changes nothing.
    void importFile(const QString &fileName);

    /// Writes the value to the file \a fileName, or says why it cannot be written.
    void exportFile(const QString &fileName);

private:
    QToolBar *createToolBar();
    void addTypeMenu(QToolBar *bar);
    void setValue(const QVariantList &value);
    void connectModel();
    void noteEdit();
    void edit(const std::function<void()> &action);
    void select(const QModelIndex &index);
    QList<int> selectedRows() const;
    void insertItem();
    void removeItems();
    void insertColumn();
    void removeColumns();
    void moveItems(int distance);
    void sortItems();
    void convertSelected(StepHost::ItemKind kind);
    void chooseImport();
    void chooseExport();
    QString folder() const;
    void keepFolder(const QString &fileName);
    void showMessage(const QString &message);
    void showCount();

    VarType m_type;
    ListValueModel *m_list = nullptr; ///< Null for a table.
    TableValueModel *m_table = nullptr; ///< Null for a list.
    ValueModel *m_model = nullptr; ///< The one of the two that there is.
    QUndoStack m_undoStack;
    QVariantList m_noted; ///< The value after the last edit that the undo stack knows of.
    bool m_isEditing = false; ///< In edit(), which makes one edit of all that the model tells of.
    QSettings *m_settings = nullptr;
    QTableView *m_view;
    QLabel *m_count;
    QLabel *m_message;
};
} // namespace Workbench
