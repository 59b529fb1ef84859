#pragma once

#include "PropertyEditor.h"

class QCheckBox;

namespace Workbench
{
/// Edits a `bool`.
class BoolEditor : public PropertyEditor
{
    Q_OBJECT

public:
    explicit BoolEditor(QWidget *parent = nullptr);

    QVariant value() const override;
    void setValue(const QVariant &value) override;

private:
    void showState();

    QCheckBox *m_box;
};
} // namespace Workbench
