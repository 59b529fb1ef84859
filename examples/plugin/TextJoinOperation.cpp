#include "TextJoinOperation.h"

#include <hostapi/VariableScope.h>
#include <stepkit/Records.h>
#include <stepkit/VariableNames.h>
#include <stepkit/WarningLine.h>

#include <QDataStream>
#include <QVariant>

TextJoinOperation::TextJoinOperation(QObject *parent) : Operation(parent) { }

QString TextJoinOperation::sourceVar() const
{
    return m_sourceVar;
}

void TextJoinOperation::setSourceVar(const QString &sourceVar)
{
    m_sourceVar = sourceVar;
}

QString TextJoinOperation::separator() const
{
    return m_separator;
}

void TextJoinOperation::setSeparator(const QString &separator)
{
    m_separator = separator;
}

bool TextJoinOperation::skipEmpty() const
{
    return m_skipEmpty;
}

void TextJoinOperation::setSkipEmpty(bool skipEmpty)
{
    m_skipEmpty = skipEmpty;
}

QString TextJoinOperation::targetVar() const
{
    return m_targetVar;
}

void TextJoinOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString TextJoinOperation::root() const
{
    return tr("文本");
}

QString TextJoinOperation::typeId() const
{
    return QLatin1String("text.join");
}

QString TextJoinOperation::typeName() const
{
    return tr("文本拼接");
}

QString TextJoinOperation::icon() const
{
    return QLatin1String(":/images/text_join.svg");
}

void TextJoinOperation::doOperation() const
{
    if (!m_variableScope || m_sourceVar.isEmpty())
        return;
    if (m_variableScope->typeOf(m_sourceVar) != VarType::List) {
        warnSkipped("[TextJoin] 变量", m_sourceVar, "不是列表类型，已跳过");
        return;
    }
    if (m_variableScope->typeOf(m_targetVar) != VarType::String) {
        warnSkipped("[TextJoin] 目标变量", m_targetVar, "不是文本类型，已跳过");
        return;
    }
    QStringList parts;
    const QVariantList items = m_variableScope->get(m_sourceVar).toList();
    for (const QVariant &item : items) {
        if (!item.canConvert<QString>()) {
            warnSkipped("[TextJoin] 列表", m_sourceVar, "中有不能转为文本的项，已跳过");
            return;
        }
        const QString part = item.toString();
        if (!m_skipEmpty || !part.isEmpty())
            parts.append(part);
    }
    m_variableScope->set(m_targetVar, parts.join(m_separator));
}

void TextJoinOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    writeRecordVersion(stream, 1);
    stream << m_sourceVar << m_separator << m_skipEmpty << m_targetVar;
}

void TextJoinOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    readRecordVersion(stream, 1);
    stream >> m_sourceVar >> m_separator >> m_skipEmpty >> m_targetVar;
}

QString TextJoinOperation::toString() const
{
    return QStringLiteral("%1: %2 -> %3")
        .arg(typeName(), displayVarName(m_sourceVar), displayVarName(m_targetVar));
}

QString TextJoinOperation::description() const
{
    return tr("用“%1”连接列表 %2 的各项，写入 %3")
        .arg(m_separator, displayVarName(m_sourceVar), displayVarName(m_targetVar));
}

Operation *TextJoinOperation::clone(QObject *parent) const
{
    auto *copy = new TextJoinOperation(parent);
    copy->m_baseState = m_baseState;
    copy->m_sourceVar = m_sourceVar;
    copy->m_separator = m_separator;
    copy->m_skipEmpty = m_skipEmpty;
    copy->m_targetVar = m_targetVar;
    return copy;
}
