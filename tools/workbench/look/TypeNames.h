#pragma once

#include "host/values/ItemValue.h"
#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QString>

namespace Workbench
{
/// The types of variables and the kinds of items, in the user's language.
class TypeNames
{
    Q_DECLARE_TR_FUNCTIONS(Workbench::TypeNames)

public:
    static QString of(VarType type);
    static QString of(StepHost::ItemKind kind);

    /// What an action that makes the variable \a name of the type \a type is called.
    static QString creationOf(VarType type, const QString &name);
};
} // namespace Workbench
