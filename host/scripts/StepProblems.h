#pragma once

#include "host/plugins/EditorSchema.h"
#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>
#include <QVector>

class Operation;

namespace StepHost
{
/// What a user should know about a setting before the step runs.
struct StepProblem
{
    QString property; ///< The setting's name.
    QString text; ///< What is wrong with the setting, after its label.
};

/// What can be told of settings from what a step's class says about their editors. It is up to the step what it makes
/// of its settings, so nothing here keeps it from running.
class StepProblems
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::StepProblems)

public:
    /// What is wrong with \a value as \a setting when the variables are \a variables; empty when nothing is.
    static QString ofSetting(const SettingSchema &setting, const QVariant &value,
                             const VariableScope &variables);

    /// The problems of those settings of \a step that are shown to the user, in their order.
    static QVector<StepProblem> ofStep(const Operation &step, const VariableScope &variables);

    /// The same for one who keeps \a schema, that of the class of \a step.
    static QVector<StepProblem> ofStep(const Operation &step, const EditorSchema &schema,
                                       const VariableScope &variables);

private:
    static QString ofVariableName(const QString &name, VariableKind kind, const VariableScope &variables);
    static QString ofInteger(const QString &text, const VariableScope &variables);
    static QString ofReference(const QString &text, const VariableScope &variables);
    static QString ofChoice(const SettingSchema &setting, int index);
};
} // namespace StepHost
