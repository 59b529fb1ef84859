#pragma once

#include "PropertyEditor.h"

class QLineEdit;

namespace Workbench
{
/// Edits a text, or a value of another type through its text.
///
/// A value that would not survive the way through a text and back is shown, but cannot be edited.
class TextEditor : public PropertyEditor
{
    Q_OBJECT

public:
    /// \param type the `QMetaType` id of the property
    explicit TextEditor(int type, QWidget *parent = nullptr);

    QVariant value() const override;
    void setValue(const QVariant &shown) override;
    QString hint() const override;

protected:
    QLineEdit *lineEdit() const;

private:
    int m_type;
    QLineEdit *m_edit;
    bool m_wasSet = false;
};
} // namespace Workbench
