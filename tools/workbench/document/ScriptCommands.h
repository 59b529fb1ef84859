#pragma once

#include "host/scripts/Script.h"
#include "host/scripts/VariableUses.h"
#include "hostapi/VariableScope.h"

#include <QList>
#include <QUndoCommand>
#include <QVariant>

namespace Workbench
{
class ScriptDocument;

/// Puts steps into the script.
class InsertStepsCommand : public QUndoCommand
{
public:
    InsertStepsCommand(ScriptDocument &document, int row, std::vector<StepHost::ScriptStep> steps,
                       const QString &text);
    void undo() override;
    void redo() override;

private:
    ScriptDocument &m_document;
    int m_row;
    int m_count;
    std::vector<StepHost::ScriptStep> m_steps; ///< While they are not in the script.
};

/// Takes steps out of the script.
class RemoveStepsCommand : public QUndoCommand
{
public:
    /// \param rows in ascending order
    RemoveStepsCommand(ScriptDocument &document, const QList<int> &rows, const QString &text);
    void undo() override;
    void redo() override;

private:
    /// Steps that stand together.
    struct Block
    {
        int row;
        int count;
        std::vector<StepHost::ScriptStep> steps; ///< While they are not in the script.
    };

    ScriptDocument &m_document;
    std::vector<Block> m_blocks; ///< From the first row on.
};

/// Moves steps, which then stand together and in their order.
class MoveStepsCommand : public QUndoCommand
{
public:
    /// \param rows in ascending order
    /// \param target the row that the steps come to stand in front of
    MoveStepsCommand(ScriptDocument &document, const QList<int> &rows, int target, const QString &text);
    void undo() override;
    void redo() override;

    /// Whether the steps stand there already.
    bool isEmpty() const;

private:
    /// Of steps that stand together.
    struct Move
    {
        int from;
        int count;
        int to;
    };

    static QVector<Move> blocksOf(const QList<int> &rows);

    ScriptDocument &m_document;
    QVector<Move> m_moves; ///< One after the other.
};

/// Has steps run, or not.
class EnableStepsCommand : public QUndoCommand
{
public:
    /// \param rows of steps that are not \a enabled yet
    EnableStepsCommand(ScriptDocument &document, const QList<int> &rows, bool enabled, const QString &text);
    void undo() override;
    void redo() override;

private:
    void apply(bool enabled);

    ScriptDocument &m_document;
    QList<int> m_rows;
    bool m_enabled;
};

/// Changes one setting of one step. Changes of the same setting in a row make one command.
class ChangeSettingCommand : public QUndoCommand
{
public:
    ChangeSettingCommand(ScriptDocument &document, int row, const QString &property, const QVariant &value,
                         const QString &text);
    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand *other) override;

private:
    void apply(const QVariant &value);

    ScriptDocument &m_document;
    int m_row;
    QString m_property;
    QVariant m_before;
    QVariant m_after;
};

/// Changes settings of any steps, and the variables that the script starts with, at once.
class ChangeScriptCommand : public QUndoCommand
{
public:
    ChangeScriptCommand(ScriptDocument &document, const QVector<StepHost::SettingChange> &settings,
                        const VariableScope &variables, const QString &text);
    void undo() override;
    void redo() override;

private:
    void apply(const QVector<StepHost::SettingChange> &settings, const VariableScope &variables);

    ScriptDocument &m_document;
    QVector<StepHost::SettingChange> m_settingsBefore;
    QVector<StepHost::SettingChange> m_settingsAfter;
    VariableScope m_variablesBefore;
    VariableScope m_variablesAfter;
};

/// Changes the variables that the script starts with.
class ChangeVariablesCommand : public QUndoCommand
{
public:
    ChangeVariablesCommand(ScriptDocument &document, const VariableScope &variables, const QString &text);
    void undo() override;
    void redo() override;

private:
    ScriptDocument &m_document;
    VariableScope m_before;
    VariableScope m_after;
};
} // namespace Workbench
