#pragma once

#include "PropertyEditor.h"
#include "host/plugins/EditorSchema.h"

class QComboBox;

namespace Workbench
{
/// Edits the name of a variable: chosen from those of the kind asked for, or typed freely.
class VariableNameEditor : public PropertyEditor
{
    Q_OBJECT

public:
    explicit VariableNameEditor(StepHost::VariableKind kind, QWidget *parent = nullptr);

    QVariant value() const override;
    void setValue(const QVariant &value) override;
    void setVariables(const VariableScope &variables) override;
    QString hint() const override;

private:
    StepHost::VariableKind m_kind;
    QComboBox *m_combo;
};
} // namespace Workbench
