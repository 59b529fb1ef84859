#pragma once

#include "ValueModel.h"

namespace Workbench
{
/// The cells of a table: a list of rows that need not be equally long.
///
/// It is as wide as its longest row. A cell behind the end of its row has no value; giving it one fills
/// the row up to there with empty values.
class TableValueModel : public ValueModel
{
    Q_OBJECT

public:
    /// KindRole gives and takes the ItemKind of a cell as an `int`.
    enum Role { KindRole = Qt::UserRole };

    explicit TableValueModel(QObject *parent = nullptr);

    /// The rows as they are now. A row that was not a list is one of a single cell.
    QVariantList value() const override;
    void setValue(const QVariantList &value) override;
    int valueColumns() const override;
    QVariant valueAt(int row, int column) const override;
    void put(int row, int column, const QVector<QVariantList> &cells) override;

    /// Converts \a cells to \a kind. Cells that cannot be converted stay, and refused() is emitted once with
    /// the number of them and the reason for the first.
    void convertCells(const QModelIndexList &cells, StepHost::ItemKind kind);

    /// Takes the values out of \a cells. Texts become empty ones, all else has no value any more.
    void clearCells(const QModelIndexList &cells);

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

    /// Inserts empty cells into the rows that reach that far. At the right edge the first row is filled up
    /// (a table without rows gets one), so that there is a column to see.
    bool insertColumns(int column, int count, const QModelIndex &parent = QModelIndex()) override;
    bool removeColumns(int column, int count, const QModelIndex &parent = QModelIndex()) override;

    /// Puts the rows in order of their cells in \a column. Rows with equal ones keep their order.
    void sort(int column, Qt::SortOrder order) override;

private:
    bool hasValue(const QModelIndex &index) const;
    QVariant cell(const QModelIndex &index) const;
    void setCell(const QModelIndex &index, const QVariant &value);
    int widest() const;

    QVector<QVariantList> m_rows;
    int m_columns = 0;
};
} // namespace Workbench
