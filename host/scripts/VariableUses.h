#pragma once

#include "host/scripts/Script.h"
#include "host/values/Result.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace StepHost
{
struct EditorSchema;

/// A setting of a step that names a variable.
struct VariableUse
{
    int row = 0; ///< The step's, from 0.
    QString property; ///< The setting's name.
    QString variable; ///< Without the mark.
    bool isShown = true; ///< Whether the user sees the setting, as its visibility rule has it.
};

/// A new value for a setting of a step.
struct SettingChange
{
    int row = 0; ///< The step's, from 0.
    QString property; ///< The setting's name.
    QVariant value;
};

/// Where steps name variables: in the settings that their classes call the name of a variable, and in those that may be a
/// reference, such as `$names.Count`. Settings without such an editor are texts like any other, whatever is written in
/// them; so is what a step keeps beside its settings.
class VariableUses
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::VariableUses)

public:
    /// The uses in the settings of \a step, whose class has the editors \a schema; each has the row \a row.
    static QVector<VariableUse> inStep(const Operation &step, const EditorSchema &schema, int row);

    /// The uses in \a steps, step by step, also in those that are not enabled. None of \a steps may be null.
    static QVector<VariableUse> inSteps(const std::vector<const Operation *> &steps);

    /// Those of the variable \a name, without the mark.
    static QVector<VariableUse> ofVariable(const std::vector<const Operation *> &steps, const QString &name);

    /// The names of the variables that \a steps use, without the mark, each once, in the order of their first use.
    static QStringList namesIn(const std::vector<const Operation *> &steps);

    /// What has to be changed in \a steps so that they use the variable \a to wherever they used \a from; both are names
    /// without the mark. Marks and members stay as they are. Refused when a reference to \a to would be understood as one
    /// to another variable, as when \a to has a dot.
    static Result<QVector<SettingChange>> renamed(const std::vector<const Operation *> &steps,
                                                  const QString &from, const QString &to);
};

/// The steps of \a script, which keeps them.
std::vector<const Operation *> stepsOf(const Script &script);
} // namespace StepHost
