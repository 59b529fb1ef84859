#include "IntegerEditor.h"

#include "host/scripts/References.h"

#include <QLineEdit>

namespace Workbench
{
IntegerEditor::IntegerEditor(int type, QWidget *parent) : TextEditor(type, parent)
{
    lineEdit()->setPlaceholderText(tr("An integer"));
}

void IntegerEditor::setVariables(const VariableScope &variables)
{
    m_variables = variables;
}

QString IntegerEditor::hint() const
{
    const QString text = lineEdit()->text().trimmed();
    bool isInteger = false;
    text.toInt(&isInteger);
    if (text.isEmpty() || isInteger)
        return TextEditor::hint();
    if (StepHost::isReference(text)) {
        const QString unknown = StepHost::unknownVariable(text, m_variables);
        if (!unknown.isEmpty())
            return tr("There is no variable “%1” yet.").arg(unknown);
        return tr("A reference. Not every step looks one up here.");
    }
    return tr("Not an integer. The step may skip its work.");
}
} // namespace Workbench
