#include "ListSortOperation.h"

#include "ChainedText.h"
#include "ElementSort.h"
#include "ListFunctions.h"

#include <QDataStream>

ListSortOperation::ListSortOperation(QObject *parent) : Operation(parent) { }

ListSortOperation::ListSortOperation(ListSortOperation *other, QObject *parent) : Operation(nullptr)
{
    m_targetVar = other->m_targetVar;
    m_ascending = other->m_ascending;
    m_baseState = other->m_baseState;
    setParent(parent);
}

ListSortOperation::~ListSortOperation() = default;

QString ListSortOperation::targetVar() const
{
    return m_targetVar;
}

void ListSortOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

bool ListSortOperation::ascending() const
{
    return m_ascending;
}

void ListSortOperation::setAscending(bool ascending)
{
    m_ascending = ascending;
}

QString ListSortOperation::root() const
{
    return tr("列表");
}

QString ListSortOperation::typeId() const
{
    return QLatin1String("list.sort");
}

QString ListSortOperation::typeName() const
{
    return tr("列表排序");
}

QString ListSortOperation::icon() const
{
    return QLatin1String(":/images/list_sort.svg");
}

void ListSortOperation::doOperation() const
{
    QVariantList list;
    if (!readListVariable(m_variableScope, m_targetVar, list))
        return;
    sortList(list);
    if (!m_ascending)
        reverseList(list);
    writeListVariable(m_variableScope, m_targetVar, list);
}

void ListSortOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_targetVar << m_ascending;
}

void ListSortOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    stream >> m_targetVar >> m_ascending;
}

QString ListSortOperation::toString() const
{
    return ChainedText(QStringLiteral("%1: %2 (%3)"))
        .arg(typeName())
        .arg(displayVarName(m_targetVar))
        .arg(m_ascending ? QStringLiteral("asc") : QStringLiteral("desc"))
        .toString();
}

QString ListSortOperation::description() const
{
    return ChainedText(tr("对列表 %1 排序（%2）"))
        .arg(displayVarName(m_targetVar))
        .arg(m_ascending ? QStringLiteral("升序") : QStringLiteral("降序"))
        .toString();
}

Operation *ListSortOperation::clone(QObject *parent) const
{
    // The copy constructor only reads its source.
    return new ListSortOperation(const_cast<ListSortOperation *>(this), parent);
}
