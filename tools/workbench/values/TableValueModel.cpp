#include "TableValueModel.h"

#include "tools/workbench/look/TypeNames.h"

#include <QBrush>

#include <algorithm>

namespace Workbench
{
using StepHost::ItemKind;
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

TableValueModel::TableValueModel(QObject *parent) : QAbstractTableModel(parent) { }

QVariantList TableValueModel::rows() const
{
    QVariantList rows;
    rows.reserve(m_rows.size());
    for (const QVariantList &row : m_rows)
        rows.append(QVariant(row));
    return rows;
}

void TableValueModel::setRows(const QVariantList &rows)
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(rows.size());
    for (const QVariant &row : rows)
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

int TableValueModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int TableValueModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

bool TableValueModel::isCell(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
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
    if (!isCell(index))
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (ItemValue::kind(cell(index)) != ItemKind::Other)
        flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant TableValueModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return QVariant();
    const QVariant value = cell(index);
    const ItemKind kind = ItemValue::kind(value);
    switch (role) {
    case Qt::DisplayRole:
        return ItemValue::summary(value);
    case Qt::EditRole:
        return ItemValue::editText(value);
    case Qt::ToolTipRole:
        return hasValue(index) ? TypeNames::of(kind) : tr("Behind the end of the row");
    case Qt::TextAlignmentRole:
        if (kind == ItemKind::Int || kind == ItemKind::Double)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return QVariant();
    case Qt::BackgroundRole:
        return hasValue(index) ? QVariant() : QVariant(QBrush(Qt::gray, Qt::Dense6Pattern));
    case KindRole:
        return int(kind);
    default:
        return QVariant();
    }
}

bool TableValueModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isCell(index) || (role != Qt::EditRole && role != KindRole))
        return false;
    if (role == Qt::EditRole && !hasValue(index) && value.toString().isEmpty())
        return false;
    const QVariant present = cell(index);
    // What is typed into an empty cell is a text; it can be given another type afterwards.
    const ItemKind kind =
        ItemValue::kind(present) == ItemKind::Empty ? ItemKind::Text : ItemValue::kind(present);
    const auto changed = role == KindRole ? ItemValue::convert(present, ItemKind(value.toInt()))
                                          : ItemValue::parse(value.toString(), kind);
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
} // namespace Workbench
