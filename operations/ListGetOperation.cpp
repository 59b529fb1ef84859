#include "ListGetOperation.h"

#include "ChainedText.h"
#include "ListFunctions.h"

#include <QDataStream>

ListGetOperation::ListGetOperation(QObject *parent) : Operation(parent) { }

ListGetOperation::ListGetOperation(ListGetOperation *other, QObject *parent) : Operation(nullptr)
{
    m_sourceVar = other->m_sourceVar;
    m_index = other->m_index;
    m_targetVar = other->m_targetVar;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListGetOperation::~ListGetOperation() = default;

QString ListGetOperation::sourceVar() const
{
    return m_sourceVar;
}

void ListGetOperation::setSourceVar(const QString &sourceVar)
{
    m_sourceVar = sourceVar;
}

QString ListGetOperation::index() const
{
    return m_index;
}

void ListGetOperation::setIndex(const QString &index)
{
    m_index = index;
}

QString ListGetOperation::targetVar() const
{
    return m_targetVar;
}

void ListGetOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListGetOperation::root() const
{
    return tr("列表");
}

QString ListGetOperation::typeId() const
{
    return QLatin1String("list.get");
}

QString ListGetOperation::typeName() const
{
    return tr("列表取项");
}

QString ListGetOperation::icon() const
{
    return QLatin1String(":/images/list_get.svg");
}

void ListGetOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_sourceVar, list))
        return;
    int position = 0;
    if (!parseIndexText(m_index, position) || position < 0 || position >= list.size()) {
        warnSkipped("[ListGet] 索引越界：", m_index);
        return;
    }
    const QVariant element = list.at(position);
    const VarType targetType = m_variableScope->typeOf(m_targetVar);
    if (targetType == VarType::Undeclared) {
        warnSkipped("[ListGet] 目标变量", m_targetVar, "未声明，已跳过");
        return;
    }
    bool accepted = false;
    const QVariant converted = convertToVarType(element, targetType, &accepted);
    if (!accepted) {
        warnSkipped("[ListGet] 项与目标变量", m_targetVar, "类型不匹配，已跳过");
        return;
    }
    m_variableScope->set(m_targetVar, converted);
}

void ListGetOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_sourceVar << m_index << m_targetVar;
}

void ListGetOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_sourceVar >> m_index >> m_targetVar;
}

QString ListGetOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2[%3] -> %4"))
        .arg(typeName())
        .arg(displayVarName(m_sourceVar))
        .arg(m_index)
        .arg(displayVarName(m_targetVar))
        .toString();
}

QString ListGetOperation::description() const
{
    return ChainedText(tr("取列表 %1 第 %2 项写入 %3"))
        .arg(displayVarName(m_sourceVar))
        .arg(m_index)
        .arg(displayVarName(m_targetVar))
        .toString();
}

Operation *ListGetOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListGetOperation(const_cast<ListGetOperation *>(this), parent);
}
