#include "TextEditor.h"

#include "UndoRelay.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace Workbench
{
TextEditor::TextEditor(int type, QWidget *parent)
    : PropertyEditor(parent), m_type(type), m_edit(new QLineEdit)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    setFocusProxy(m_edit);
    UndoRelay::install(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &TextEditor::edited);
}

QLineEdit *TextEditor::lineEdit() const
{
    return m_edit;
}

QVariant TextEditor::value() const
{
    QVariant value = m_edit->text();
    return value.convert(m_type) ? value : QVariant();
}

void TextEditor::setValue(const QVariant &shown)
{
    QVariant back = shown.toString();
    m_edit->setReadOnly(!back.convert(m_type) || back != shown);
    // Another text for the same value, such as "0." on the way to "0.5", stays as it was typed.
    if (m_wasSet && value() == shown)
        return;
    m_wasSet = true;
    const QSignalBlocker blocker(m_edit);
    m_edit->setText(shown.toString());
}

QString TextEditor::hint() const
{
    if (m_edit->isReadOnly())
        return tr("A value of this type cannot be edited as text.");
    if (!value().isValid())
        return tr("This is no value of the type “%1”; the setting keeps its old one.")
            .arg(QLatin1String(QMetaType::typeName(m_type)));
    return hintOfUnseen(m_edit->text());
}
} // namespace Workbench
