#include "ScriptModel.h"

#include "StepMime.h"
#include "host/plugins/StepTexts.h"
#include "host/values/VariableName.h"
#include "tools/workbench/look/ThemedIcon.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QMimeData>

#include <algorithm>
#include <iterator>

namespace Workbench
{
namespace
{
// So that a long script keeps nobody waiting.
constexpr int checkTimeMs = 8;
} // namespace

ScriptModel::ScriptModel(QObject *parent) : QAbstractListModel(parent), m_id(QUuid::createUuid())
{
    m_checkTimer.setSingleShot(true);
    connect(&m_checkTimer, &QTimer::timeout, this, &ScriptModel::checkRest);
}

ScriptModel::~ScriptModel() = default;

StepRow &ScriptModel::at(int row)
{
    return *m_rows.at(size_t(row));
}

const StepRow &ScriptModel::at(int row) const
{
    return *m_rows.at(size_t(row));
}

const Operation &ScriptModel::step(int row) const
{
    return at(row).operation();
}

bool ScriptModel::isEnabled(int row) const
{
    return at(row).isEnabled();
}

QVector<StepHost::StepProblem> ScriptModel::problems(int row) const
{
    return at(row).problems();
}

namespace
{
// What the problems of steps depend on.
bool haveSameTypes(const VariableScope &a, const VariableScope &b)
{
    const QStringList names = a.names();
    if (names != b.names())
        return false;
    return std::all_of(names.cbegin(), names.cend(), [&](const QString &name) {
        const QString reference = StepHost::referenceTo(name);
        return a.typeOf(reference) == b.typeOf(reference);
    });
}
} // namespace

void ScriptModel::setVariables(const VariableScope &variables)
{
    const bool isSame = haveSameTypes(m_variables, variables);
    m_variables = variables;
    if (isSame)
        return;
    for (const std::unique_ptr<StepRow> &row : m_rows)
        row->isChecked = false;
    checkRest();
}

bool ScriptModel::check(StepRow &row)
{
    const QMetaObject *type = row.operation().metaObject();
    if (!m_schemas.contains(type))
        m_schemas.insert(type, StepHost::readEditorSchema(*type));
    row.isChecked = true;
    return row.check(m_schemas[type], m_variables);
}

void ScriptModel::checkRest()
{
    if (!checkRows(0, rowCount() - 1))
        m_checkTimer.start(0);
}

bool ScriptModel::checkRows(int first, int last)
{
    QElapsedTimer clock;
    clock.start();
    int firstChanged = last + 1;
    int lastChanged = -1;
    bool isDone = true;
    for (int row = first; row <= last && isDone; ++row) {
        if (at(row).isChecked)
            continue;
        isDone = !clock.hasExpired(checkTimeMs);
        if (isDone && check(at(row))) {
            firstChanged = qMin(firstChanged, row);
            lastChanged = row;
        }
    }
    rowsChanged(firstChanged, lastChanged);
    if (lastChanged >= 0)
        emit problemsChanged();
    return isDone;
}

void ScriptModel::setSteps(std::vector<StepHost::ScriptStep> steps)
{
    beginResetModel();
    m_rows.clear();
    for (StepHost::ScriptStep &step : steps)
        m_rows.push_back(std::make_unique<StepRow>(std::move(step)));
    m_runningRow = -1;
    endResetModel();
    checkRest();
}

void ScriptModel::insertSteps(int row, std::vector<StepHost::ScriptStep> steps)
{
    if (steps.empty())
        return;
    std::vector<std::unique_ptr<StepRow>> rows;
    rows.reserve(steps.size());
    for (StepHost::ScriptStep &step : steps)
        rows.push_back(std::make_unique<StepRow>(std::move(step)));
    beginInsertRows(QModelIndex(), row, row + int(rows.size()) - 1);
    m_rows.insert(m_rows.begin() + row, std::make_move_iterator(rows.begin()),
                  std::make_move_iterator(rows.end()));
    endInsertRows();
    if (!checkRows(row, row + int(rows.size()) - 1))
        m_checkTimer.start(0);
}

std::vector<StepHost::ScriptStep> ScriptModel::takeSteps(int row, int count)
{
    std::vector<StepHost::ScriptStep> steps;
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    const auto begin = m_rows.begin() + row;
    for (auto taken = begin; taken != begin + count; ++taken)
        steps.push_back((*taken)->take());
    m_rows.erase(begin, begin + count);
    endRemoveRows();
    return steps;
}

void ScriptModel::moveSteps(int from, int count, int to)
{
    if (!beginMoveRows(QModelIndex(), from, from + count - 1, QModelIndex(), to > from ? to + count : to))
        return;
    const auto begin = m_rows.begin();
    if (from < to)
        std::rotate(begin + from, begin + from + count, begin + to + count);
    else
        std::rotate(begin + to, begin + from, begin + from + count);
    endMoveRows();
}

void ScriptModel::setEnabled(int row, bool enabled)
{
    at(row).setEnabled(enabled);
    showStep(row);
    emit problemsChanged();
}

void ScriptModel::setSetting(int row, const QString &property, const QVariant &value)
{
    at(row).setSetting(property, value);
    const bool hasOthers = check(at(row));
    showStep(row);
    if (hasOthers)
        emit problemsChanged();
}

void ScriptModel::setResults(const QVector<Result> &results)
{
    int first = rowCount();
    int last = -1;
    for (const Result &result : results) {
        at(result.row).setResult(result.result, *result.step);
        first = qMin(first, result.row);
        last = qMax(last, result.row);
    }
    rowsChanged(first, last);
}

void ScriptModel::clearResults()
{
    for (const std::unique_ptr<StepRow> &row : m_rows)
        row->clearResult();
    rowsChanged(0, rowCount() - 1);
}

void ScriptModel::setRunningRow(int row)
{
    const int before = m_runningRow;
    m_runningRow = row;
    for (const int changed : {before, row}) {
        if (changed >= 0 && changed < rowCount())
            showStep(changed);
    }
}

void ScriptModel::setNextRow(int row)
{
    const int before = m_next ? rowOf(m_next) : -1;
    m_next = row >= 0 ? &step(row) : nullptr;
    for (const int changed : {before, row}) {
        if (changed >= 0)
            showStep(changed);
    }
}

void ScriptModel::setBreakpoints(const QSet<const Operation *> &steps)
{
    m_breakpoints = steps;
    rowsChanged(0, rowCount() - 1);
}

QString ScriptModel::spokenText(int row) const
{
    QStringList parts{at(row).spokenText(row + 1, row == m_runningRow)};
    if (&step(row) == m_next)
        parts.append(tr("the run waits before it"));
    if (m_breakpoints.contains(&step(row)))
        parts.append(tr("with a breakpoint"));
    return parts.join(QLatin1String("; "));
}

const std::optional<QByteArray> &ScriptModel::keptStep(int row) const
{
    return at(row).kept;
}

void ScriptModel::setKeptStep(int row, const QByteArray &bytes)
{
    at(row).kept = bytes;
}

int ScriptModel::rowOf(const Operation *step) const
{
    const auto isRow = [step](const std::unique_ptr<StepRow> &row) { return &row->operation() == step; };
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(), isRow);
    return found == m_rows.cend() ? -1 : int(found - m_rows.cbegin());
}

