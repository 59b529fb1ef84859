#pragma once

#include "ValueModel.h"

namespace Workbench
{
/// The items of a list, one a row: the value, and its type, both to be edited.
///
/// Keeps the items themselves and makes texts only for the rows that a view asks for.
class ListValueModel : public ValueModel
{
    Q_OBJECT

public:
    enum Column { ValueColumn, TypeColumn, ColumnCount };
    /// In the type column, `Qt::EditRole` is the ItemKind as an `int`.

    explicit ListValueModel(QObject *parent = nullptr);

    QVariantList value() const override;
    void setValue(const QVariantList &value) override;
    int valueColumns() const override;
    QVariant valueAt(int row, int column) const override;
    void put(int row, int column, const QVector<QVariantList> &cells) override;

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

private:
    QVariantList m_items;
};
} // namespace Workbench
