#include "VariablesModel.h"

#include "host/scripts/VariableEdits.h"
#include "host/values/ItemValue.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"

#include <QFont>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;
using StepHost::referenceTo;
using StepHost::VariableEdits;

namespace
{
QString valueSummary(VarType type, const QVariant &value)
{
    const QString summary = ItemValue::summary(value);
    if (ItemValue::kind(value) != ItemKind::List)
        return summary;
    const int size = value.toList().size();
    return type == VarType::Table ? VariablesModel::tr("%n row(s): %1", nullptr, size).arg(summary)
                                  : VariablesModel::tr("%n item(s): %1", nullptr, size).arg(summary);
}
} // namespace

VariablesModel::VariablesModel(QObject *parent) : QAbstractTableModel(parent) { }

const VariableScope &VariablesModel::variables() const
{
    return m_variables;
}

void VariablesModel::setVariables(const VariableScope &variables)
{
    m_variables = variables;
    updateNames();
}

void VariablesModel::setResult(const VariableScope &before, const VariableScope &after)
{
    m_isPaused = false;
    emit headerDataChanged(Qt::Horizontal, ResultColumn, ResultColumn);
    m_before = before;
    m_after = after;
    m_changed.clear();
    const QStringList resultNames = after.names();
    for (const QString &name : resultNames) {
        if (!ItemValue::same(before.get(referenceTo(name)), after.get(referenceTo(name))))
            m_changed.insert(name);
    }
    updateNames();
}

void VariablesModel::setPaused(const VariableScope &before, const VariableScope &now)
{
    setResult(before, now);
    m_isPaused = true;
    emit headerDataChanged(Qt::Horizontal, ResultColumn, ResultColumn);
}

void VariablesModel::clearResult()
{
    setResult(VariableScope(), VariableScope());
}

void VariablesModel::updateNames()
{
    QStringList names = m_variables.names();
    const QStringList resultNames = m_after.names();
    for (const QString &name : resultNames) {
        if (!m_variables.contains(referenceTo(name)))
            names.append(name);
    }
    // What both lists begin and end with stays; only the rows between are taken out and put in.
    int head = 0;
    while (head < names.size() && head < m_names.size() && names.at(head) == m_names.at(head))
        ++head;
    int tail = 0;
    while (tail < names.size() - head && tail < m_names.size() - head
           && names.at(names.size() - 1 - tail) == m_names.at(m_names.size() - 1 - tail))
        ++tail;
    const int oldCount = m_names.size() - head - tail;
    const int newCount = names.size() - head - tail;
    if (oldCount == newCount) {
        // The same number of other names: these variables were renamed.
        m_names = names;
    } else {
        if (oldCount > 0) {
            beginRemoveRows(QModelIndex(), head, head + oldCount - 1);
            m_names.erase(m_names.begin() + head, m_names.begin() + head + oldCount);
            endRemoveRows();
        }
        if (newCount > 0) {
            beginInsertRows(QModelIndex(), head, head + newCount - 1);
            m_names = names;
            endInsertRows();
        }
    }
    if (!m_names.isEmpty())
        emit dataChanged(index(0, 0), index(m_names.size() - 1, ColumnCount - 1));
}

QString VariablesModel::name(int row) const
{
    return m_names.value(row);
}

int VariablesModel::rowOf(const QString &name) const
{
    return m_names.indexOf(name);
}

bool VariablesModel::isOfScript(int row) const
{
    return m_variables.contains(referenceTo(m_names.value(row)));
}

VarType VariablesModel::type(int row) const
{
    const VariableScope &scope = isOfScript(row) ? m_variables : m_after;
    return scope.typeOf(referenceTo(m_names.at(row)));
}

int VariablesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_names.size();
}

int VariablesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

bool VariablesModel::isVariable(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
}

Qt::ItemFlags VariablesModel::flags(const QModelIndex &index) const
{
    if (!isVariable(index))
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (isInCell(index))
        flags |= Qt::ItemIsEditable;
    return flags;
}

// Whether what is at `index` can be edited there.
bool VariablesModel::isInCell(const QModelIndex &index) const
{
    const bool isValue = index.column() == ValueColumn || index.column() == ResultColumn;
    const VarType variableType = type(index.row());
    // The value of a list or table is more than a cell can hold.
    if (isValue && (variableType == VarType::List || variableType == VarType::Table))
        return false;
    if (index.column() == ResultColumn)
        return m_isPaused && m_after.contains(referenceTo(m_names.at(index.row())));
    return isOfScript(index.row());
}

