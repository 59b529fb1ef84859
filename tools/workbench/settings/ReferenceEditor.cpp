#include "ReferenceEditor.h"

#include "ReferenceCompleter.h"

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
    m_completer->setVariables(variables, m_types);
}
} // namespace Workbench
