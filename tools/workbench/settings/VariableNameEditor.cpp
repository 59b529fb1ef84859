#include "VariableNameEditor.h"

#include "UndoRelay.h"
#include "host/values/VariableName.h"
#include "tools/workbench/look/ShownTextDelegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace Workbench
{
VariableNameEditor::VariableNameEditor(StepHost::VariableKind kind, QWidget *parent)
    : PropertyEditor(parent), m_kind(kind), m_combo(new QComboBox)
{
    m_combo->setEditable(true);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_combo->setMinimumContentsLength(8);
    m_combo->completer()->setCompletionMode(QCompleter::PopupCompletion);
    m_combo->completer()->popup()->setItemDelegate(new ShownTextDelegate(this));
    m_combo->setItemDelegate(new ShownTextDelegate(this));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_combo);
    setFocusProxy(m_combo);
    UndoRelay::install(m_combo->lineEdit());
    connect(m_combo, &QComboBox::editTextChanged, this, &VariableNameEditor::edited);
}

QVariant VariableNameEditor::value() const
{
    return m_combo->currentText();
}

void VariableNameEditor::setValue(const QVariant &value)
{
    if (m_combo->currentText() == value.toString())
        return;
    const QSignalBlocker blocker(m_combo);
    m_combo->setEditText(value.toString());
}

void VariableNameEditor::setVariables(const VariableScope &variables)
{
    QStringList names;
    const QStringList allNames = variables.names();
    for (const QString &name : allNames) {
        if (StepHost::isOfKind(variables.typeOf(StepHost::referenceTo(name)), m_kind))
            names.append(name);
    }
    QStringList present;
    for (int i = 0; i < m_combo->count(); ++i)
        present.append(m_combo->itemText(i));
    if (names == present)
        return;
    const QSignalBlocker blocker(m_combo);
    const QString text = m_combo->currentText();
    m_combo->clear();
    m_combo->addItems(names);
    m_combo->setEditText(text);
}

QString VariableNameEditor::hint() const
{
    return hintOfUnseen(m_combo->currentText());
}
} // namespace Workbench
