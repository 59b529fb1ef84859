#pragma once

#include "hostapi/VariableScope.h"

#include <QVariant>
#include <QWidget>

namespace StepHost
{
struct SettingSchema;
}

namespace Workbench
{
/// The editor of one setting of a step.
class PropertyEditor : public QWidget
{
    Q_OBJECT

public:
    explicit PropertyEditor(QWidget *parent = nullptr);

    /// The value as edited, of the property's type; invalid while what is typed is no value of that type.
    virtual QVariant value() const = 0;

    /// Shows \a value. Does not emit edited().
    virtual void setValue(const QVariant &value) = 0;

    /// Offers the variables of \a variables where the editor offers any.
    virtual void setVariables(const VariableScope &variables);

    /// What the user should know about what is typed, beside what StepHost::StepProblems tells of the value; empty when
    /// there is nothing to say.
    virtual QString hint() const;

signals:
    /// The user changed the value.
    void edited();

protected:
    /// Says of \a text, which is being edited as it is, what cannot be seen of it; empty when all of it can.
    static QString hintOfUnseen(const QString &text);
};

/// A new editor of the kind that \a setting asks for, which shows \a value. It belongs to \a parent.
PropertyEditor *createPropertyEditor(const StepHost::SettingSchema &setting, const QVariant &value,
                                     QWidget *parent);
} // namespace Workbench
