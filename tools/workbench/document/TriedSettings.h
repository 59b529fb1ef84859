#pragma once

#include "host/running/StepTrial.h"
#include "hostapi/Operation.h"

#include <QObject>
#include <QPointer>
#include <QVariant>

#include <deque>

namespace Workbench
{
class ScriptModel;

/// Settings that the user changes, one after the other: each is tried on a copy of its step, in a process of its own, before
/// the step gets it.
class TriedSettings : public QObject
{
    Q_OBJECT

public:
    /// For the steps of \a model. Both have to outlive this object.
    TriedSettings(const ScriptModel &model, StepHost::StepTrial &trial);

    /// Lets \a value be tried as the \a property of the step in \a row. Where that takes no longer than usual, the answer is
    /// there at once; else it comes later, and nobody waits.
    void change(int row, const QString &property, const QVariant &value);

signals:
    /// The step in \a row may have \a value as its \a property.
    void passed(int row, const QString &property, const QVariant &value);
    /// The step in \a row keeps the \a property that it has, for \a reason.
    void refused(int row, const QString &property, const QString &reason);
    /// The user should know \a remark about the step.
    void remarked(const QString &remark);

private:
    struct Change
    {
        QPointer<Operation> step; ///< Never changed here.
        QString property;
        QVariant value;
    };

    static bool isSame(const Change &change, const Operation *step, const QString &property);
    void tryNext();
    void take(const StepHost::StepTrial::Answer &answer);
    void tell(int row, const Change &change, const StepHost::StepTrial::Answer &answer);

    const ScriptModel &m_model;
    StepHost::StepTrial &m_trial;
    std::deque<Change> m_changes; ///< The first is being tried.
    QVariantList m_triedWith; ///< The settings that its step had then.
    bool m_isTrying = false;
};
} // namespace Workbench
