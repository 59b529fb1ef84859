#include "ListAddOperation.h"

#include "ChainedText.h"
#include "ListFunctions.h"

#include <QDataStream>

ListAddOperation::ListAddOperation(QObject *parent) : Operation(parent) { }

ListAddOperation::ListAddOperation(ListAddOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_value = other->m_value;
    m_index = other->m_index;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListAddOperation::~ListAddOperation() = default;

QString ListAddOperation::targetVar() const
{
    return m_targetVar;
}

void ListAddOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString ListAddOperation::value() const
{
    return m_value;
}

void ListAddOperation::setValue(const QString &value)
{
    m_value = value;
}

QString ListAddOperation::index() const
{
    return m_index;
}

void ListAddOperation::setIndex(const QString &index)
{
    m_index = index;
}

QString ListAddOperation::root() const
{
    return tr("列表");
}

QString ListAddOperation::typeId() const
{
    return QLatin1String("list.add");
}

QString ListAddOperation::typeName() const
{
    return tr("列表添加项");
}

QString ListAddOperation::icon() const
{
    return QLatin1String(":/images/list_add.svg");
}

void ListAddOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    const QVariant item = resolveValueRef(parseValueRef(m_value), m_variableScope);
    int position = list.size();
    if (!m_index.trimmed().isEmpty()) {
        if (!parseIndexText(m_index, position)) {
            warnSkipped("[ListAdd] 插入位置非法：", m_index.trimmed());
            return;
        }
        position = qBound(0, position, list.size());
    }
    list.insert(position, item);
    writeListVariable(m_variableScope, m_targetVar, list);
}

void ListAddOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar << m_value << m_index;
}

void ListAddOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar >> m_value >> m_index;
}

QString ListAddOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 <- %3"))
        .arg(typeName())
        .arg(displayVarName(m_targetVar))
        .arg(m_value)
        .toString();
}

QString ListAddOperation::description() const
{
    return ChainedText(tr("向列表 %1 添加项 %2")).arg(displayVarName(m_targetVar)).arg(m_value).toString();
}

Operation *ListAddOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListAddOperation(const_cast<ListAddOperation *>(this), parent);
}
