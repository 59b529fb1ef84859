#pragma once

/// \file
/// A value as a variable of a declared type takes it, or that the type refuses it.

#include "hostapi/VariableScope.h"

#include <QVariant>

/// \a value as the destination type \a type takes it. \a ok, which may be null, tells whether the type
/// accepts it; a refused value gives the type's empty value.
///
/// A null value and an empty text are always accepted as the type's empty value. A destination type out
/// of the six known ones accepts every other value as it is.
QVariant convertToVarType(const QVariant &value, VarType type, bool *ok);

/// Whether \a value is a list or a value that Qt makes one of, such as a list of texts.
bool convertsToList(const QVariant &value);

/// The elements of \a value, sharing its data; none when it does not convert to a list.
QVariantList toListValue(const QVariant &value);
