#include "BoolEditor.h"

#include "tools/workbench/look/FramedCheckBox.h"

#include <QHBoxLayout>

namespace Workbench
{
BoolEditor::BoolEditor(QWidget *parent) : PropertyEditor(parent), m_box(new FramedCheckBox)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_box);
    setFocusProxy(m_box);
    connect(m_box, &QCheckBox::clicked, this, [this] {
        showState();
        emit edited();
    });
    showState();
}

QVariant BoolEditor::value() const
{
    return m_box->isChecked();
}

void BoolEditor::setValue(const QVariant &value)
{
    m_box->setChecked(value.toBool());
    showState();
}

void BoolEditor::showState()
{
    m_box->setText(m_box->isChecked() ? tr("Yes") : tr("No"));
}
} // namespace Workbench
