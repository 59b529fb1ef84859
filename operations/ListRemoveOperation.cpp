#include "ListRemoveOperation.h"

#include "ChainedText.h"
#include "ElementScan.h"
#include "ListFunctions.h"

#include <QDataStream>

ListRemoveOperation::ListRemoveOperation(QObject *parent) : Operation(parent) { }

ListRemoveOperation::ListRemoveOperation(ListRemoveOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_mode = other->m_mode;
    m_index = other->m_index;
    m_value = other->m_value;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListRemoveOperation::~ListRemoveOperation() = default;

QString ListRemoveOperation::targetVar() const
{
    return m_targetVar;
}

void ListRemoveOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

int ListRemoveOperation::mode() const
{
    return m_mode;
}

void ListRemoveOperation::setMode(int mode)
{
    m_mode = mode;
}

QString ListRemoveOperation::index() const
{
    return m_index;
}

void ListRemoveOperation::setIndex(const QString &index)
{
    m_index = index;
}

QString ListRemoveOperation::value() const
{
    return m_value;
}

void ListRemoveOperation::setValue(const QString &value)
{
    m_value = value;
}

QString ListRemoveOperation::root() const
{
    return tr("列表");
}

QString ListRemoveOperation::typeId() const
{
    return QLatin1String("list.remove");
}

QString ListRemoveOperation::typeName() const
{
    return tr("列表移除项");
}

QString ListRemoveOperation::icon() const
{
    return QLatin1String(":/images/list_remove.svg");
}

void ListRemoveOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    if (m_mode == 0) {
        int position = 0;
        if (!parseIndexText(m_index, position) || position < 0 || position >= list.size()) {
            warnSkipped("[ListRemove] 索引越界：", m_index);
            return;
        }
        list.removeAt(position);
    } else {
        const QVariant item = resolveValueRef(parseValueRef(m_value), m_variableScope);
        const int position = indexOfEqual(list, item);
        if (position < 0) {
            warnSkipped("[ListRemove] 未找到匹配项：", m_value);
            return;
        }
        list.removeAt(position);
    }
    writeListVariable(m_variableScope, m_targetVar, list);
}

void ListRemoveOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar << m_mode << m_index << m_value;
}

void ListRemoveOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar >> m_mode >> m_index >> m_value;
}

QString ListRemoveOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 (mode=%3)"))
        .arg(typeName())
        .arg(displayVarName(m_targetVar))
        .arg(m_mode)
        .toString();
}

QString ListRemoveOperation::description() const
{
    if (m_mode != 0)
        return ChainedText(tr("从列表 %1 按值 %2 移除项"))
            .arg(displayVarName(m_targetVar))
            .arg(m_value)
            .toString();
    return ChainedText(tr("从列表 %1 按索引 %2 移除项"))
        .arg(displayVarName(m_targetVar))
        .arg(m_index)
        .toString();
}

Operation *ListRemoveOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListRemoveOperation(const_cast<ListRemoveOperation *>(this), parent);
}
