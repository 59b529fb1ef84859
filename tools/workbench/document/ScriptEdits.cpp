#include "ScriptEdits.h"

#include "ScriptCommands.h"
#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "host/scripts/VariableEdits.h"
#include "host/values/VariableName.h"

#include <algorithm>

namespace Workbench
{
namespace
{
std::vector<const Operation *> stepsOf(const ScriptDocument &document)
{
    std::vector<const Operation *> steps;
    const ScriptModel &model = document.model();
    for (int row = 0; row < model.rowCount(); ++row)
        steps.push_back(&model.step(row));
    return steps;
}

// The variables of `variables` that `script` uses and can hold.
std::vector<StepHost::ScriptVariable> usedVariables(const StepHost::Script &script,
                                                    const VariableScope &variables)
{
    std::vector<StepHost::ScriptVariable> used;
    const QStringList names = StepHost::VariableUses::namesIn(StepHost::stepsOf(script));
    for (const QString &name : names) {
        const QString reference = StepHost::referenceTo(name);
        if (StepHost::isVariableName(name) && variables.contains(reference))
            used.push_back({name, variables.typeOf(reference), variables.get(reference)});
    }
    return used;
}
} // namespace

QVector<StepHost::VariableUse> ScriptEdits::usesOf(const ScriptDocument &document, const QString &name)
{
    return StepHost::VariableUses::ofVariable(stepsOf(document), name);
}

StepHost::Result<int> ScriptEdits::renameVariable(ScriptDocument &document, const QString &from,
                                                  const QString &to)
{
    const auto variables = StepHost::VariableEdits::rename(document.variables(), from, to);
    if (!variables)
        return StepHost::failure(variables.error());
    const QString name = StepHost::withoutMark(to.trimmed());
    if (name == from)
        return 0;
    const auto changes = StepHost::VariableUses::renamed(stepsOf(document), from, name);
    if (!changes)
        return StepHost::failure(changes.error());
    document.undoStack().push(
        new ChangeScriptCommand(document, *changes, *variables, tr("Rename “%1” to “%2”").arg(from, name)));
    return changes->size();
}

QByteArray ScriptEdits::copyOf(const ScriptDocument &document, StepHost::ScriptForm form,
                               const QList<int> &rows)
{
    StepHost::Script script;
    QList<int> ordered = rows;
    std::sort(ordered.begin(), ordered.end());
    for (const int row : qAsConst(ordered)) {
        script.steps.push_back(document.copyStep(row));
        if (!script.steps.back().operation)
            return QByteArray();
    }
    script.variables = usedVariables(script, document.variables());
    return StepHost::writeScript(script, form, document.catalogue()).value_or(QByteArray());
}

StepHost::Result<void> ScriptEdits::paste(ScriptDocument &document, const QByteArray &script, int row,
                                          const ClashQuestion &question)
{
    StepHost::Result<StepHost::Script> incoming = StepHost::readAnyScript(script, document.catalogue());
    if (!incoming)
        return StepHost::failure(tr("These are no steps: %1").arg(incoming.error()));
    std::optional<StepHost::Clash> clash = StepHost::Clash::UsePresent;
    const QStringList clashing = StepHost::clashingVariables(*incoming, document.variables());
    if (!clashing.isEmpty() && question)
        clash = question(clashing);
    if (!clash)
        return {};
    const auto merged = StepHost::mergeVariables(*incoming, document.variables(), *clash);
    if (!merged)
        return StepHost::failure(merged.error());
    const int count = int(incoming->steps.size());
    const bool bringsVariables = merged->names() != document.variables().names();
    const QString text = tr("Paste %n step(s)", nullptr, count);
    QUndoStack &stack = document.undoStack();
    if (bringsVariables) {
        stack.beginMacro(text);
        stack.push(new ChangeVariablesCommand(document, *merged, text));
    }
    if (count > 0)
        stack.push(new InsertStepsCommand(document, row, std::move(incoming->steps), text));
    if (bringsVariables)
        stack.endMacro();
    return {};
}

QVector<StepHost::SearchHit> ScriptEdits::find(const ScriptDocument &document,
                                               const StepHost::SearchPattern &pattern)
{
    return StepHost::findInScript({stepsOf(document), document.variables()}, pattern);
}

int ScriptEdits::replace(ScriptDocument &document, const StepHost::SearchPattern &pattern,
                         const QString &replacement)
{
    const StepHost::Replacement replaced =
        StepHost::replaceInScript({stepsOf(document), document.variables()}, pattern, replacement);
    if (replaced.count > 0)
        document.undoStack().push(new ChangeScriptCommand(document, replaced.settings, replaced.variables,
                                                          tr("Replace “%1”").arg(pattern.text)));
    return replaced.count;
}
} // namespace Workbench
