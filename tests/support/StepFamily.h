#pragma once

#include "operations/ListAddOperation.h"
#include "operations/ListClearOperation.h"
#include "operations/ListDedupOperation.h"
#include "operations/ListGetOperation.h"
#include "operations/ListIntersectOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"
#include "operations/ListReverseOperation.h"
#include "operations/ListSortOperation.h"
#include "operations/ListSubtractOperation.h"

#include <QMetaProperty>
#include <QVariant>

#include <memory>
#include <vector>

using StepPointer = std::unique_ptr<Operation>;

/// One new step of each kind, in the order in which the plug-in hands them out.
inline std::vector<StepPointer> newStepOfEachKind()
{
    std::vector<StepPointer> steps;
    steps.push_back(std::make_unique<ListAddOperation>());
    steps.push_back(std::make_unique<ListRemoveOperation>());
    steps.push_back(std::make_unique<ListGetOperation>());
    steps.push_back(std::make_unique<ListClearOperation>());
    steps.push_back(std::make_unique<ListSortOperation>());
    steps.push_back(std::make_unique<ListMergeOperation>());
    steps.push_back(std::make_unique<ListReverseOperation>());
    steps.push_back(std::make_unique<ListDedupOperation>());
    steps.push_back(std::make_unique<ListIntersectOperation>());
    steps.push_back(std::make_unique<ListSubtractOperation>());
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
