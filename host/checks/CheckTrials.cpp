#include "CheckTrials.h"

#include "CheckContext.h"
#include "CheckSteps.h"
#include "host/plugins/StepCatalogue.h"
#include "host/scripts/ScriptFile.h"

#include <QHash>

namespace StepHost
{
namespace
{
/// The runs that scripts of the plug-in's author add to those that the checks make up.
class ScriptTrials
{
public:
    /// Runs the scripts of `context`, and keeps each step's settings and the variables before it.
    explicit ScriptTrials(CheckContext &context);

    /// Adds the trials with steps of the type of `step` to `trials`, by what comes of them.
    void addTo(StepTrials &trials, Operation &step) const;

private:
    void runScript(const QString &fileName, const CheckContext &context);

    QHash<QString, QVector<Trial>> m_trials; ///< By type id.
};

ScriptTrials::ScriptTrials(CheckContext &context)
{
    if (!context.setup().scripts.isEmpty())
        context.plugin(); // Loaded longer than the catalogue of a script: values may lie in its memory.
    for (const QString &script : context.setup().scripts)
        runScript(script, context);
}

void ScriptTrials::runScript(const QString &fileName, const CheckContext &context)
{
    StepCatalogue catalogue;
    const QStringList plugins = QStringList{context.fileName()} + context.setup().companions;
    for (const QString &plugin : plugins) {
        if (const auto added = catalogue.addPlugin(plugin); !added && plugin == context.fileName())
            fail(added.error().reason);
    }
    const Result<Script> script = readScriptFile(fileName, catalogue);
    if (!script)
        fail(script.error());
    VariableScope scope;
    declareVariables(*script, scope);
    for (const ScriptStep &step : script->steps) {
        const auto before = std::make_shared<const VariableScope>(scope);
        m_trials[step.operation->typeId()].append(
            {readSettings(*step.operation), ScopeContent::Mixed, before});
        runOn(*step.operation, scope);
    }
}

void ScriptTrials::addTo(StepTrials &trials, Operation &step) const
{
    const QVector<Trial> added = m_trials.value(step.typeId());
    for (const Trial &trial : added) {
        ++trials.runs;
        const bool hasWritten = run(step, trial).hasWritten;
        (hasWritten ? trials.writing : trials.skipping).append(trial);
    }
}
} // namespace

void forEachTrials(CheckContext &context, const std::function<void(Operation &, const StepTrials &)> &check)
{
    const ScriptTrials scripts(context);
    context.forEachStep([&](Operation &step) {
        StepTrials trials = findTrials(step, context.seed());
        scripts.addTo(trials, step);
        check(step, trials);
    });
}

void forEachTrialRun(CheckContext &context,
                     const std::function<void(const Operation &, const Trial &, const TrialRun &)> &check)
{
    forEachTrials(context, [&check](Operation &step, const StepTrials &trials) {
        const QVector<Trial> all = trials.writing + trials.skipping;
        for (const Trial &trial : all)
            check(step, trial, run(step, trial));
    });
}
} // namespace StepHost
