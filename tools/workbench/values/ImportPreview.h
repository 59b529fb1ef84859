#pragma once

#include "host/files/ValueImport.h"

#include <QAbstractTableModel>

namespace Workbench
{
/// The first rows of a text as an import takes them: each column with its type, and its name when there is a header.
class ImportPreview : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// So many rows are shown.
    static constexpr int mostRows = 100;

    explicit ImportPreview(QObject *parent = nullptr);

    /// Shows \a rows as \a form takes them.
    void show(const QVector<QStringList> &rows, const StepHost::ImportForm &form);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What a column of the type \a type becomes, in the user's language.
    static QString typeName(StepHost::ColumnType type);

private:
    QString columnTitle(int column) const;

    QVector<QStringList> m_rows; ///< Without the header.
    QStringList m_names; ///< The header.
    QVector<StepHost::ColumnType> m_types; ///< As chosen, for each column.
    QVector<StepHost::ColumnType> m_guesses; ///< What ColumnType::Auto is, for each column.
    int m_takenColumn = -1; ///< The only one that is taken; -1 for all.
};
} // namespace Workbench
