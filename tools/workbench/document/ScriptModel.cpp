#include "ScriptModel.h"

#include "StepMime.h"
#include "host/plugins/StepSettings.h"
#include "host/plugins/StepTexts.h"
#include "host/scripts/StepProblems.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QDataStream>
#include <QMimeData>

#include <algorithm>

namespace Workbench
{
namespace
{
QStringList messages(const StepHost::StepResult &result)
{
    QStringList lines;
    for (const QString &warning : result.warnings)
        lines += StepHost::inLines(warning).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines += StepHost::inLines(result.failure).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines;
}
} // namespace

ScriptModel::ScriptModel(QObject *parent) : QAbstractListModel(parent), m_id(QUuid::createUuid()) { }

ScriptModel::~ScriptModel() = default;

ScriptModel::Settings ScriptModel::settingsOf(const StepHost::ScriptStep &step)
{
    Settings settings;
    settings.enabled = step.enabled;
    const QVector<QMetaProperty> properties = StepHost::settingsOf(*step.operation);
    for (const QMetaProperty &property : properties)
        settings.values.append(property.read(step.operation.get()));
    return settings;
}

ScriptModel::Row ScriptModel::rowOf(StepHost::ScriptStep step)
{
    Row row;
    row.step = std::move(step);
    return row;
}

ScriptModel::Row &ScriptModel::at(int row)
{
    return m_rows.at(size_t(row));
}

const ScriptModel::Row &ScriptModel::at(int row) const
{
    return m_rows.at(size_t(row));
}

const Operation &ScriptModel::step(int row) const
{
    return *at(row).step.operation;
}

bool ScriptModel::isEnabled(int row) const
{
    return at(row).step.enabled;
}

void ScriptModel::setVariables(const VariableScope &variables)
{
    m_variables = variables;
    if (!m_rows.empty())
        emit dataChanged(index(0), index(rowCount() - 1));
}

void ScriptModel::setSteps(std::vector<StepHost::ScriptStep> steps)
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(steps.size());
    for (StepHost::ScriptStep &step : steps)
        m_rows.push_back(rowOf(std::move(step)));
    endResetModel();
}

void ScriptModel::insertStep(int row, StepHost::ScriptStep step)
{
    beginInsertRows(QModelIndex(), row, row);
    m_rows.insert(m_rows.begin() + row, rowOf(std::move(step)));
    endInsertRows();
}

StepHost::ScriptStep ScriptModel::takeStep(int row)
{
    beginRemoveRows(QModelIndex(), row, row);
    StepHost::ScriptStep step = std::move(at(row).step);
    m_rows.erase(m_rows.begin() + row);
    endRemoveRows();
    return step;
}

void ScriptModel::moveStep(int from, int to)
{
    if (!beginMoveRows(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to))
        return;
    const auto begin = m_rows.begin();
    if (from < to)
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
    endMoveRows();
}

void ScriptModel::setEnabled(int row, bool enabled)
{
    at(row).step.enabled = enabled;
    settingsChanged(row);
}

void ScriptModel::setSetting(int row, const QString &property, const QVariant &value)
{
    at(row).step.operation->setProperty(property.toUtf8().constData(), value);
    settingsChanged(row);
}

void ScriptModel::settingsChanged(int row)
{
    // What the step did with other settings says nothing about it as it is now.
    const Settings settings = settingsOf(at(row).step);
    const Settings &before = at(row).ranWith;
    at(row).isOutdated = at(row).result.outcome != StepHost::StepOutcome::NotRun
        && (settings.values != before.values || settings.enabled != before.enabled);
    rowChanged(row);
}

void ScriptModel::setResult(int row, const StepHost::StepResult &result, const StepHost::ScriptStep &step)
{
    at(row).result = result;
    at(row).ranWith = settingsOf(step);
    settingsChanged(row);
}

void ScriptModel::clearResults()
{
    for (Row &row : m_rows) {
        row.result = StepHost::StepResult();
        row.isOutdated = false;
    }
    if (!m_rows.empty())
        emit dataChanged(index(0), index(rowCount() - 1));
}

