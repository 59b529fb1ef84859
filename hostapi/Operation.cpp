#include "Operation.h"

#include <QDataStream>

Operation::Operation(QObject *parent) : QObject(parent) { }

Operation::~Operation() = default;

void Operation::saveOperation(QDataStream &stream) const
{
    stream << m_baseState;
}

void Operation::loadOperation(QDataStream &stream)
{
    stream >> m_baseState;
}

bool Operation::isContainer() const
{
    return false;
}

int Operation::childCount() const
{
    return m_children.size();
}

Operation *Operation::childAt(int index) const
{
    return m_children.value(index, nullptr);
}

QList<Operation *> &Operation::children()
{
    return m_children;
}

Operation *Operation::parentOperation() const
{
    return m_parentOperation;
}

void Operation::setParentOperation(Operation *parent)
{
    m_parentOperation = parent;
}

void Operation::setVariableScope(VariableScope *scope)
{
    m_variableScope = scope;
}
