#include "StepSettings.h"

#include "hostapi/Operation.h"

namespace StepHost
{
QVector<QMetaProperty> settingsOf(const QMetaObject &metaObject)
{
    const bool isStep = metaObject.inherits(&Operation::staticMetaObject);
    QVector<QMetaProperty> settings;
    for (int i = isStep ? Operation::staticMetaObject.propertyCount() : 0; i < metaObject.propertyCount();
         ++i)
        settings.append(metaObject.property(i));
    return settings;
}

QVector<QMetaProperty> settingsOf(const Operation &step)
{
    return settingsOf(*step.metaObject());
}
} // namespace StepHost
