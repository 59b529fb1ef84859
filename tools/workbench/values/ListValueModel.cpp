#include "ListValueModel.h"

#include "SortedRows.h"
#include "tools/workbench/look/TypeNames.h"

#include <algorithm>
#include <vector>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemOrder;
using StepHost::ItemValue;

ListValueModel::ListValueModel(QObject *parent) : ValueModel(parent) { }

QVariantList ListValueModel::value() const
{
    return m_items;
}

void ListValueModel::setValue(const QVariantList &value)
{
    beginResetModel();
    m_items = value;
    endResetModel();
}

int ListValueModel::valueColumns() const
{
    return TypeColumn;
}

QVariant ListValueModel::valueAt(int row, int column) const
{
    return column == ValueColumn ? m_items.value(row) : QVariant();
}

void ListValueModel::put(int row, int, const QVector<QVariantList> &cells)
{
    const int missing = row + cells.size() - m_items.size();
    if (missing > 0)
        insertRows(m_items.size(), missing);
    for (int i = 0; i < cells.size(); ++i)
        m_items[row + i] = cells.at(i).size() == 1 ? cells.at(i).first() : QVariant(cells.at(i));
    if (!cells.isEmpty())
        emit dataChanged(index(row, 0), index(row + cells.size() - 1, ColumnCount - 1));
}

void ListValueModel::convertRows(const QList<int> &rows, ItemKind kind)
{
    int refusals = 0;
    QString firstReason;
    for (const int row : rows) {
        if (const auto converted = ItemValue::convert(m_items.at(row), kind))
            m_items[row] = *converted;
        else if (++refusals == 1)
            firstReason = converted.error();
    }
    if (!rows.isEmpty()) {
        const auto [first, last] = std::minmax_element(rows.cbegin(), rows.cend());
        emit dataChanged(index(*first, 0), index(*last, ColumnCount - 1));
    }
    if (refusals > 0)
        emit refused(tr("%n item(s) kept the old type: %1", nullptr, refusals).arg(firstReason));
}

int ListValueModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_items.size();
}

int ListValueModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

Qt::ItemFlags ListValueModel::flags(const QModelIndex &index) const
{
    if (!isCell(index))
        return Qt::NoItemFlags;
    const QVariant &item = m_items.at(index.row());
    if (index.column() == ValueColumn)
        return flagsOf(item);
    return flagsOf(QVariant());
}

QVariant ListValueModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return QVariant();
    const QVariant &item = m_items.at(index.row());
    if (index.column() == ValueColumn)
        return shown(item, role);
    const ItemKind kind = ItemValue::kind(item);
    if (role == Qt::DisplayRole)
        return TypeNames::of(kind);
    return role == Qt::EditRole ? QVariant(int(kind)) : QVariant();
}

bool ListValueModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isCell(index) || isReadOnly() || (role != Qt::EditRole && role != Qt::CheckStateRole))
        return false;
    QVariant &item = m_items[index.row()];
    // What is typed into an empty item is a text, as in an empty cell of a table.
    const ItemKind kind = ItemValue::kind(item) == ItemKind::Empty ? ItemKind::Text : ItemValue::kind(item);
    const auto changed = role == Qt::CheckStateRole ? StepHost::Result<QVariant>(value.toInt() == Qt::Checked)
        : index.column() == TypeColumn              ? ItemValue::convert(item, ItemKind(value.toInt()))
                                                    : parsed(value.toString(), kind);
    if (!changed) {
        emit refused(changed.error());
        return false;
    }
    item = *changed;
    emit dataChanged(index.siblingAtColumn(0), index.siblingAtColumn(ColumnCount - 1));
    return true;
}

QVariant ListValueModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    // Positions count from 0, as the steps count them.
    if (orientation == Qt::Vertical)
        return section;
    return section == ValueColumn ? tr("Value") : tr("Type");
}

bool ListValueModel::insertRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || row < 0 || row > m_items.size())
        return false;
    beginInsertRows(QModelIndex(), row, row + count - 1);
    for (int i = 0; i < count; ++i)
        m_items.insert(row, QVariant(QString()));
    endInsertRows();
    return true;
}

bool ListValueModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || row < 0 || row + count > m_items.size())
        return false;
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    m_items.erase(m_items.begin() + row, m_items.begin() + row + count);
    endRemoveRows();
    return true;
}

bool ListValueModel::moveRows(const QModelIndex &sourceParent, int sourceRow, int count,
                              const QModelIndex &destinationParent, int destinationChild)
{
    if (!canMoveRows(sourceParent, sourceRow, count, destinationParent, destinationChild)
        || !beginMoveRows(QModelIndex(), sourceRow, sourceRow + count - 1, QModelIndex(), destinationChild))
        return false;
    rotateRows(m_items.begin(), sourceRow, count, destinationChild);
    endMoveRows();
    return true;
}

void ListValueModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    const std::vector<int> rows = column == TypeColumn
        ? sortedRows(m_items.size(), order, [this](int row) { return ItemValue::kind(m_items.at(row)); })
        : sortedRows(m_items.size(), order, [this](int row) { return ItemOrder(m_items.at(row)); });

    emit layoutAboutToBeChanged({}, VerticalSortHint);
    QVariantList sorted;
    sorted.reserve(m_items.size());
    std::vector<int> newRows(rows.size());
    for (const int row : rows) {
        newRows[size_t(row)] = sorted.size();
        sorted.append(m_items.at(row));
    }
    m_items.swap(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &persistent : before)
        after.append(index(newRows[size_t(persistent.row())], persistent.column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}
} // namespace Workbench
