#include "ChoiceEditor.h"

#include "host/values/QuotedText.h"

#include <QComboBox>
#include <QHBoxLayout>

namespace Workbench
{
ChoiceEditor::ChoiceEditor(const QStringList &choices, QWidget *parent)
    : PropertyEditor(parent), m_combo(new QComboBox)
{
    for (const QString &choice : choices)
        m_combo->addItem(StepHost::inOneLine(choice));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_combo);
    setFocusProxy(m_combo);
    connect(m_combo, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        m_value = index;
        emit edited();
    });
}

QVariant ChoiceEditor::value() const
{
    return m_value;
}

void ChoiceEditor::setValue(const QVariant &value)
{
    m_value = value.toInt();
    m_combo->setCurrentIndex(m_value >= 0 && m_value < m_combo->count() ? m_value : -1);
}
} // namespace Workbench
