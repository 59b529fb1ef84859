#include "TableValueModel.h"

#include "SortedRows.h"
#include "tools/workbench/look/TypeNames.h"

#include <QBrush>

#include <algorithm>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemOrder;
using StepHost::ItemValue;

namespace
{
QVariantList padded(QVariantList row, int length)
{
    while (row.size() < length)
        row.append(QVariant());
    return row;
}
} // namespace

TableValueModel::TableValueModel(QObject *parent) : ValueModel(parent) { }

QVariantList TableValueModel::value() const
{
    QVariantList rows;
    rows.reserve(m_rows.size());
    for (const QVariantList &row : m_rows)
        rows.append(QVariant(row));
    return rows;
}

void TableValueModel::setValue(const QVariantList &value)
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(value.size());
    for (const QVariant &row : value)
        m_rows.append(ItemValue::kind(row) == ItemKind::List ? row.toList() : QVariantList{row});
    m_columns = widest();
    endResetModel();
}

int TableValueModel::widest() const
{
    int columns = 0;
    for (const QVariantList &row : m_rows)
        columns = std::max(columns, row.size());
    return columns;
}

void TableValueModel::convertCells(const QModelIndexList &cells, ItemKind kind)
{
    int refusals = 0;
    QString firstReason;
    for (const QModelIndex &index : cells) {
        if (const auto converted = ItemValue::convert(cell(index), kind))
            setCell(index, *converted);
        else if (++refusals == 1)
            firstReason = converted.error();
    }
    if (refusals > 0)
        emit refused(tr("%n cell(s) kept the old type: %1", nullptr, refusals).arg(firstReason));
}

void TableValueModel::clearCells(const QModelIndexList &cells)
{
    QModelIndex changed;
    for (const QModelIndex &index : cells) {
        if (!hasValue(index))
            continue;
        const bool isText = ItemValue::kind(cell(index)) == ItemKind::Text;
        m_rows[index.row()][index.column()] = isText ? QVariant(QString()) : QVariant();
        changed = index;
    }
    if (changed.isValid())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, m_columns - 1));
}

int TableValueModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int TableValueModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

int TableValueModel::valueColumns() const
{
    return m_columns;
}

QVariant TableValueModel::valueAt(int row, int column) const
{
    return m_rows.value(row).value(column);
}

void TableValueModel::put(int row, int column, const QVector<QVariantList> &cells)
{
    int width = 0;
    for (const QVariantList &line : cells)
        width = std::max(width, line.size());
    if (width == 0)
        return;
    const int missingRows = row + cells.size() - m_rows.size();
    if (missingRows > 0)
        insertRows(m_rows.size(), missingRows);
    if (column + width > m_columns) {
        beginInsertColumns(QModelIndex(), m_columns, column + width - 1);
        m_columns = column + width;
        endInsertColumns();
    }
    for (int i = 0; i < cells.size(); ++i) {
        QVariantList &line = m_rows[row + i];
        line = padded(line, cells.at(i).isEmpty() ? 0 : column + cells.at(i).size());
        std::copy(cells.at(i).cbegin(), cells.at(i).cend(), line.begin() + std::min(column, line.size()));
    }
    emit dataChanged(index(row, 0), index(row + cells.size() - 1, column + width - 1));
}

bool TableValueModel::hasValue(const QModelIndex &index) const
{
    return index.column() < m_rows.at(index.row()).size();
}

QVariant TableValueModel::cell(const QModelIndex &index) const
{
    return m_rows.at(index.row()).value(index.column());
}

void TableValueModel::setCell(const QModelIndex &index, const QVariant &value)
{
    QVariantList &row = m_rows[index.row()];
    row = padded(row, index.column() + 1);
    row[index.column()] = value;
    emit dataChanged(index.siblingAtColumn(0), index);
}

Qt::ItemFlags TableValueModel::flags(const QModelIndex &index) const
{
    return isCell(index) ? flagsOf(cell(index)) : Qt::NoItemFlags;
}