void ScriptModel::setRunningRow(int row)
{
    const int before = m_runningRow;
    m_runningRow = row;
    for (const int changed : {before, row}) {
        if (changed >= 0 && changed < rowCount())
            rowChanged(changed);
    }
}

int ScriptModel::rowOf(const Operation *step) const
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                    [step](const Row &row) { return row.step.operation.get() == step; });
    return found == m_rows.cend() ? -1 : int(found - m_rows.cbegin());
}

QString ScriptModel::outcomeText(const Row &row)
{
    switch (row.result.outcome) {
    case StepHost::StepOutcome::Wrote:
        return tr("wrote");
    case StepHost::StepOutcome::Skipped:
        return tr("skipped");
    case StepHost::StepOutcome::Failed:
        return tr("failed");
    case StepHost::StepOutcome::Disabled:
        return tr("disabled");
    case StepHost::StepOutcome::NotRun:
        break;
    }
    return QString();
}

QString ScriptModel::spokenText(int row) const
{
    const Row &shown = at(row);
    QStringList parts{tr("Step %1: %2")
                          .arg(row + 1)
                          .arg(StepHost::shownStepText(*shown.step.operation, &Operation::toString))};
    if (!shown.step.enabled)
        parts.append(tr("not enabled"));
    if (row == m_runningRow)
        parts.append(tr("running…"));
    const QString outcome = outcomeText(shown);
    if (!outcome.isEmpty())
        parts.append(shown.isOutdated ? tr("%1, before its settings were changed").arg(outcome) : outcome);
    return shortened((parts + messages(shown.result) + problems(shown)).join(QLatin1String("; ")));
}

QStringList ScriptModel::problems(const Row &row) const
{
    const bool hasRun = row.result.outcome != StepHost::StepOutcome::NotRun && !row.isOutdated;
    if (hasRun || !row.step.enabled)
        return QStringList();
    const Operation &operation = *row.step.operation;
    const QMetaObject *type = operation.metaObject();
    if (!m_schemas.contains(type))
        m_schemas.insert(type, StepHost::readEditorSchema(*type));
    QStringList lines;
    const QVector<StepHost::StepProblem> problems =
        StepHost::StepProblems::ofStep(operation, m_schemas[type], m_variables);
    for (const StepHost::StepProblem &problem : problems)
        lines.append(problem.text);
    return lines;
}

QIcon ScriptModel::icon(const QString &path) const
{
    if (!m_icons.contains(path))
        m_icons.insert(path, stepIcon(path));
    return m_icons.value(path);
}

void ScriptModel::rowChanged(int row)
{
    emit dataChanged(index(row), index(row));
}

int ScriptModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

bool ScriptModel::isStep(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index, CheckIndexOption::ParentIsInvalid);
}

QString ScriptModel::toolTip(const Row &row) const
{
    QStringList lines{StepHost::shownStepText(*row.step.operation, &Operation::description)};
    if (row.isOutdated)
        lines.append(tr("The outcome is from before the settings were changed."));
    return (lines + messages(row.result) + problems(row)).join(QLatin1Char('\n'));
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
    const Row &row = at(index.row());
    const Operation &operation = *row.step.operation;
    switch (role) {
    case Qt::DisplayRole:
        return StepHost::shownStepText(operation, &Operation::toString);
    case Qt::DecorationRole:
        return icon(StepHost::stepText(operation, &Operation::icon));
    case Qt::ToolTipRole:
        return toolTipText(toolTip(row));
    case Qt::AccessibleTextRole:
        return spokenText(index.row());
    case Qt::CheckStateRole:
        return int(row.step.enabled ? Qt::Checked : Qt::Unchecked);
    case NumberRole:
        return index.row() + 1;
    case OutcomeRole:
        return int(row.result.outcome);
    case OutcomeTextRole:
        return outcomeText(row);
    case OutdatedRole:
        return row.isOutdated;
    case WarningsRole:
        return messages(row.result);
    case ProblemsRole:
        return problems(row);
    case RunningRole:
        return index.row() == m_runningRow;
    default:
        return QVariant();
    }
}

bool ScriptModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !isStep(index))
        return false;
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
