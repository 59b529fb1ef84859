#include "ListClearOperation.h"

#include "ChainedText.h"
#include "ListFunctions.h"

#include <QDataStream>

ListClearOperation::ListClearOperation(QObject *parent) : Operation(parent) { }

ListClearOperation::ListClearOperation(ListClearOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListClearOperation::~ListClearOperation() = default;

QString ListClearOperation::targetVar() const
{
    return m_targetVar;
}

void ListClearOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListClearOperation::root() const
{
    return tr("列表");
}

QString ListClearOperation::typeId() const
{
    return QLatin1String("list.clear");
}

QString ListClearOperation::typeName() const
{
    return tr("列表清空");
}

QString ListClearOperation::icon() const
{
    return QLatin1String(":/images/list_clear.svg");
}

void ListClearOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    writeListVariable(m_variableScope, m_targetVar, QVariantList());
}

void ListClearOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar;
}

void ListClearOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar;
}

QString ListClearOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2")).arg(typeName()).arg(displayVarName(m_targetVar)).toString();
}

QString ListClearOperation::description() const
{
    return ChainedText(tr("清空列表 %1")).arg(displayVarName(m_targetVar)).toString();
}

Operation *ListClearOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListClearOperation(const_cast<ListClearOperation *>(this), parent);
}
