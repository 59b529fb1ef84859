#pragma once

#include <QMetaProperty>
#include <QString>
#include <QVariantList>

/// Values that a setting has to be able to hold, by its type.
namespace StepHost
{
/// Values at the edges of the type of \a setting, for each type that Qt can store in a property: texts that differ in
/// what a careless program drops, the smallest and largest numbers, each value of an enumeration, and so on. All of
/// them differ. Empty for a type that is not known here.
QVariantList storableValues(const QMetaProperty &setting);

/// Whether \a a and \a b are the same value of the same type. Two NaNs are, 0 and -0 are not; two dates with the same
/// moment in different time zones are not.
bool isSameValue(const QVariant &a, const QVariant &b);

/// \a value and its type, fit for one line of a message.
QString shownValue(const QVariant &value);
} // namespace StepHost
