#include "ReferenceCompleter.h"

#include "host/values/VariableName.h"

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
        const bool hasMembers = type == VarType::List || type == VarType::Table;
        if (types.isEmpty() || types.contains(type))
            m_names.append(reference);
        if (!hasMembers)
            continue;
        if (!m_names.contains(reference))
            m_names.append(reference + QLatin1Char('.'));
        m_members.append(reference + QLatin1String(".Count"));
        m_members.append(reference + QLatin1String(".Rows"));
        if (type == VarType::Table)
            m_members.append(reference + QLatin1String(".Columns"));
        m_members.append(reference + QLatin1String(".Items"));
    }
    m_model->setStringList(m_names);
}

void ReferenceCompleter::update(const QString &text)
{
    const QStringList &offered = text.contains(QLatin1Char('.')) ? m_members : m_names;
    if (m_model->stringList() != offered)
        m_model->setStringList(offered);
}

bool ReferenceCompleter::isReference(const QString &text)
{
    return text.size() > 1 && StepHost::hasMark(text);
}

QString ReferenceCompleter::unknownVariable(const QString &text, const VariableScope &variables)
{
    if (!isReference(text))
        return QString();
    QString name = StepHost::withoutMark(text);
    const int dot = name.indexOf(QLatin1Char('.'));
    if (dot > 0)
        name.truncate(dot);
    // As the steps do, the name is handed to the scope as it stands.
    return variables.contains(name) ? QString() : name;
}
} // namespace Workbench
