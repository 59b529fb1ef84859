#pragma once

#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"

#include <QMetaProperty>
#include <QVariant>

#include <memory>
#include <vector>

using StepPointer = std::unique_ptr<Operation>;

/// Makes the root object of the list plug-in, which is linked into this program.
extern "C" QObject *qt_plugin_instance();

/// One new step of each kind, in the order in which the plug-in hands them out.
inline std::vector<StepPointer> newStepOfEachKind()
{
    std::vector<StepPointer> steps;
    const QList<Operation *> prototypes =
        qobject_cast<IOperationPlugin *>(qt_plugin_instance())->createPrototypes();
    for (Operation *prototype : prototypes)
        steps.emplace_back(prototype);
    return steps;
}

/// A new step of the kind \a typeId with \a settings; null for an unknown kind or setting.
inline StepPointer newStep(const QString &typeId, const QVariantMap &settings = {})
{
    for (StepPointer &step : newStepOfEachKind()) {
        if (step->typeId() != typeId)
            continue;
        for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
            if (!step->setProperty(it.key().toUtf8().constData(), it.value()))
                return nullptr;
        }
        return std::move(step);
    }
    return nullptr;
}

/// The settings of \a step, by property name.
inline QVariantMap settingsOf(const Operation &step)
{
    QVariantMap settings;
    const QMetaObject *meta = step.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        settings.insert(meta->property(i).name(), meta->property(i).read(&step));
    return settings;
}
