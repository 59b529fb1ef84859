#include "ItemDifferenceModel.h"

#include "host/values/ItemValue.h"

#include <QBrush>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace Workbench
{
using StepHost::Difference;
using StepHost::DifferenceKind;
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
// Thin enough for the text to be read on light and dark.
QVariant background(DifferenceKind kind)
{
    constexpr int thin = 56;
    switch (kind) {
    case DifferenceKind::Added:
        return QBrush(QColor(0x2e, 0x9d, 0x32, thin));
    case DifferenceKind::Removed:
        return QBrush(QColor(0xd3, 0x2f, 0x2f, thin));
    case DifferenceKind::Changed:
        return QBrush(QColor(0xf0, 0x98, 0x00, thin));
    case DifferenceKind::Moved:
        return QBrush(QColor(0x19, 0x76, 0xd2, thin));
    case DifferenceKind::Same:
        break;
    }
    return QVariant();
}
} // namespace

ItemDifferenceModel::ItemDifferenceModel(const QVariantList &before, const QVariantList &after,
                                         QObject *parent)
    : QAbstractTableModel(parent), m_before(before), m_after(after),
      m_all(StepHost::listDifference(before, after)), m_shown(m_all)
{
}

void ItemDifferenceModel::setOnlyDifferent(bool isOnly)
{
    beginResetModel();
    m_shown.clear();
    std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(m_shown),
                 [isOnly](const Difference &each) { return !isOnly || each.kind != DifferenceKind::Same; });
    endResetModel();
}

QString ItemDifferenceModel::summary() const
{
    const auto count = [this](DifferenceKind kind) {
        return int(std::count_if(m_all.begin(), m_all.end(),
                                 [kind](const Difference &each) { return each.kind == kind; }));
    };
    QStringList parts;
    if (const int added = count(DifferenceKind::Added))
        parts.append(tr("%1 added").arg(added));
    if (const int removed = count(DifferenceKind::Removed))
        parts.append(tr("%1 removed").arg(removed));
    if (const int changed = count(DifferenceKind::Changed))
        parts.append(tr("%1 changed").arg(changed));
    if (const int moved = count(DifferenceKind::Moved))
        parts.append(tr("%1 moved").arg(moved));
    return parts.isEmpty() ? tr("No differences") : parts.join(tr(", "));
}

int ItemDifferenceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

int ItemDifferenceModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString ItemDifferenceModel::kindName(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return tr("added");
    case DifferenceKind::Removed:
        return tr("removed");
    case DifferenceKind::Changed:
        return tr("changed");
    case DifferenceKind::Moved:
        return tr("moved");
    case DifferenceKind::Same:
        break;
    }
    return QString();
}

QVariant ItemDifferenceModel::shown(const Difference &difference, int column) const
{
    const auto place = [](int position) { return position < 0 ? QVariant() : QVariant(position); };
    switch (column) {
    case KindColumn:
        return kindName(difference.kind);
    case OldPlaceColumn:
        return place(difference.before);
    case OldColumn:
        return ItemValue::summary(m_before.value(difference.before));
    case NewPlaceColumn:
        return place(difference.after);
    case NewColumn:
        return ItemValue::summary(m_after.value(difference.after));
    default:
        return QVariant();
    }
}

QVariant ItemDifferenceModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const Difference &difference = m_shown[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return shown(difference, index.column());
    case Qt::BackgroundRole:
        return background(difference.kind);
    case Qt::TextAlignmentRole:
        if (index.column() == OldPlaceColumn || index.column() == NewPlaceColumn)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return QVariant();
}

QVariant ItemDifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case OldPlaceColumn:
    case NewPlaceColumn:
        return tr("Position");
    case OldColumn:
        return tr("Before");
    case NewColumn:
        return tr("After");
    default:
        return QString();
    }
}
} // namespace Workbench
