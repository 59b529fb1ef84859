#include "ListDedupOperation.h"

#include "ChainedText.h"
#include "ElementScan.h"
#include "ListFunctions.h"

#include <QDataStream>

ListDedupOperation::ListDedupOperation(QObject *parent) : Operation(parent) { }

ListDedupOperation::ListDedupOperation(ListDedupOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListDedupOperation::~ListDedupOperation() = default;

QString ListDedupOperation::targetVar() const
{
    return m_targetVar;
}

void ListDedupOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListDedupOperation::root() const
{
    return tr("列表");
}

QString ListDedupOperation::typeId() const
{
    return QLatin1String("list.dedup");
}

QString ListDedupOperation::typeName() const
{
    return tr("列表去重");
}

QString ListDedupOperation::icon() const
{
    return QLatin1String(":/images/list_dedup.svg");
}

void ListDedupOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    ElementScan kept(list.size());
    for (const QVariant &element : qAsConst(list)) {
        if (!kept.contains(element))
            kept.append(element);
    }
    writeListVariable(m_variableScope, m_targetVar, kept.elements());
}

void ListDedupOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar;
}

void ListDedupOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar;
}

QString ListDedupOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2")).arg(typeName()).arg(displayVarName(m_targetVar)).toString();
}

QString ListDedupOperation::description() const
{
    return ChainedText(tr("对列表 %1 去重")).arg(displayVarName(m_targetVar)).toString();
}

Operation *ListDedupOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListDedupOperation(const_cast<ListDedupOperation *>(this), parent);
}
