#pragma once

#include "host/plugins/EditorSchema.h"

#include <QMetaProperty>
#include <QVariantList>

namespace StepHost
{
/// What a user may put into a setting, where the variables are those of fillTrialScope().
struct TrialValues
{
    QVariantList
        fitting; ///< What the schema asks for: names of variables of the right kind, choices, literals.
    QVariantList other; ///< Variables of other kinds, names of none, nothing, numbers at the edges.
    QVariantList
        branches; ///< Values each of which may make the step do something else: choices and truth values.
};

/// The values for \a setting, which is described by \a schema and is \a byDefault in a new step.
TrialValues trialValues(const QMetaProperty &setting, const SettingSchema &schema, const QVariant &byDefault);

/// Whether \a setting holds the name of a variable that has to be there: it has a `VARNAME` editor for lists.
bool namesList(const SettingSchema &setting);
} // namespace StepHost
