#pragma once

#include "hostapi/VariableScope.h"

#include <QAbstractTableModel>
#include <QSet>

namespace Workbench
{
/// A script's variables, one a row: name, type, the value that the script starts with, and the value after
/// the last run.
///
/// The model changes no variables itself. An edit that can be carried out is sent out with
/// changeRequested(), and shows once setVariables() brings it back.
class VariablesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, TypeColumn, ValueColumn, ResultColumn, ColumnCount };
    enum Role {
        ChangedRole = Qt::UserRole, ///< `bool`: the last run changed this variable.
    };
    /// In the type column, `Qt::EditRole` is the VarType as an `int`.

    explicit VariablesModel(QObject *parent = nullptr);

    /// The variables that the script starts with.
    const VariableScope &variables() const;

    /// Shows \a variables. Rows that are still there keep their model indexes.
    void setVariables(const VariableScope &variables);

    /// Shows \a after as the result of a run that began with \a before. Variables that the run made stand
    /// below those of the script.
    void setResult(const VariableScope &before, const VariableScope &after);

    /// Shows \a now as the variables of a run that waits and began with \a before. Values that fit into a cell can be
    /// edited there.
    void setPaused(const VariableScope &before, const VariableScope &now);

    /// Forgets the last run.
    void clearResult();

    /// The name of the variable in \a row.
    QString name(int row) const;

    /// The row of the variable \a name; -1 when there is none.
    int rowOf(const QString &name) const;

    /// Whether the variable in \a row belongs to the script, and was not just made by the run.
    bool isOfScript(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// The user wants the variables of the run that waits to be \a variables; \a action names what was done.
    void runChangeRequested(const VariableScope &variables, const QString &action);

    /// The user wants the script's variables to be \a variables; \a action names what was done, for undo.
    void changeRequested(const VariableScope &variables, const QString &action);

    /// The user wants the script's variable \a from to be called \a to, which none is.
    void renameRequested(const QString &from, const QString &to);

    /// An edit was not carried out, for \a reason.
    void refused(const QString &reason);

private:
    bool isVariable(const QModelIndex &index) const;
    bool isInCell(const QModelIndex &index) const;
    bool setRunValue(const QString &name, const QString &text);
    VarType type(int row) const;
    QVariant display(int row, int column) const;
    QString resultToolTip(int row) const;
    void updateNames();

    VariableScope m_variables;
    VariableScope m_before;
    VariableScope m_after;
    QSet<QString> m_changed;
    QStringList m_names;
    bool m_isPaused = false; ///< The result is that of a run that waits.
};
} // namespace Workbench
