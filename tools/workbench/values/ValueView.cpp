#include "ValueView.h"

#include "ValueModel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include <algorithm>

namespace Workbench
{
namespace
{
bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// How far Return goes; nothing when other keys are held down with it.
int stepOfReturn(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (!isReturn(event))
        return 0;
    return modifiers == Qt::NoModifier ? 1 : modifiers == Qt::ShiftModifier ? -1 : 0;
}

/// Leaves a cell with Return to the one below.
class CellDelegate : public QStyledItemDelegate
{
public:
    CellDelegate(const std::function<void(int)> &goDown, QObject *parent)
        : QStyledItemDelegate(parent), m_goDown(goDown)
    {
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *editor = qobject_cast<QWidget *>(watched);
        const int step =
            editor && event->type() == QEvent::KeyPress ? stepOfReturn(*static_cast<QKeyEvent *>(event)) : 0;
        if (step == 0)
            return QStyledItemDelegate::eventFilter(watched, event);
        emit commitData(editor);
        emit closeEditor(editor);
        m_goDown(step);
        return true;
    }

private:
    std::function<void(int)> m_goDown;
};

QList<int> sorted(QList<int> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}
} // namespace

ValueView::ValueView(ValueModel &model, bool isList, QWidget *parent)
    : PaneView<QTableView>(parent), m_model(model), m_isList(isList)
{
    setObjectName(QStringLiteral("values"));
    setModel(&model);
    setItemDelegate(new CellDelegate([this](int rows) { goDown(rows); }, this));
    setWordWrap(false);
    // Otherwise nothing but the table could be reached by Tab.
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setEditTriggers(model.isReadOnly() ? QAbstractItemView::NoEditTriggers
                                       : QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                            | QAbstractItemView::AnyKeyPressed);
    if (isList) {
        setSelectionBehavior(QAbstractItemView::SelectRows);
        horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
        horizontalHeader()->setSectionsClickable(false);
    }
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { m_place = QPoint(currentIndex().column(), currentIndex().row()); });
    connect(&model, &QAbstractItemModel::modelReset, this, &ValueView::keepPlace);
    connect(&model, &QAbstractItemModel::dataChanged, this, &ValueView::currentChangedOrEdited);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &ValueView::currentChangedOrEdited);
}

// What is undone comes as a whole new value.
void ValueView::keepPlace()
{
    const int row = std::min(m_place.y(), m_model.rowCount() - 1);
    const int column = std::min(m_place.x(), m_model.columnCount() - 1);
    if (row >= 0 && column >= 0)
        selectOnly(m_model.index(row, column));
    emit currentChangedOrEdited();
}

QList<int> ValueView::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    return sorted(rows);
}

QList<int> ValueView::selectedColumns() const
{
    QList<int> columns;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int column = range.left(); column <= std::min(range.right(), m_model.valueColumns() - 1);
             ++column)
            columns.append(column);
    }
    return sorted(columns);
}

void ValueView::selectOnly(const QModelIndex &index)
{
    // Not as the view would select it by itself: the keys that are held down are those of the command.
    selectionModel()->setCurrentIndex(
        index,
        QItemSelectionModel::ClearAndSelect
            | (m_isList ? QItemSelectionModel::Rows : QItemSelectionModel::NoUpdate));
    scrollTo(index);
}

void ValueView::goDown(int rows)
{
    const QModelIndex next = currentIndex().siblingAtRow(currentIndex().row() + rows);
    if (next.isValid())
        selectOnly(next);
}

void ValueView::keyPressEvent(QKeyEvent *event)
{
    const int step = stepOfReturn(*event);
    if (step == 0)
        return PaneView<QTableView>::keyPressEvent(event);
    goDown(step);
}
} // namespace Workbench
