#include "ListMergeOperation.h"

#include "ChainedText.h"
#include "ListFunctions.h"

#include <QDataStream>

ListMergeOperation::ListMergeOperation(QObject *parent) : Operation(parent) { }

ListMergeOperation::ListMergeOperation(ListMergeOperation *other, QObject *parent) : Operation(nullptr)
{
    m_listA = other->m_listA;
    m_listB = other->m_listB;
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListMergeOperation::~ListMergeOperation() = default;

QString ListMergeOperation::listA() const
{
    return m_listA;
}

void ListMergeOperation::setListA(const QString &listA)
{
    m_listA = listA;
}

QString ListMergeOperation::listB() const
{
    return m_listB;
}

void ListMergeOperation::setListB(const QString &listB)
{
    m_listB = listB;
}

QString ListMergeOperation::targetVar() const
{
    return m_targetVar;
}

void ListMergeOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListMergeOperation::root() const
{
    return tr("列表");
}

QString ListMergeOperation::typeId() const
{
    return QLatin1String("list.merge");
}

QString ListMergeOperation::typeName() const
{
    return tr("列表合并");
}

QString ListMergeOperation::icon() const
{
    return QLatin1String(":/images/list_merge.svg");
}

void ListMergeOperation::doOperation() const
{
    ListPair lists;
    if (!readListPair(m_variableScope, m_listA, m_listB, m_targetVar, "[ListMerge] 目标变量", lists))
        return;
    writeListVariable(m_variableScope, m_targetVar, lists.a + lists.b);
}

void ListMergeOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_listA << m_listB << m_targetVar;
}

void ListMergeOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_listA >> m_listB >> m_targetVar;
}

QString ListMergeOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 + %3 -> %4"))
        .arg(typeName())
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

QString ListMergeOperation::description() const
{
    return ChainedText(tr("合并列表 %1 与 %2 写入 %3"))
        .arg(displayVarName(m_listA))
        .arg(displayVarName(m_listB))
        .arg(displayVarName(m_targetVar))
        .toString();
}

Operation *ListMergeOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListMergeOperation(const_cast<ListMergeOperation *>(this), parent);
}
