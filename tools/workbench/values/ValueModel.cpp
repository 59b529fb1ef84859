#include "ValueModel.h"

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

void ValueModel::setReadOnly(bool isReadOnly)
{
    m_isReadOnly = isReadOnly;
}

bool ValueModel::isReadOnly() const
{
    return m_isReadOnly;
}

bool ValueModel::isCell(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
}

bool ValueModel::canMoveRows(const QModelIndex &parent, int row, int count, const QModelIndex &targetParent,
                             int target) const
{
    return !parent.isValid() && !targetParent.isValid() && count >= 1 && row >= 0 && row + count <= rowCount()
        && target >= 0 && target <= rowCount();
}

Qt::ItemFlags ValueModel::flagsOf(const QVariant &value) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const ItemKind kind = ItemValue::kind(value);
    if (m_isReadOnly || kind == ItemKind::Other)
        return flags;
    flags |= Qt::ItemIsEditable;
    if (kind == ItemKind::Bool)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant ValueModel::shown(const QVariant &value, int role)
{
    const ItemKind kind = ItemValue::kind(value);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (kind == ItemKind::Bool)
            return value.toBool() ? tr("Yes") : tr("No");
        return role == Qt::DisplayRole ? ItemValue::summary(value) : ItemValue::editText(value);
    case Qt::CheckStateRole:
        if (kind == ItemKind::Bool)
            return int(value.toBool() ? Qt::Checked : Qt::Unchecked);
        break;
    case Qt::TextAlignmentRole:
        if (kind == ItemKind::Int || kind == ItemKind::Double)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return QVariant();
}

StepHost::Result<QVariant> ValueModel::parsed(const QString &text, ItemKind kind)
{
    if (kind == ItemKind::Bool) {
        for (const bool value : {true, false}) {
            if (text.trimmed().compare(shown(value, Qt::EditRole).toString(), Qt::CaseInsensitive) == 0)
                return QVariant(value);
        }
    }
    return ItemValue::parse(text, kind);
}
} // namespace Workbench
