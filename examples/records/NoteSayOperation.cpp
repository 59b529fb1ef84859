#include "NoteSayOperation.h"

#include <hostapi/VariableScope.h>
#include <stepkit/Records.h>
#include <stepkit/VariableNames.h>
#include <stepkit/WarningLine.h>

#include <QDataStream>

NoteSayOperation::NoteSayOperation(QObject *parent) : Operation(parent) { }

QString NoteSayOperation::root() const
{
    return tr("Notes");
}

QString NoteSayOperation::typeId() const
{
    return QLatin1String("note.say");
}

QString NoteSayOperation::typeName() const
{
    return tr("Say");
}

QString NoteSayOperation::icon() const
{
    return QString();
}

void NoteSayOperation::doOperation() const
{
    constexpr int most = 1000;
    if (!m_variableScope || m_targetVar.isEmpty())
        return;
    if (m_variableScope->typeOf(m_targetVar) != VarType::String) {
        warnSkipped("[NoteSay] the variable", m_targetVar, "is no text variable, skipped");
        return;
    }
    m_variableScope->set(m_targetVar, m_text.repeated(qBound(0, m_times, most)));
}

#if RELEASE == 1
void NoteSayOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    writeRecordVersion(stream, 1);
    stream << m_text << m_targetVar;
}

void NoteSayOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    readRecordVersion(stream, 1);
    stream >> m_text >> m_targetVar;
}
#else
void NoteSayOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    writeRecordVersion(stream, 2);
    stream << m_text << m_targetVar << m_times;
}

void NoteSayOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    const quint32 version = readRecordVersion(stream, 2);
    stream >> m_text >> m_targetVar;
    m_times = 1;
    if (version >= 2)
        stream >> m_times;
}
#endif

QString NoteSayOperation::toString() const
{
    return QStringLiteral("%1: %2 -> %3").arg(typeName(), m_text, displayVarName(m_targetVar));
}

QString NoteSayOperation::description() const
{
    return tr("Write %1 into %2").arg(m_text, displayVarName(m_targetVar));
}

Operation *NoteSayOperation::clone(QObject *parent) const
{
    auto *copy = new NoteSayOperation(parent);
    copy->m_baseState = m_baseState;
    copy->m_text = m_text;
    copy->m_targetVar = m_targetVar;
    copy->m_times = m_times;
    return copy;
}
