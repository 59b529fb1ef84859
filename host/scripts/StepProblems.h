#pragma once

#include "host/plugins/EditorSchema.h"
#include "host/scripts/Script.h"
#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

namespace StepHost
{
/// What a user should know about a setting before the step runs.
struct StepProblem
{
    QString property; ///< The setting's name.
    QString text; ///< What is wrong with the setting.
    QString
        missing; ///< The variable, without the mark, that would mend this if it were made; empty when none would.
    VarType missingType = VarType::Undeclared; ///< What that variable would have to be.
};

inline bool operator==(const StepProblem &a, const StepProblem &b)
{
    return a.property == b.property && a.text == b.text && a.missing == b.missing
        && a.missingType == b.missingType;
}

inline bool operator!=(const StepProblem &a, const StepProblem &b)
{
    return !(a == b);
}

/// A problem of a step of a script.
struct ScriptProblem
{
    int row = 0; ///< The step's, from 0.
    StepProblem problem;
};

/// What can be told of settings from what a step's class says about their editors. It is up to the step what it makes
/// of its settings, so nothing here keeps it from running.
class StepProblems
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::StepProblems)

public:
    /// What is wrong with \a value as \a setting when the variables are \a variables.
    static std::optional<StepProblem> ofSetting(const SettingSchema &setting, const QVariant &value,
                                                const VariableScope &variables);

    /// The problems of those settings of \a step that are shown to the user, in their order. Their texts begin with the
    /// setting's label.
    static QVector<StepProblem> ofStep(const Operation &step, const VariableScope &variables);

    /// The same for one who keeps \a schema, that of the class of \a step.
    static QVector<StepProblem> ofStep(const Operation &step, const EditorSchema &schema,
                                       const VariableScope &variables);

    /// The problems of the steps of \a script that are enabled, step by step, on the variables that it starts with.
    static QVector<ScriptProblem> ofScript(const Script &script);

private:
    static QString textOfSetting(const SettingSchema &setting, const QVariant &value,
                                 const VariableScope &variables);
    static QString ofVariableName(const QString &name, VariableKind kind, const VariableScope &variables);
    static QString ofInteger(const QString &text, const VariableScope &variables);
    static QString ofReference(const QString &text, const VariableScope &variables);
    static QString ofChoice(const SettingSchema &setting, int index);
};
} // namespace StepHost
