#include "Script.h"

#include "host/values/VariableName.h"

#include <algorithm>

namespace StepHost
{
ScriptVariable *Script::findVariable(const QString &name)
{
    const QString key = withoutMark(name);
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&key](const ScriptVariable &variable) { return variable.name == key; });
    return found == variables.end() ? nullptr : &*found;
}

void declareVariables(const Script &script, VariableScope &scope)
{
    for (const ScriptVariable &variable : script.variables) {
        scope.declare(referenceTo(variable.name), variable.type);
        scope.set(referenceTo(variable.name), variable.value);
    }
}
} // namespace StepHost
