#pragma once

#include "host/values/ItemValue.h"

#include <QAbstractTableModel>
#include <QVariantList>

namespace Workbench
{
/// The items of a list, one a row: the value, and its type, both to be edited.
///
/// Keeps the items themselves and makes texts only for the rows that a view asks for.
class ListValueModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { ValueColumn, TypeColumn, ColumnCount };
    /// In the type column, `Qt::EditRole` is the ItemKind as an `int`.

    explicit ListValueModel(QObject *parent = nullptr);

    /// The items as they are now.
    QVariantList items() const;

    /// Shows \a items instead of the present ones.
    void setItems(const QVariantList &items);

    /// Converts the items of \a rows to \a kind. Items that cannot be converted stay, and refused() is
    /// emitted once with the number of them and the reason for the first.
    void convertRows(const QList<int> &rows, StepHost::ItemKind kind);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    bool moveRows(const QModelIndex &sourceParent, int sourceRow, int count,
                  const QModelIndex &destinationParent, int destinationChild) override;

    /// Puts the items themselves in order. Items of equal value keep their order.
    void sort(int column, Qt::SortOrder order) override;

signals:
    /// An edit was not carried out, for \a reason.
    void refused(const QString &reason);

private:
    bool isItem(const QModelIndex &index) const;

    QVariantList m_items;
};
} // namespace Workbench
