#pragma once

#include "host/values/ItemValue.h"

#include <QAbstractTableModel>
#include <QVariantList>
#include <QVector>

namespace Workbench
{
/// The cells of a list or a table, for views that show, search and edit either.
///
/// `Qt::EditRole` gives and takes the text of a cell; yes and no, which are shown in words, have a `Qt::CheckStateRole`
/// beside. Numbers stand on the right, all else on the left.
class ValueModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// The list, or the rows of the table, as it is now.
    virtual QVariantList value() const = 0;

    /// Shows \a value instead of the present one.
    virtual void setValue(const QVariantList &value) = 0;

    /// How many columns hold values. They are the first ones.
    virtual int valueColumns() const = 0;

    /// The value in \a row and \a column; invalid where there is none.
    virtual QVariant valueAt(int row, int column) const = 0;

    /// Puts \a cells, row by row, from \a row and \a column on, and makes room for what does not fit. In a list a row of
    /// several cells is an item that holds them.
    virtual void put(int row, int column, const QVector<QVariantList> &cells) = 0;

    /// Whether nothing is to be edited. By default it is.
    void setReadOnly(bool isReadOnly);
    bool isReadOnly() const;

signals:
    /// An edit was not carried out, for \a reason.
    void refused(const QString &reason);

protected:
    bool isCell(const QModelIndex &index) const;

    /// Whether \a count rows of all from \a row on can go in front of the row \a target.
    bool canMoveRows(const QModelIndex &parent, int row, int count, const QModelIndex &targetParent,
                     int target) const;

    /// What a cell with \a value may be used for.
    Qt::ItemFlags flagsOf(const QVariant &value) const;

    /// What a cell with \a value gives for \a role.
    static QVariant shown(const QVariant &value, int role);

    /// The value of kind \a kind that \a text stands for; yes and no in the user's words, too.
    static StepHost::Result<QVariant> parsed(const QString &text, StepHost::ItemKind kind);

private:
    bool m_isReadOnly = false;
};
} // namespace Workbench
