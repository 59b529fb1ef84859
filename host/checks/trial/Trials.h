#pragma once

#include "TrialScope.h"

#include <QStringList>
#include <QVariantList>
#include <QVector>

#include <memory>

class Operation;

namespace StepHost
{
/// The settings of a step and the variables that it is run on.
struct Trial
{
    QVariantList settings; ///< In the order of settingsOf().
    ScopeContent content = ScopeContent::Mixed;
    std::shared_ptr<const VariableScope> variables =
        nullptr; ///< When it is there, it counts and not the content.
};

/// A new scope for \a trial.
VariableScope scopeFor(const Trial &trial);

/// What became of one run.
struct TrialRun
{
    QMap<QString, ScopeEntry> before;
    QMap<QString, ScopeEntry> after;
    bool hasWritten = false; ///< Whether a variable was set at all.
    QStringList warnings; ///< The warning lines.
    QStringList others; ///< Lines of other levels, each with the level in front.
};

/// What a step can be made to do.
struct StepTrials
{
    QVector<Trial> writing; ///< With these the step writes.
    QVector<Trial> skipping; ///< With these it does not.
    int runs = 0; ///< How many runs the search took.
};

/// Gives \a step the settings of a trial, in their order.
void applySettings(Operation &step, const QVariantList &values);

/// Runs \a step, as it is set, on \a scope. The step has no scope afterwards.
TrialRun runOn(Operation &step, VariableScope &scope);

/// Gives \a step the settings of \a trial and runs it on a new scope with the content of \a trial.
TrialRun run(Operation &step, const Trial &trial);

/// The variables that \a run changed, each with its value, in one line; `nothing` when there are none. The same values
/// give the same text in every process.
QString resultText(const TrialRun &run);

/// Looks for settings with which \a step writes: those that the schema asks for first, then ever more at random, for
/// each choice and truth value apart. Which ones are found depends on \a step and \a seed only.
StepTrials findTrials(Operation &step, unsigned seed);

/// The settings of \a step, as they are in \a trial, in one line for a message.
QString trialText(const Operation &step, const Trial &trial);
} // namespace StepHost
