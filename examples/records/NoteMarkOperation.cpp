#include "NoteMarkOperation.h"

#include <hostapi/VariableScope.h>
#include <stepkit/Records.h>
#include <stepkit/VariableNames.h>
#include <stepkit/WarningLine.h>

#include <QDataStream>
#include <QVariant>

NoteMarkOperation::NoteMarkOperation(QObject *parent) : Operation(parent) { }

QString NoteMarkOperation::newMark()
{
    return QLatin1String("!");
}

QString NoteMarkOperation::root() const
{
    return tr("Notes");
}

QString NoteMarkOperation::typeId() const
{
    return QLatin1String("note.mark");
}

QString NoteMarkOperation::typeName() const
{
    return tr("Mark");
}

QString NoteMarkOperation::icon() const
{
    return QString();
}

void NoteMarkOperation::doOperation() const
{
    if (!m_variableScope || m_targetVar.isEmpty())
        return;
    if (m_variableScope->typeOf(m_targetVar) != VarType::String) {
        warnSkipped("[NoteMark] the variable", m_targetVar, "is no text variable, skipped");
        return;
    }
    m_variableScope->set(m_targetVar, m_variableScope->get(m_targetVar).toString() + m_mark);
}

#if RELEASE == 1
void NoteMarkOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar;
}

void NoteMarkOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar;
}
#else
void NoteMarkOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar << m_mark;
}

void NoteMarkOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar;
    m_mark = newMark();
    if (hasRecordTail(stream))
        stream >> m_mark;
}
#endif

QString NoteMarkOperation::toString() const
{
    return QStringLiteral("%1: %2").arg(typeName(), displayVarName(m_targetVar));
}

QString NoteMarkOperation::description() const
{
    return tr("Put %1 behind %2").arg(m_mark, displayVarName(m_targetVar));
}

Operation *NoteMarkOperation::clone(QObject *parent) const
{
    auto *copy = new NoteMarkOperation(parent);
    copy->m_baseState = m_baseState;
    copy->m_targetVar = m_targetVar;
    copy->m_mark = m_mark;
    return copy;
}
