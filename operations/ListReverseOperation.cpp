#include "ListReverseOperation.h"

#include "ChainedText.h"
#include "ListFunctions.h"

#include <QDataStream>

ListReverseOperation::ListReverseOperation(QObject *parent) : Operation(parent) { }

ListReverseOperation::ListReverseOperation(ListReverseOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListReverseOperation::~ListReverseOperation() = default;

QString ListReverseOperation::targetVar() const
{
    return m_targetVar;
}

void ListReverseOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListReverseOperation::root() const
{
    return tr("列表");
}

QString ListReverseOperation::typeId() const
{
    return QLatin1String("list.reverse");
}

QString ListReverseOperation::typeName() const
{
    return tr("列表反转");
}

QString ListReverseOperation::icon() const
{
    return QLatin1String(":/images/list_reverse.svg");
}

void ListReverseOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    reverseList(list);
    writeListVariable(m_variableScope, m_targetVar, list);
}

void ListReverseOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar;
}

void ListReverseOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar;
}

QString ListReverseOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2")).arg(typeName()).arg(displayVarName(m_targetVar)).toString();
}

QString ListReverseOperation::description() const
{
    return ChainedText(tr("反转列表 %1")).arg(displayVarName(m_targetVar)).toString();
}

Operation *ListReverseOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListReverseOperation(const_cast<ListReverseOperation *>(this), parent);
}
