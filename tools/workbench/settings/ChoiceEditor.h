#pragma once

#include "PropertyEditor.h"

class QComboBox;

namespace Workbench
{
/// Edits an `int` that is the index of one of several choices.
class ChoiceEditor : public PropertyEditor
{
    Q_OBJECT

public:
    explicit ChoiceEditor(const QStringList &choices, QWidget *parent = nullptr);

    QVariant value() const override;
    void setValue(const QVariant &value) override;

private:
    QComboBox *m_combo;
    int m_value = 0;
};
} // namespace Workbench
