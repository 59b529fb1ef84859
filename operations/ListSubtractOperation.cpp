#include "ListSubtractOperation.h"

#include "ChainedText.h"
#include "ElementScan.h"
#include "ListFunctions.h"

#include <QDataStream>

ListSubtractOperation::ListSubtractOperation(QObject *parent) : Operation(parent) { }

ListSubtractOperation::ListSubtractOperation(ListSubtractOperation *other, QObject *parent)
    : Operation(nullptr)
{
    m_listA = other->m_listA;
    m_listB = other->m_listB;
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListSubtractOperation::~ListSubtractOperation() = default;

QString ListSubtractOperation::listA() const
{
    return m_listA;
}

void ListSubtractOperation::setListA(const QString &listA)
{
    m_listA = listA;
}

QString ListSubtractOperation::listB() const
{
    return m_listB;
}

void ListSubtractOperation::setListB(const QString &listB)
{
    m_listB = listB;
}

QString ListSubtractOperation::targetVar() const
{
    return m_targetVar;
}

void ListSubtractOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListSubtractOperation::root() const
{
    return tr("列表");
}

QString ListSubtractOperation::typeId() const
{
    return QLatin1String("list.subtract");
}

QString ListSubtractOperation::typeName() const
{
    return tr("列表差集");
}

QString ListSubtractOperation::icon() const
{
    return QLatin1String(":/images/list_subtract.svg");
}

void ListSubtractOperation::doOperation() const
{
    ListPair lists;
    if (!readListPair(m_variableScope, m_listA, m_listB, m_targetVar, "[ListSubtract] 目标变量", lists))
        return;
    ElementScan unwanted(lists.b);
    QVariantList rest;
    for (const QVariant &element : qAsConst(lists.a)) {
        if (!unwanted.contains(element))
            rest.append(element);
    }
    writeListVariable(m_variableScope, m_targetVar, rest);
}

void ListSubtractOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_listA << m_listB << m_targetVar;
}

void ListSubtractOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_listA >> m_listB >> m_targetVar;
}

QString ListSubtractOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 - %3 -> %4"))
        .arg(typeName())
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

QString ListSubtractOperation::description() const
{
    return ChainedText(tr("取列表 %1 减去 %2 写入 %3"))
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

Operation *ListSubtractOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListSubtractOperation(const_cast<ListSubtractOperation *>(this), parent);
}
