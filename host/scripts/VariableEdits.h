#pragma once

#include "host/values/Result.h"
#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QString>

namespace StepHost
{
/// Changes of a scope's variables as a user makes them. Each gives the changed scope, in which the other
/// variables and their order are as before, or says to the user why it is refused.
class VariableEdits
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::VariableEdits)

public:
    /// A name for a new variable that \a scope does not have yet: \a pattern with the lowest such number for "%1".
    static QString freeName(const VariableScope &scope, const QString &pattern);

    /// Declares \a name with \a type and \a type's empty value. Refused when \a name is no name or taken.
    static Result<VariableScope> add(const VariableScope &scope, const QString &name, VarType type);

    /// Gives the variable \a from the name \a to. Refused when \a to is no name or taken.
    static Result<VariableScope> rename(const VariableScope &scope, const QString &from, const QString &to);

    /// Declares \a name with \a type instead of its present type. Its value is converted where that loses
    /// nothing, and is the type's empty value otherwise.
    static VariableScope retype(VariableScope scope, const QString &name, VarType type);

    /// Gives \a name the value that \a text stands for by the variable's type. Refused when it stands for
    /// none, and for lists and tables, which a text does not stand for.
    static Result<VariableScope> setText(VariableScope scope, const QString &name, const QString &text);

private:
    static Result<QString> newName(const VariableScope &scope, const QString &text);
};
} // namespace StepHost
