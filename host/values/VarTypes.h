#pragma once

#include "hostapi/VariableScope.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

/// The types of variables: the words for them, and the values that they have.
namespace StepHost
{
/// The word for \a type in scripts and in class info: "int", "double", "string", "bool", "list", "table", and
/// "undeclared" for VarType::Undeclared. Empty when \a type is none of these.
QString varTypeName(VarType type);

/// The type that \a name is the word for; nothing when it is no such word.
std::optional<VarType> varTypeFromName(const QString &name);

/// The six types that a variable can be declared with.
QVector<VarType> declarableTypes();

/// The words for them.
QStringList declarableTypeNames();

/// The empty value of \a type, as VariableScope::declare() gives it; invalid for VarType::Undeclared.
QVariant emptyValueOf(VarType type);

/// The type that a new variable gets from \a value, as VariableScope::set() gives it.
VarType typeOfValue(const QVariant &value);

/// Whether \a value has the shape that a variable of type \a type should have. Every value has the shape
/// of VarType::Undeclared.
bool hasShapeOf(const QVariant &value, VarType type);

/// What JSON a variable of type \a type takes, for a message: "an integer", "an array" and so on.
QString expectedForm(VarType type);
} // namespace StepHost
