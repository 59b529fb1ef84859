#pragma once

#include "hostapi/Operation.h"
#include "hostapi/VariableScope.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

namespace StepHost
{
/// A variable that a script declares.
struct ScriptVariable
{
    QString name; ///< Without the mark "$".
    VarType type = VarType::Undeclared;
    QVariant value;
};

/// A step of a script.
struct ScriptStep
{
    std::unique_ptr<Operation> operation; ///< Never null; without `QObject` parent.
    bool enabled = true; ///< A step that is not enabled is kept, but not run.
};

/// A script: the variables that it starts with, and the steps in the order in which they run. Can be moved,
/// not copied. Has to be gone before the catalogue that its steps come from.
struct Script
{
    std::vector<ScriptVariable> variables;
    std::vector<ScriptStep> steps;

    /// The variable \a name, which may have the mark "$"; null when there is none.
    ScriptVariable *findVariable(const QString &name);
};

/// Told, while a script is read, that its step \a number, from 1 on, which is of type \a typeId, is made next.
using StepReading = std::function<void(int number, const QString &typeId)>;

/// Declares the variables of \a script in \a scope and sets their values. A variable of type
/// VarType::Undeclared is only set.
void declareVariables(const Script &script, VariableScope &scope);
} // namespace StepHost
