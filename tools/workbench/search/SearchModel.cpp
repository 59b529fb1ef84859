#include "SearchModel.h"

#include "host/plugins/EditorSchema.h"
#include "host/plugins/StepTexts.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/ToolTipText.h"

namespace Workbench
{
using StepHost::SearchHit;

SearchModel::SearchModel(const ScriptModel &script, QObject *parent)
    : QAbstractTableModel(parent), m_script(script)
{
}

void SearchModel::setHits(const QVector<SearchHit> &hits)
{
    beginResetModel();
    m_hits = hits;
    endResetModel();
}

const SearchHit &SearchModel::hit(int row) const
{
    return m_hits.at(row);
}

int SearchModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_hits.size();
}

int SearchModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString SearchModel::whereOf(const SearchHit &hit) const
{
    if (hit.row < 0)
        return StepHost::inOneLine(hit.variable);
    // The script may have become a shorter one just now.
    if (hit.row >= m_script.rowCount())
        return QString();
    return QStringLiteral("%1  %2").arg(
        QString::number(hit.row + 1), StepHost::shownStepText(m_script.step(hit.row), &Operation::typeName));
}

QString SearchModel::whatOf(const SearchHit &hit) const
{
    switch (hit.place) {
    case SearchHit::Step:
        return tr("Step");
    case SearchHit::VariableName:
        return tr("Name of the variable");
    case SearchHit::Value:
        return tr("Start value, %n time(s)", nullptr, hit.count);
    case SearchHit::Setting:
        break;
    }
    if (hit.row >= m_script.rowCount())
        return QString();
    const StepHost::EditorSchema schema = StepHost::readEditorSchema(*m_script.step(hit.row).metaObject());
    const StepHost::SettingSchema *setting = schema.find(hit.property);
    return StepHost::inOneLine(setting && !setting->label.isEmpty() ? setting->label : hit.property);
}

QVariant SearchModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !checkIndex(index, CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const SearchHit &hit = m_hits.at(index.row());
    if (role == Qt::ToolTipRole)
        return toolTipText(hit.text);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case WhereColumn:
        return whereOf(hit);
    case WhatColumn:
        return whatOf(hit);
    default:
        return StepHost::inOneLine(shortened(hit.text));
    }
}

QVariant SearchModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case WhereColumn:
        return tr("Where");
    case WhatColumn:
        return tr("What");
    default:
        return tr("Text");
    }
}
} // namespace Workbench
