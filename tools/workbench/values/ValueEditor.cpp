#include "ValueEditor.h"

#include "FindBar.h"
#include "ListValueModel.h"
#include "ModelRows.h"
#include "TableValueModel.h"
#include "ValueView.h"
#include "tools/workbench/look/ChoiceDelegate.h"
#include "tools/workbench/look/TypeNames.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
QVector<ChoiceDelegate::Choice> kindChoices()
{
    QVector<ChoiceDelegate::Choice> choices;
    const QVector<ItemKind> kinds = ItemValue::editableKinds();
    for (const ItemKind kind : kinds)
        choices.append({int(kind), TypeNames::of(kind)});
    return choices;
}
} // namespace

ValueEditor::ValueEditor(VarType type, const QVariantList &value, QWidget *parent)
    : QWidget(parent), m_toolBar(new QToolBar)
{
    if (type == VarType::Table)
        m_model = m_table = new TableValueModel(this);
    else
        m_model = m_list = new ListValueModel(this);
    m_model->setValue(value);
    m_history = new ValueHistory(*m_model, this);
    m_view = new ValueView(*m_model, m_list);
    if (m_list)
        m_view->setItemDelegateForColumn(ListValueModel::TypeColumn, new ChoiceDelegate(kindChoices(), this));
    m_findBar = new FindBar(*m_model, *m_view);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_toolBar);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_findBar);
    setFocusProxy(m_view);
    createCommands();
    connect(m_model, &ValueModel::refused, this, &ValueEditor::told);
    connect(m_view, &ValueView::currentChangedOrEdited, this, &ValueEditor::showType);
    showType();
}

QVariantList ValueEditor::value() const
{
    return m_model->value();
}

void ValueEditor::replaceValue(const QVariantList &value)
{
    edit([&] { m_model->setValue(value); });
}

bool ValueEditor::isEdited() const
{
    return m_history->stack().index() > 0;
}

ValueModel &ValueEditor::model() const
{
    return *m_model;
}

QToolBar &ValueEditor::toolBar() const
{
    return *m_toolBar;
}

ValueView &ValueEditor::view() const
{
    return *m_view;
}

void ValueEditor::edit(const std::function<void()> &action)
{
    emit told(QString());
    m_history->edit(action);
}

// The rectangle around what is selected; what is not selected in it is empty.
Cells ValueEditor::selectedCells() const
{
    const QList<int> rows = m_view->selectedRows();
    const QList<int> columns = m_view->selectedColumns();
    Cells cells;
    if (columns.isEmpty())
        return cells;
    cells.reserve(rows.size());
    for (const int row : rows) {
        QVariantList line;
        for (int column = columns.first(); column <= columns.last(); ++column) {
            const bool isSelected = m_view->selectionModel()->isSelected(m_model->index(row, column));
            line.append(isSelected ? m_model->valueAt(row, column) : QVariant());
        }
        cells.append(line);
    }
    return cells;
}

void ValueEditor::copy()
{
    const Cells cells = selectedCells();
    if (!cells.isEmpty())
        QGuiApplication::clipboard()->setMimeData(mimeOfCells(cells));
}

void ValueEditor::cut()
{
    copy();
    clear();
}

void ValueEditor::paste()
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    const Cells cells = mime ? cellsOfMime(*mime) : Cells();
    if (!cells.isEmpty())
        edit([&] { putAtSelection(cells); });
}

// One cell goes into all that are selected; more of them from the first selected one on, with room made for the rest.
void ValueEditor::putAtSelection(const Cells &cells)
{
    const QList<int> rows = m_view->selectedRows();
    const QList<int> columns = m_view->selectedColumns();
    const int row = rows.isEmpty() ? m_model->rowCount() : rows.first();
    const int column = columns.isEmpty() ? 0 : columns.first();
    const bool isOne = cells.size() == 1 && cells.first().size() == 1;
    Cells fitting = cells;
    if (isOne && !rows.isEmpty() && !columns.isEmpty()) {
        QVariantList line;
        while (line.size() <= columns.last() - columns.first())
            line.append(cells.first().first());
        fitting = Cells(rows.last() - rows.first() + 1, line);
    }
    for (int i = 0; i < fitting.size(); ++i) {
        QVariantList &line = fitting[i];
        for (int j = 0; j < line.size() && (m_table || line.size() == 1); ++j)
            line[j] = fittingCell(line.at(j), m_model->valueAt(row + i, column + j));
    }
    m_model->put(row, column, fitting);
    m_view->selectOnly(m_model->index(row, column));
}

void ValueEditor::fillDown()
{
    const QList<int> rows = m_view->selectedRows();
    const QList<int> columns = m_view->selectedColumns();
    if (rows.size() < 2 || columns.isEmpty())
        return;
    QVariantList line;
    for (int column = columns.first(); column <= columns.last(); ++column)
        line.append(m_model->valueAt(rows.first(), column));
    edit([&] { m_model->put(rows.first(), columns.first(), Cells(rows.last() - rows.first() + 1, line)); });
}

// An item is removed, a cell of a table is emptied: the others stay where they are.
void ValueEditor::clear()
{
    if (m_list)
        return removeRows();
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    edit([&] { m_table->clearCells(selected); });
}

void ValueEditor::insertRow(int distance)
{
    const int row =
        m_view->currentIndex().isValid() ? m_view->currentIndex().row() + distance : m_model->rowCount();
    edit([this, row] {
        if (m_table && m_model->columnCount() == 0)
            m_model->insertColumn(0);
        else
            m_model->insertRow(row);
    });
    m_view->selectOnly(m_model->index(qMin(row, m_model->rowCount() - 1), 0));
    m_view->edit(m_view->currentIndex());
}

void ValueEditor::removeRows()
{
    edit([this] { removeModelRows(*m_model, m_view->selectedRows()); });
}

void ValueEditor::insertColumn()
{
    const QModelIndex current = m_view->currentIndex();
    edit([this, current] {
        m_model->insertColumn(current.isValid() ? current.column() + 1 : m_model->columnCount());
    });
}

void ValueEditor::removeColumns()
{
    const QList<int> columns = m_view->selectedColumns();
    edit([this, &columns] {
        for (auto column = columns.crbegin(); column != columns.crend(); ++column)
            m_model->removeColumn(*column);
    });
}

void ValueEditor::moveRows(int distance)
{
    const QList<int> rows = m_view->selectedRows();
    if (rows.isEmpty())
        return;
    const int first = rows.first();
    const int count = rows.last() - first + 1;
    edit([this, first, count, distance] {
        m_model->moveRows(QModelIndex(), first, count, QModelIndex(),
                          distance < 0 ? first - 1 : first + count + 1);
    });
}

void ValueEditor::sort(Qt::SortOrder order)
{
    const int column = m_table ? qMax(0, m_view->currentIndex().column()) : int(ListValueModel::ValueColumn);
    edit([&] { m_model->sort(column, order); });
}

void ValueEditor::convertSelected(ItemKind kind)
{
    edit([this, kind] {
        if (m_list)
            m_list->convertRows(m_view->selectedRows(), kind);
        else
            m_table->convertCells(m_view->selectionModel()->selectedIndexes(), kind);
    });
}
} // namespace Workbench
