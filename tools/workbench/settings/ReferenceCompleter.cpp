#include "ReferenceCompleter.h"

#include "host/scripts/References.h"
#include "host/values/VariableName.h"
#include "tools/workbench/look/ShownTextDelegate.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QStringListModel>

namespace Workbench
{
ReferenceCompleter::ReferenceCompleter(QLineEdit *edit)
    : QCompleter(edit), m_model(new QStringListModel(this))
{
    setModel(m_model);
    setCaseSensitivity(Qt::CaseInsensitive);
    setCompletionMode(QCompleter::PopupCompletion);
    edit->setCompleter(this);
    popup()->setItemDelegate(new ShownTextDelegate(this));
    connect(edit, &QLineEdit::textEdited, this, &ReferenceCompleter::update);
}

void ReferenceCompleter::setVariables(const VariableScope &variables, const QVector<VarType> &types)
{
    m_names.clear();
    m_members.clear();
    const QStringList allNames = variables.names();
    for (const QString &name : allNames) {
        const QString reference = StepHost::referenceTo(name);
        const VarType type = variables.typeOf(reference);
        const QStringList members = StepHost::memberReferences(reference, type);
        if (types.isEmpty() || types.contains(type))
            m_names.append(reference);
        else if (!members.isEmpty())
            m_names.append(reference + QLatin1Char('.'));
        m_members.append(members);
    }
    m_model->setStringList(m_names);
}

void ReferenceCompleter::update(const QString &text)
{
    const QStringList &offered = text.contains(QLatin1Char('.')) ? m_members : m_names;
    if (m_model->stringList() != offered)
        m_model->setStringList(offered);
}
} // namespace Workbench
