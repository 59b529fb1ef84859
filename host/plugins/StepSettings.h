#pragma once

#include <QMetaProperty>
#include <QVector>

class Operation;

namespace StepHost
{
/// The settings of a step class: the properties that it and the classes between have beside Operation's own, in the
/// order of declaration. All properties of a class that does not derive from Operation.
QVector<QMetaProperty> settingsOf(const QMetaObject &metaObject);

/// The settings of the class of \a step.
QVector<QMetaProperty> settingsOf(const Operation &step);
} // namespace StepHost
