#pragma once

#include "host/values/ListDifference.h"

#include <QAbstractTableModel>

namespace Workbench
{
/// Two lists side by side: what became of each item, in words and in colour.
class ItemDifferenceModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { KindColumn, OldPlaceColumn, OldColumn, NewPlaceColumn, NewColumn, ColumnCount };

    ItemDifferenceModel(const QVariantList &before, const QVariantList &after, QObject *parent = nullptr);

    /// Leaves out the items that are the same, or shows them again.
    void setOnlyDifferent(bool isOnly);

    /// How many items were added, removed, changed and moved, in words.
    QString summary() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    static QString kindName(StepHost::DifferenceKind kind);
    QVariant shown(const StepHost::Difference &difference, int column) const;

    QVariantList m_before;
    QVariantList m_after;
    std::vector<StepHost::Difference> m_all;
    std::vector<StepHost::Difference> m_shown;
};
} // namespace Workbench
