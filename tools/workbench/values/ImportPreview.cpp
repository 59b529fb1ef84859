#include "ImportPreview.h"

#include "host/values/QuotedText.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"

#include <algorithm>

namespace Workbench
{
using StepHost::ColumnType;
using StepHost::ImportForm;
using StepHost::ImportShape;
using StepHost::ItemKind;

ImportPreview::ImportPreview(QObject *parent) : QAbstractTableModel(parent) { }

void ImportPreview::show(const QVector<QStringList> &rows, const ImportForm &form)
{
    beginResetModel();
    m_rows = rows;
    m_names = form.hasHeader && !rows.isEmpty() ? m_rows.takeFirst() : QStringList();
    m_takenColumn = form.shape == ImportShape::Column ? form.column : -1;
    int columns = 0;
    for (const QStringList &row : rows)
        columns = std::max(columns, row.size());
    m_types.clear();
    m_guesses.clear();
    for (int column = 0; column < columns; ++column) {
        m_types.append(form.types.isEmpty() ? ColumnType::Text
                                            : form.types.at(std::min(column, form.types.size() - 1)));
        m_guesses.append(guessColumn(rows, column, form));
    }
    endResetModel();
}

int ImportPreview::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ImportPreview::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_types.size();
}

QVariant ImportPreview::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const int column = index.column();
    const ColumnType type =
        m_types.at(column) == ColumnType::Auto ? m_guesses.at(column) : m_types.at(column);
    switch (role) {
    case Qt::DisplayRole:
        return StepHost::inOneLine(shortened(m_rows.at(index.row()).value(column)));
    case Qt::TextAlignmentRole:
        if (type == ColumnType::Int || type == ColumnType::Double)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return QVariant();
}

QString ImportPreview::typeName(ColumnType type)
{
    switch (type) {
    case ColumnType::Auto:
        return tr("Automatic");
    case ColumnType::Int:
        return TypeNames::of(ItemKind::Int);
    case ColumnType::Double:
        return TypeNames::of(ItemKind::Double);
    case ColumnType::Bool:
        return TypeNames::of(ItemKind::Bool);
    case ColumnType::Text:
        break;
    }
    return TypeNames::of(ItemKind::Text);
}

QString ImportPreview::columnTitle(int column) const
{
    const QString name = column < m_names.size() ? StepHost::inOneLine(shortened(m_names.at(column)))
                                                 : QString::number(column + 1);
    if (m_takenColumn >= 0 && column != m_takenColumn)
        return tr("%1\nnot taken").arg(name);
    return m_types.at(column) == ColumnType::Auto
        ? tr("%1\nautomatic: %2").arg(name, typeName(m_guesses.at(column)))
        : QStringLiteral("%1\n%2").arg(name, typeName(m_types.at(column)));
}

QVariant ImportPreview::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    return orientation == Qt::Vertical ? QVariant(section + 1) : QVariant(columnTitle(section));
}
} // namespace Workbench
