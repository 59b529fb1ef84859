#include "UnusualSteps.h"

#include "hostapi/VariableScope.h"

#include <QDataStream>
#include <QDebug>
#include <QStringList>

Operation *NoteStep::clone(QObject *parent) const
{
    auto *copy = new NoteStep(parent);
    copy->m_baseState = m_baseState;
    return copy;
}

void WatchStep::doOperation() const
{
    if (m_variableScope && !watched.isEmpty() && m_variableScope->typeOf(watched) == VarType::Undeclared)
        qWarning().noquote() << "[Watch]" << watched << "is not there";
}

void WatchStep::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << watched;
}

void WatchStep::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> watched;
}

Operation *WatchStep::clone(QObject *parent) const
{
    auto *copy = new WatchStep;
    copy->setParent(parent);
    copy->watched = watched;
    copy->m_baseState = m_baseState;
    return copy;
}

void FillStep::doOperation() const
{
    if (!m_variableScope)
        return;
    const QStringList list = names.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &name : list) {
        if (m_variableScope->typeOf(name) == VarType::String
            || m_variableScope->typeOf(name) == VarType::Undeclared)
            m_variableScope->set(name, QString::number(deep ? depth : breadth));
    }
}

void FillStep::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << quint8(1) << names << deep << qint32(depth) << qint32(breadth);
}

void FillStep::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    quint8 version = 0;
    qint32 first = 0;
    qint32 second = 0;
    stream >> version >> names >> deep >> first >> second;
    depth = first;
    breadth = second;
    if (version != 1)
        stream.setStatus(QDataStream::ReadCorruptData);
}

Operation *FillStep::clone(QObject *parent) const
{
    auto *copy = new FillStep;
    copy->setParent(parent);
    copy->names = names;
    copy->deep = deep;
    copy->depth = depth;
    copy->breadth = breadth;
    copy->m_baseState = m_baseState;
    return copy;
}

void RangeStep::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << qint32(range.from) << qint32(range.to);
}

void RangeStep::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    qint32 from = 0;
    qint32 to = 0;
    stream >> from >> to;
    range = {from, to};
}

Operation *RangeStep::clone(QObject *parent) const
{
    auto *copy = new RangeStep;
    copy->setParent(parent);
    copy->range = range;
    copy->m_baseState = m_baseState;
    return copy;
}
