#include "ReferenceEditor.h"

#include "ReferenceCompleter.h"
#include "host/scripts/References.h"

#include <QLineEdit>

namespace Workbench
{
ReferenceEditor::ReferenceEditor(const QVector<VarType> &types, QWidget *parent)
    : TextEditor(QMetaType::QString, parent), m_completer(new ReferenceCompleter(lineEdit())), m_types(types)
{
    lineEdit()->setPlaceholderText(tr("A value, or $variable"));
}

void ReferenceEditor::setVariables(const VariableScope &variables)
{
    m_variables = variables;
    m_completer->setVariables(variables, m_types);
}

QString ReferenceEditor::hint() const
{
    const QString unknown = StepHost::unknownVariable(lineEdit()->text(), m_variables);
    return unknown.isEmpty() ? TextEditor::hint() : tr("There is no variable “%1” yet.").arg(unknown);
}
} // namespace Workbench
