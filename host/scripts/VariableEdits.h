#pragma once

#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>
#include <QVector>

namespace StepHost
{
/// Changes of a scope's variables as a user makes them. Each gives the changed scope, in which the other
/// variables and their order are as before; the scope that it is given stays as it is.
///
/// Members that can be refused return false, leave the scope alone and set \a error to a text for the user.
class VariableEdits
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::VariableEdits)

public:
    /// The six types that a variable can be declared with, in the order in which they are offered.
    static QVector<VarType> types();

    /// A name for a new variable that \a scope does not have yet: \a pattern with the lowest such number for "%1".
    static QString freeName(const VariableScope &scope, const QString &pattern);

    /// Declares \a name with \a type and \a type's empty value. Refused when \a name is no name or taken.
    static bool add(VariableScope &scope, const QString &name, VarType type, QString &error);

    /// Gives the variable \a from the name \a to. Refused when \a to is no name or taken.
    static bool rename(VariableScope &scope, const QString &from, const QString &to, QString &error);

    /// Declares \a name with \a type instead of its present type. Its value is converted where that loses
    /// nothing, and is the type's empty value otherwise.
    static void retype(VariableScope &scope, const QString &name, VarType type);

    /// Gives \a name the value that \a text stands for by the variable's type. Refused when it stands for
    /// none, and for lists and tables, which a text does not stand for.
    static bool setText(VariableScope &scope, const QString &name, const QString &text, QString &error);

private:
    static bool checkNewName(const VariableScope &scope, const QString &name, QString &error);
};
} // namespace StepHost