bool VariablesModel::setRunValue(const QString &name, const QString &text)
{
    const auto changed = VariableEdits::setText(m_after, name, text);
    if (!changed) {
        emit refused(changed.error());
        return false;
    }
    if (!ItemValue::same(changed->get(referenceTo(name)), m_after.get(referenceTo(name))))
        emit runChangeRequested(*changed, tr("Change value of “%1”").arg(name));
    return true;
}

QVariant VariablesModel::display(int row, int column) const
{
    const QString reference = referenceTo(m_names.at(row));
    switch (column) {
    case NameColumn:
        return m_names.at(row);
    case TypeColumn:
        return TypeNames::of(type(row));
    case ValueColumn:
        return valueSummary(type(row), m_variables.get(reference));
    case ResultColumn:
        return valueSummary(type(row), m_after.get(reference));
    default:
        return QVariant();
    }
}

QString VariablesModel::resultToolTip(int row) const
{
    const QString reference = referenceTo(m_names.at(row));
    if (!m_after.contains(reference))
        return QString();
    if (!m_changed.contains(m_names.at(row)))
        return tr("Not changed by the last run");
    return tr("Before the last run: %1\nAfter the last run: %2")
        .arg(valueSummary(m_before.typeOf(reference), m_before.get(reference)),
             valueSummary(m_after.typeOf(reference), m_after.get(reference)));
}

QVariant VariablesModel::data(const QModelIndex &index, int role) const
{
    if (!isVariable(index))
        return QVariant();
    const int row = index.row();
    const bool changed = m_changed.contains(m_names.at(row));
    switch (role) {
    case Qt::DisplayRole:
        return StepHost::inLines(display(row, index.column()).toString());
    case Qt::EditRole:
        if (index.column() == TypeColumn)
            return int(type(row));
        if (index.column() == ValueColumn)
            return ItemValue::editText(m_variables.get(referenceTo(m_names.at(row))));
        if (index.column() == ResultColumn)
            return ItemValue::editText(m_after.get(referenceTo(m_names.at(row))));
        return display(row, index.column());
    case Qt::AccessibleTextRole:
        if (changed && index.column() == ResultColumn)
            return tr("%1, changed by the last run")
                .arg(StepHost::inLines(display(row, ResultColumn).toString()));
        return QVariant();
    case Qt::FontRole:
        if (changed && index.column() == ResultColumn) {
            QFont font;
            font.setBold(true);
            return font;
        }
        return QVariant();
    case Qt::ToolTipRole:
        return index.column() == ResultColumn ? QVariant(toolTipText(resultToolTip(row))) : QVariant();
    case ChangedRole:
        return changed;
    default:
        return QVariant();
    }
}

bool VariablesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !isVariable(index) || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    const QString name = m_names.at(index.row());
    if (index.column() == ResultColumn)
        return setRunValue(name, value.toString());
    StepHost::Result<VariableScope> changed = m_variables;
    QString action;
    switch (index.column()) {
    case NameColumn:
        if (value.toString() == name)
            return true;
        changed = VariableEdits::rename(m_variables, name, value.toString());
        if (!changed)
            break;
        // What steps use it has to change, too.
        emit renameRequested(name, value.toString());
        return true;
    case TypeColumn:
        if (VarType(value.toInt()) == type(index.row()))
            return true;
        changed = VariableEdits::retype(m_variables, name, VarType(value.toInt()));
        action = tr("Change type of “%1”").arg(name);
        break;
    default:
        changed = VariableEdits::setText(m_variables, name, value.toString());
        if (changed && ItemValue::same(changed->get(referenceTo(name)), m_variables.get(referenceTo(name))))
            return true;
        action = tr("Change value of “%1”").arg(name);
        break;
    }
    if (!changed) {
        emit refused(changed.error());
        return false;
    }
    emit changeRequested(*changed, action);
    return true;
}

QVariant VariablesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Name");
    case TypeColumn:
        return tr("Type");
    case ValueColumn:
        return tr("Start value");
    case ResultColumn:
        return m_isPaused ? tr("Now, in the run") : tr("After the last run");
    default:
        return QVariant();
    }
}
} // namespace Workbench