QIcon ScriptModel::icon(const QString &path) const
{
    if (!m_icons.contains(path))
        m_icons.insert(path, stepIcon(path));
    return m_icons.value(path);
}

void ScriptModel::showStep(int row)
{
    rowsChanged(row, row);
}

void ScriptModel::rowsChanged(int first, int last)
{
    if (first <= last)
        emit dataChanged(index(first), index(last));
}

int ScriptModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

bool ScriptModel::isStep(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
}

Qt::ItemFlags ScriptModel::flags(const QModelIndex &index) const
{
    // Drops go between the rows, not onto one.
    if (!isStep(index))
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsUserCheckable
        | Qt::ItemNeverHasChildren;
}

QVariant ScriptModel::data(const QModelIndex &index, int role) const
{
    if (!isStep(index))
        return QVariant();
    const StepRow &row = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return StepHost::shownStepText(row.operation(), &Operation::toString);
    case Qt::DecorationRole:
        return icon(StepHost::stepText(row.operation(), &Operation::icon));
    case Qt::ToolTipRole:
        return row.toolTip();
    case Qt::AccessibleTextRole:
        return spokenText(index.row());
    case Qt::CheckStateRole:
        return int(row.isEnabled() ? Qt::Checked : Qt::Unchecked);
    case NumberRole:
        return index.row() + 1;
    case OutcomeRole:
        return int(row.outcome());
    case OutcomeTextRole:
        return row.outcomeText();
    case OutdatedRole:
        return row.isOutdated();
    case WarningsRole:
        return row.messages();
    case ProblemsRole:
        return row.problemLines();
    case LineCountRole:
        return row.messages().size() + row.problemLines().size();
    case RunningRole:
        return index.row() == m_runningRow;
    case NextRole:
        return &row.operation() == m_next;
    case BreakpointRole:
        return m_breakpoints.contains(&row.operation());
    default:
        return QVariant();
    }
}

bool ScriptModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isStep(index))
        return false;
    if (role == BreakpointRole)
        emit breakpointRequested(index.row());
    if (role != Qt::CheckStateRole)
        return role == BreakpointRole;
    emit enableRequested(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::DropActions ScriptModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

QStringList ScriptModel::mimeTypes() const
{
    return {StepMime::rows(), StepMime::stepType(), StepMime::steps()};
}

QMimeData *ScriptModel::mimeData(const QModelIndexList &indexes) const
{
    QList<int> rows;
    for (const QModelIndex &index : indexes)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << m_id << rows;
    auto *data = new QMimeData;
    data->setData(StepMime::rows(), bytes);
    return data;
}

bool ScriptModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int, int, const QModelIndex &) const
{
    const QStringList types = mimeTypes();
    return std::any_of(types.cbegin(), types.cend(),
                       [data](const QString &type) { return data->hasFormat(type); });
}

bool ScriptModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                               const QModelIndex &parent)
{
    const int target = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
    if (data->hasFormat(StepMime::rows())) {
        QDataStream stream(data->data(StepMime::rows()));
        QUuid id;
        QList<int> rows;
        stream >> id >> rows;
        if (id == m_id && action == Qt::CopyAction)
            emit duplicateRequested(rows, target);
        else if (id == m_id)
            emit moveRequested(rows, target);
        // The steps have been moved already: to the view this is no move, after which it removes rows.
        return false;
    }
    if (data->hasFormat(StepMime::stepType())) {
        emit placeRequested(QString::fromUtf8(data->data(StepMime::stepType())), target);
        return true;
    }
    if (data->hasFormat(StepMime::steps())) {
        emit insertRequested(data->data(StepMime::steps()), target);
        return true;
    }
    return false;
}
} // namespace Workbench