QVariant TableValueModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return QVariant();
    const QVariant value = cell(index);
    switch (role) {
    case Qt::ToolTipRole:
        return hasValue(index) ? TypeNames::of(ItemValue::kind(value)) : tr("Behind the end of the row");
    case Qt::BackgroundRole:
        return hasValue(index) ? QVariant() : QVariant(QBrush(Qt::gray, Qt::Dense6Pattern));
    case KindRole:
        return int(ItemValue::kind(value));
    default:
        return shown(value, role);
    }
}

bool TableValueModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isCell(index) || isReadOnly()
        || (role != Qt::EditRole && role != Qt::CheckStateRole && role != KindRole))
        return false;
    if (role == Qt::EditRole && !hasValue(index) && value.toString().isEmpty())
        return false;
    const QVariant present = cell(index);
    // What is typed into an empty cell is a text; it can be given another type afterwards.
    const ItemKind kind =
        ItemValue::kind(present) == ItemKind::Empty ? ItemKind::Text : ItemValue::kind(present);
    const auto changed = role == KindRole ? ItemValue::convert(present, ItemKind(value.toInt()))
        : role == Qt::CheckStateRole      ? StepHost::Result<QVariant>(value.toInt() == Qt::Checked)
                                          : parsed(value.toString(), kind);
    if (!changed) {
        emit refused(changed.error());
        return false;
    }
    setCell(index, *changed);
    return true;
}

QVariant TableValueModel::headerData(int section, Qt::Orientation, int role) const
{
    return role == Qt::DisplayRole ? QVariant(section) : QVariant();
}

bool TableValueModel::insertRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || row < 0 || row > m_rows.size())
        return false;
    beginInsertRows(QModelIndex(), row, row + count - 1);
    m_rows.insert(row, count, padded(QVariantList(), m_columns));
    endInsertRows();
    return true;
}

bool TableValueModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || row < 0 || row + count > m_rows.size())
        return false;
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    m_rows.remove(row, count);
    endRemoveRows();
    const int columns = widest();
    if (columns < m_columns) {
        beginRemoveColumns(QModelIndex(), columns, m_columns - 1);
        m_columns = columns;
        endRemoveColumns();
    }
    return true;
}

bool TableValueModel::moveRows(const QModelIndex &sourceParent, int sourceRow, int count,
                               const QModelIndex &destinationParent, int destinationChild)
{
    if (!canMoveRows(sourceParent, sourceRow, count, destinationParent, destinationChild)
        || !beginMoveRows(QModelIndex(), sourceRow, sourceRow + count - 1, QModelIndex(), destinationChild))
        return false;
    rotateRows(m_rows.begin(), sourceRow, count, destinationChild);
    endMoveRows();
    return true;
}

bool TableValueModel::insertColumns(int column, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || column < 0 || column > m_columns)
        return false;
    if (m_rows.isEmpty())
        insertRows(0, 1);
    beginInsertColumns(QModelIndex(), column, column + count - 1);
    if (column == m_columns)
        m_rows.first() = padded(m_rows.first(), m_columns + count);
    for (QVariantList &row : m_rows) {
        for (int i = 0; i < count && column < m_columns && column < row.size(); ++i)
            row.insert(column, QVariant());
    }
    m_columns += count;
    endInsertColumns();
    return true;
}

bool TableValueModel::removeColumns(int column, int count, const QModelIndex &parent)
{
    if (parent.isValid() || count < 1 || column < 0 || column + count > m_columns)
        return false;
    beginRemoveColumns(QModelIndex(), column, column + count - 1);
    for (QVariantList &row : m_rows) {
        const int last = std::min(column + count, row.size());
        if (column < last)
            row.erase(row.begin() + column, row.begin() + last);
    }
    m_columns -= count;
    endRemoveColumns();
    return true;
}

void TableValueModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= m_columns)
        return;
    const std::vector<int> sorted =
        sortedRows(m_rows.size(), order, [this, column](int row) { return ItemOrder(valueAt(row, column)); });
    QVector<QVariantList> rows;
    rows.reserve(m_rows.size());
    for (const int row : sorted)
        rows.append(m_rows.at(row));
    m_rows.swap(rows);
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, m_columns - 1));
}
} // namespace Workbench
