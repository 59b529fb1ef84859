#include "CheckTrials.h"

#include "CheckContext.h"
#include "CheckSteps.h"
#include "host/scripts/ScriptFile.h"

#include <QHash>

#include <vector>

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
    void runScript(const Script &script);

    std::vector<std::unique_ptr<StepCatalogue>>
        m_catalogues; ///< Values of the trials may lie in their memory.
    QHash<QString, QVector<Trial>> m_trials; ///< By type id.
};

ScriptTrials::ScriptTrials(CheckContext &context)
{
    for (const QString &fileName : context.setup().scripts) {
        Result<AuthorScript> author = readAuthorScript(context, fileName);
        if (!author)
            continue;
        m_catalogues.push_back(std::move(author->catalogue));
        const Script script = std::move(author->script); // Gone before its catalogue.
        runScript(script);
    }
}

void ScriptTrials::runScript(const Script &script)
{
    VariableScope scope;
    declareVariables(script, scope);
    for (const ScriptStep &step : script.steps) {
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

Result<AuthorScript> readAuthorScript(CheckContext &context, const QString &fileName)
{
    context.plugin(); // Loaded longer than the catalogue: values may lie in its memory.
    AuthorScript author{std::make_unique<StepCatalogue>(), {}};
    const QStringList plugins = QStringList{context.fileName()} + context.setup().companions;
    for (const QString &plugin : plugins) {
        const auto added = author.catalogue->addPlugin(plugin);
        if (!added && plugin == context.fileName())
            return failure(added.error().reason);
    }
    Result<Script> script = readScriptFile(fileName, *author.catalogue);
    if (!script)
        return failure(script.error());
    author.script = std::move(*script);
    return author;
}

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
