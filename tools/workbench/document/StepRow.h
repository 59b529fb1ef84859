#pragma once

#include "host/running/ScriptRunner.h"
#include "host/scripts/Script.h"
#include "host/scripts/StepProblems.h"

#include <QCoreApplication>
#include <QStringList>
#include <QVariant>

namespace Workbench
{
/// A step of the script, with what became of it in the last run and what is to be said of it before the next.
class StepRow
{
    Q_DECLARE_TR_FUNCTIONS(Workbench::StepRow)

public:
    explicit StepRow(StepHost::ScriptStep step);

    const Operation &operation() const;
    bool isEnabled() const;

    /// Gives the step away. The row is of no use any more.
    StepHost::ScriptStep take();

    void setEnabled(bool enabled);

    /// Gives the property \a property of the step the value \a value.
    void setSetting(const QString &property, const QVariant &value);

    /// Notes what became of the step when it was like \a step.
    void setResult(const StepHost::StepResult &result, const StepHost::ScriptStep &step);
    void clearResult();

    StepHost::StepOutcome outcome() const;

    /// The outcome in a word, for the user; empty for a step that was not run.
    QString outcomeText() const;

    /// Whether the outcome is that of the step with other settings than it has now.
    bool isOutdated() const;

    /// What the step had to say in its run, also why it failed, a line each.
    const QStringList &messages() const;

    /// Looks for the problems of the step's settings, by its class's \a schema and the \a variables that the script starts
    /// with. Returns whether they are others than before.
    bool check(const StepHost::EditorSchema &schema, const VariableScope &variables);

    /// The problems that check() found; none for a step that is not enabled.
    QVector<StepHost::StepProblem> problems() const;

    /// The texts of these, a line each; none for a step that ran with its present settings, which tells what they led to.
    QStringList problemLines() const;

    /// All that is drawn of the step, in words.
    QString spokenText(int number, bool isRunning) const;

    /// The step's description, and what became of it.
    QString toolTip() const;

    bool isChecked = false; ///< For who calls check(): whether it is up to date.
    std::optional<QByteArray> kept; ///< The step as bytes, for who keeps it; nothing once it is changed.

private:
    /// What an outcome depends on.
    struct Settings
    {
        QVariantList values;
        bool enabled = true;
    };

    static Settings settingsOf(const StepHost::ScriptStep &step);
    void compareSettings();

    StepHost::ScriptStep m_step;
    StepHost::StepResult m_result;
    QStringList m_messages; ///< Of the result.
    Settings m_ranWith; ///< The settings that the result belongs to.
    bool m_isOutdated = false; ///< The step has others now.
    QVector<StepHost::StepProblem> m_problems;
};
} // namespace Workbench
