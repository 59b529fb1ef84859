#pragma once

#include "host/scripts/ScriptSearch.h"

#include <QAbstractTableModel>

namespace Workbench
{
class ScriptModel;

/// The places of a script in which something was found, one a row.
class SearchModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { WhereColumn, WhatColumn, TextColumn, ColumnCount };

    /// Places in \a script, which has to outlive this object, and in its variables.
    explicit SearchModel(const ScriptModel &script, QObject *parent = nullptr);

    /// Shows \a hits, which were found in the script as it is.
    void setHits(const QVector<StepHost::SearchHit> &hits);

    /// The place in \a row, which has to exist.
    const StepHost::SearchHit &hit(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString whereOf(const StepHost::SearchHit &hit) const;
    QString whatOf(const StepHost::SearchHit &hit) const;

    const ScriptModel &m_script;
    QVector<StepHost::SearchHit> m_hits;
};
} // namespace Workbench
