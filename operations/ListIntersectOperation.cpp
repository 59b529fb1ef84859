#include "ListIntersectOperation.h"

#include "ChainedText.h"
#include "ElementScan.h"
#include "ListFunctions.h"

#include <QDataStream>

ListIntersectOperation::ListIntersectOperation(QObject *parent) : Operation(parent) { }

ListIntersectOperation::ListIntersectOperation(ListIntersectOperation *other, QObject *parent)
    : Operation(nullptr)
{
    m_listA = other->m_listA;
    m_listB = other->m_listB;
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListIntersectOperation::~ListIntersectOperation() = default;

QString ListIntersectOperation::listA() const
{
    return m_listA;
}

void ListIntersectOperation::setListA(const QString &listA)
{
    m_listA = listA;
}

QString ListIntersectOperation::listB() const
{
    return m_listB;
}

void ListIntersectOperation::setListB(const QString &listB)
{
    m_listB = listB;
}

QString ListIntersectOperation::targetVar() const
{
    return m_targetVar;
}

void ListIntersectOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListIntersectOperation::root() const
{
    return tr("列表");
}

QString ListIntersectOperation::typeId() const
{
    return QLatin1String("list.intersect");
}

QString ListIntersectOperation::typeName() const
{
    return tr("列表交集");
}

QString ListIntersectOperation::icon() const
{
    return QLatin1String(":/images/list_intersect.svg");
}

void ListIntersectOperation::doOperation() const
{
    ListPair lists;
    if (!readListPair(m_variableScope, m_listA, m_listB, m_targetVar, "[ListIntersect] 目标变量", lists))
        return;
    ElementScan wanted(lists.b);
    ElementScan common;
    for (const QVariant &element : qAsConst(lists.a)) {
        if (wanted.contains(element) && !common.contains(element))
            common.append(element);
    }
    writeListVariable(m_variableScope, m_targetVar, common.elements());
}

void ListIntersectOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_listA << m_listB << m_targetVar;
}

void ListIntersectOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_listA >> m_listB >> m_targetVar;
}

QString ListIntersectOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 ∩ %3 -> %4"))
        .arg(typeName())
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

QString ListIntersectOperation::description() const
{
    return ChainedText(tr("取列表 %1 与 %2 的交集写入 %3"))
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

Operation *ListIntersectOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListIntersectOperation(const_cast<ListIntersectOperation *>(this), parent);
}
