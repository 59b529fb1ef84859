#include "LogModel.h"

#include "host/values/QuotedText.h"
#include "tools/workbench/look/ToolTipText.h"

namespace Workbench
{
namespace
{
constexpr int maxLines = 10000;
constexpr int droppedAtOnce = 1000;
} // namespace

LogModel::LogModel(QObject *parent) : QAbstractTableModel(parent) { }

void LogModel::append(const QString &message)
{
    add({{QTime::currentTime(), StepHost::inLines(message), false, nullptr, QString()}});
}

void LogModel::append(const QString &message, const Operation *step, const QString &stepName)
{
    add({{QTime::currentTime(), StepHost::inLines(message), false, const_cast<Operation *>(step), stepName}});
}

void LogModel::appendWarning(const QString &message)
{
    appendWarning(message, nullptr, QString());
}

void LogModel::appendWarning(const QString &message, const Operation *step, const QString &stepName)
{
    appendWarnings({{message, step, stepName}});
}

void LogModel::appendWarnings(const QVector<Warning> &warnings)
{
    QVector<Line> lines;
    for (const Warning &warning : warnings) {
        lines.append({QTime::currentTime(), StepHost::inLines(warning.message), true,
                      const_cast<Operation *>(warning.step), warning.stepName});
    }
    add(lines);
}

void LogModel::add(const QVector<Line> &lines)
{
    if (lines.isEmpty())
        return;
    const int tooMany = m_lines.size() + lines.size() - maxLines;
    if (tooMany > 0 && !m_lines.isEmpty()) {
        const int dropped = qMin(m_lines.size(), qMax(tooMany, droppedAtOnce));
        beginRemoveRows(QModelIndex(), 0, dropped - 1);
        m_lines.remove(0, dropped);
        endRemoveRows();
    }
    const QVector<Line> added = lines.mid(qMax(0, lines.size() - maxLines));
    beginInsertRows(QModelIndex(), m_lines.size(), m_lines.size() + added.size() - 1);
    m_lines += added;
    endInsertRows();
}

void LogModel::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_lines.size();
}

int LogModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant LogModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !checkIndex(index, CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const Line &line = m_lines.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case TimeColumn:
            return line.time.toString(QStringLiteral("HH:mm:ss"));
        case StepColumn:
            return line.stepName;
        default:
            return line.message;
        }
    case Qt::ToolTipRole:
        return toolTipText(line.message);
    case Qt::AccessibleTextRole:
        if (index.column() == MessageColumn && line.isWarning)
            return tr("Warning: %1").arg(line.message);
        return QVariant();
    case StepRole:
        return QVariant::fromValue<QObject *>(line.step);
    case WarningRole:
        return line.isWarning;
    default:
        return QVariant();
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case StepColumn:
        return tr("Step");
    default:
        return tr("Message");
    }
}
} // namespace Workbench
