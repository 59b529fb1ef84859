#include "ProblemsModel.h"

#include "ScriptModel.h"
#include "host/plugins/StepTexts.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"

#include <algorithm>

namespace Workbench
{
ProblemsModel::ProblemsModel(const ScriptModel &script, QObject *parent)
    : QAbstractTableModel(parent), m_script(script)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &ProblemsModel::update);
    connect(&script, &ScriptModel::problemsChanged, this, &ProblemsModel::schedule);
    connect(&script, &QAbstractItemModel::rowsInserted, this, &ProblemsModel::schedule);
    connect(&script, &QAbstractItemModel::rowsMoved, this, &ProblemsModel::schedule);
    connect(&script, &QAbstractItemModel::rowsRemoved, this, &ProblemsModel::schedule);
    connect(&script, &QAbstractItemModel::modelReset, this, &ProblemsModel::schedule);
    update();
}

void ProblemsModel::schedule()
{
    if (!m_timer.isActive())
        m_timer.start();
}

bool ProblemsModel::isSame(const Line &a, const Line &b)
{
    return a.step == b.step && a.problem == b.problem;
}

void ProblemsModel::update()
{
    std::vector<Line> lines;
    for (int row = 0; row < m_script.rowCount(); ++row) {
        const QVector<StepHost::StepProblem> problems = m_script.problems(row);
        for (const StepHost::StepProblem &problem : problems)
            lines.push_back({&m_script.step(row), row, problem});
    }
    // What is the same at both ends stays, and with it what is selected there.
    const auto begins = std::mismatch(m_lines.begin(), m_lines.end(), lines.begin(), lines.end(), isSame);
    const auto ends = std::mismatch(m_lines.rbegin(), std::make_reverse_iterator(begins.first),
                                    lines.rbegin(), std::make_reverse_iterator(begins.second), isSame);
    const int first = int(begins.first - m_lines.begin());
    const int removed = int(ends.first.base() - begins.first);
    const int inserted = int(ends.second.base() - begins.second);
    if (removed > 0) {
        beginRemoveRows(QModelIndex(), first, first + removed - 1);
        m_lines.erase(begins.first, ends.first.base());
        endRemoveRows();
    }
    if (inserted > 0)
        beginInsertRows(QModelIndex(), first, first + inserted - 1);
    m_lines = std::move(lines);
    if (inserted > 0)
        endInsertRows();
    // Their steps may stand in other rows.
    if (!m_lines.empty())
        emit dataChanged(index(0, StepColumn), index(rowCount() - 1, StepColumn));
}

const StepHost::StepProblem &ProblemsModel::problem(int row) const
{
    return m_lines.at(std::size_t(row)).problem;
}

int ProblemsModel::stepRow(int row) const
{
    return m_script.rowOf(m_lines.at(std::size_t(row)).step);
}

int ProblemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

int ProblemsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString ProblemsModel::stepName(const Line &line) const
{
    // The script may have become a shorter one just now.
    if (line.row >= m_script.rowCount())
        return QString();
    return QStringLiteral("%1  %2").arg(
        QString::number(line.row + 1),
        StepHost::shownStepText(m_script.step(line.row), &Operation::toString));
}

QVariant ProblemsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !checkIndex(index, CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const Line &line = m_lines.at(std::size_t(index.row()));
    if (role == Qt::ToolTipRole)
        return toolTipText(line.problem.text);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case StepColumn:
        return stepName(line);
    case ProblemColumn:
        return line.problem.text;
    default:
        return line.problem.missing.isEmpty()
            ? tr("Change the setting")
            : StepHost::inOneLine(TypeNames::creationOf(line.problem.missingType, line.problem.missing));
    }
}

QVariant ProblemsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case StepColumn:
        return tr("Step");
    case ProblemColumn:
        return tr("Problem");
    default:
        return tr("What helps");
    }
}
} // namespace Workbench
