#include "ListValueModel.h"

#include "tools/workbench/look/TypeNames.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemOrder;
using StepHost::ItemValue;

namespace
{
/// The rows of \a items in the order of what \a keyOf gives for each item; equal ones as they stand.
template<typename KeyOf>
std::vector<int> sortedRows(const QVariantList &items, Qt::SortOrder order, KeyOf keyOf)
{
    using Key = decltype(keyOf(items.first()));
    std::vector<Key> keys;
    keys.reserve(size_t(items.size()));
    for (const QVariant &item : items)
        keys.push_back(keyOf(item));
    std::vector<int> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::stable_sort(rows.begin(), rows.end(), [&keys, order](int a, int b) {
        return order == Qt::AscendingOrder ? keys[size_t(a)] < keys[size_t(b)]
                                           : keys[size_t(b)] < keys[size_t(a)];
    });
    return rows;
}
} // namespace

ListValueModel::ListValueModel(QObject *parent) : QAbstractTableModel(parent) { }

QVariantList ListValueModel::items() const
{
    return m_items;
}

void ListValueModel::setItems(const QVariantList &items)
{
    beginResetModel();
    m_items = items;
    endResetModel();
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

bool ListValueModel::isItem(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
}

Qt::ItemFlags ListValueModel::flags(const QModelIndex &index) const
{
    if (!isItem(index))
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const ItemKind kind = ItemValue::kind(m_items.at(index.row()));
    if (index.column() == TypeColumn || (kind != ItemKind::Other && kind != ItemKind::Empty))
        flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant ListValueModel::data(const QModelIndex &index, int role) const
{
    if (!isItem(index))
        return QVariant();
    const QVariant &item = m_items.at(index.row());
    const ItemKind kind = ItemValue::kind(item);
    if (index.column() == TypeColumn) {
        if (role == Qt::DisplayRole)
            return TypeNames::of(kind);
        if (role == Qt::EditRole)
            return int(kind);
        return QVariant();
    }
    switch (role) {
    case Qt::DisplayRole:
        return ItemValue::summary(item);
    case Qt::EditRole:
        return ItemValue::editText(item);
    case Qt::TextAlignmentRole:
        if (kind == ItemKind::Int || kind == ItemKind::Double)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return QVariant();
}

bool ListValueModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !isItem(index))
        return false;
    QVariant &item = m_items[index.row()];
    const auto changed = index.column() == TypeColumn
        ? ItemValue::convert(item, ItemKind(value.toInt()))
        : ItemValue::parse(value.toString(), ItemValue::kind(item));
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
    if (sourceParent.isValid() || destinationParent.isValid() || count < 1 || sourceRow < 0
        || sourceRow + count > m_items.size() || destinationChild < 0 || destinationChild > m_items.size())
        return false;
    if (!beginMoveRows(QModelIndex(), sourceRow, sourceRow + count - 1, QModelIndex(), destinationChild))
        return false;
    const auto begin = m_items.begin();
    if (destinationChild > sourceRow)
        std::rotate(begin + sourceRow, begin + sourceRow + count, begin + destinationChild);
    else
        std::rotate(begin + destinationChild, begin + sourceRow, begin + sourceRow + count);
    endMoveRows();
    return true;
}

void ListValueModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    const std::vector<int> rows = column == TypeColumn
        ? sortedRows(m_items, order, ItemValue::kind)
        : sortedRows(m_items, order, [](const QVariant &item) { return ItemOrder(item); });

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
