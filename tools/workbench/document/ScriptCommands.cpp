#include "ScriptCommands.h"

#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "tools/workbench/look/ToolTipText.h"

#include <algorithm>

namespace Workbench
{
InsertStepsCommand::InsertStepsCommand(ScriptDocument &document, int row,
                                       std::vector<StepHost::ScriptStep> steps, const QString &text)
    : QUndoCommand(menuText(text)), m_document(document), m_row(row), m_count(int(steps.size())),
      m_steps(std::move(steps))
{
}

void InsertStepsCommand::redo()
{
    m_document.model().insertSteps(m_row, std::move(m_steps));
    m_steps.clear();
    emit m_document.touched(m_row, m_count);
}

void InsertStepsCommand::undo()
{
    m_steps = m_document.model().takeSteps(m_row, m_count);
}

RemoveStepsCommand::RemoveStepsCommand(ScriptDocument &document, const QList<int> &rows, const QString &text)
    : QUndoCommand(menuText(text)), m_document(document)
{
    for (const int row : rows) {
        if (m_blocks.empty() || m_blocks.back().row + m_blocks.back().count != row)
            m_blocks.push_back({row, 0, {}});
        ++m_blocks.back().count;
    }
}

void RemoveStepsCommand::redo()
{
    for (auto block = m_blocks.rbegin(); block != m_blocks.rend(); ++block)
        block->steps = m_document.model().takeSteps(block->row, block->count);
}

void RemoveStepsCommand::undo()
{
    for (Block &block : m_blocks) {
        m_document.model().insertSteps(block.row, std::move(block.steps));
        block.steps.clear();
    }
    emit m_document.touched(m_blocks.front().row, 1);
}

MoveStepsCommand::MoveStepsCommand(ScriptDocument &document, const QList<int> &rows, int target,
                                   const QString &text)
    : QUndoCommand(menuText(text)), m_document(document)
{
    // Those above the target from the last, those below it from the first: so no move changes the row of one
    // that is still to come.
    const auto below = std::lower_bound(rows.cbegin(), rows.cend(), target);
    int to = target;
    const QVector<Move> above = blocksOf(rows.mid(0, int(below - rows.cbegin())));
    for (auto block = above.crbegin(); block != above.crend(); ++block) {
        to -= block->count;
        m_moves.append({block->from, block->count, to});
    }
    to = target;
    const QVector<Move> others = blocksOf(rows.mid(int(below - rows.cbegin())));
    for (const Move &block : others) {
        m_moves.append({block.from, block.count, to});
        to += block.count;
    }
    m_moves.erase(
        std::remove_if(m_moves.begin(), m_moves.end(), [](const Move &move) { return move.from == move.to; }),
        m_moves.end());
}

QVector<MoveStepsCommand::Move> MoveStepsCommand::blocksOf(const QList<int> &rows)
{
    QVector<Move> blocks;
    for (const int row : rows) {
        if (blocks.isEmpty() || blocks.last().from + blocks.last().count != row)
            blocks.append({row, 0, row});
        ++blocks.last().count;
    }
    return blocks;
}

bool MoveStepsCommand::isEmpty() const
{
    return m_moves.isEmpty();
}

void MoveStepsCommand::redo()
{
    for (const Move &move : qAsConst(m_moves))
        m_document.model().moveSteps(move.from, move.count, move.to);
}

void MoveStepsCommand::undo()
{
    for (auto move = m_moves.crbegin(); move != m_moves.crend(); ++move)
        m_document.model().moveSteps(move->to, move->count, move->from);
}

EnableStepsCommand::EnableStepsCommand(ScriptDocument &document, const QList<int> &rows, bool enabled,
                                       const QString &text)
    : QUndoCommand(menuText(text)), m_document(document), m_rows(rows), m_enabled(enabled)
{
}

void EnableStepsCommand::apply(bool enabled)
{
    for (const int row : qAsConst(m_rows))
        m_document.model().setEnabled(row, enabled);
}

void EnableStepsCommand::redo()
{
    apply(m_enabled);
}

void EnableStepsCommand::undo()
{
    apply(!m_enabled);
}

ChangeSettingCommand::ChangeSettingCommand(ScriptDocument &document, int row, const QString &property,
                                           const QVariant &value, const QString &text)
    : QUndoCommand(menuText(text)), m_document(document), m_row(row), m_property(property),
      m_before(document.model().step(row).property(property.toUtf8().constData())), m_after(value)
{
}

int ChangeSettingCommand::id() const
{
    return 1;
}

bool ChangeSettingCommand::mergeWith(const QUndoCommand *other)
{
    const auto *later = static_cast<const ChangeSettingCommand *>(other);
    if (later->m_row != m_row || later->m_property != m_property)
        return false;
    m_after = later->m_after;
    setObsolete(m_after == m_before && m_after.userType() == m_before.userType());
    return true;
}

void ChangeSettingCommand::apply(const QVariant &value)
{
    m_document.model().setSetting(m_row, m_property, value);
    emit m_document.touched(m_row, 1);
}

void ChangeSettingCommand::redo()
{
    apply(m_after);
}

void ChangeSettingCommand::undo()
{
    apply(m_before);
}

ChangeScriptCommand::ChangeScriptCommand(ScriptDocument &document,
                                         const QVector<StepHost::SettingChange> &settings,
                                         const VariableScope &variables, const QString &text)
    : QUndoCommand(menuText(text)), m_document(document), m_settingsAfter(settings),
      m_variablesBefore(document.variables()), m_variablesAfter(variables)
{
    for (const StepHost::SettingChange &change : settings) {
        const Operation &step = document.model().step(change.row);
        m_settingsBefore.append(
            {change.row, change.property, step.property(change.property.toUtf8().constData())});
    }
}

void ChangeScriptCommand::apply(const QVector<StepHost::SettingChange> &settings,
                                const VariableScope &variables)
{
    for (const StepHost::SettingChange &change : settings)
        m_document.model().setSetting(change.row, change.property, change.value);
    m_document.showVariables(variables);
}

void ChangeScriptCommand::redo()
{
    apply(m_settingsAfter, m_variablesAfter);
}

void ChangeScriptCommand::undo()
{
    apply(m_settingsBefore, m_variablesBefore);
}

ChangeVariablesCommand::ChangeVariablesCommand(ScriptDocument &document, const VariableScope &variables,
                                               const QString &text)
    : QUndoCommand(menuText(text)), m_document(document), m_before(document.variables()), m_after(variables)
{
}

void ChangeVariablesCommand::redo()
{
    m_document.showVariables(m_after);
}

void ChangeVariablesCommand::undo()
{
    m_document.showVariables(m_before);
}
} // namespace Workbench
