#include "TextSplitOperation.h"

#include <hostapi/VariableScope.h>
#include <stepkit/Records.h>
#include <stepkit/ValueRef.h>
#include <stepkit/VariableNames.h>
#include <stepkit/WarningLine.h>

#include <QDataStream>
#include <QVariant>

TextSplitOperation::TextSplitOperation(QObject *parent) : Operation(parent) { }

QString TextSplitOperation::value() const
{
    return m_value;
}

void TextSplitOperation::setValue(const QString &value)
{
    m_value = value;
}

int TextSplitOperation::mode() const
{
    return m_mode;
}

void TextSplitOperation::setMode(int mode)
{
    m_mode = mode;
}

QString TextSplitOperation::separator() const
{
    return m_separator;
}

void TextSplitOperation::setSeparator(const QString &separator)
{
    m_separator = separator;
}

QString TextSplitOperation::length() const
{
    return m_length;
}

void TextSplitOperation::setLength(const QString &length)
{
    m_length = length;
}

QString TextSplitOperation::targetVar() const
{
    return m_targetVar;
}

void TextSplitOperation::setTargetVar(const QString &targetVar)
{
    m_targetVar = targetVar;
}

QString TextSplitOperation::root() const
{
    return tr("文本");
}

QString TextSplitOperation::typeId() const
{
    return QLatin1String("text.split");
}

QString TextSplitOperation::typeName() const
{
    return tr("文本拆分");
}

QString TextSplitOperation::icon() const
{
    return QLatin1String(":/images/text_split.svg");
}

void TextSplitOperation::doOperation() const
{
    if (!m_variableScope || m_targetVar.isEmpty())
        return;
    if (m_variableScope->typeOf(m_targetVar) != VarType::List) {
        warnSkipped("[TextSplit] 目标变量", m_targetVar, "不是列表类型，已跳过");
        return;
    }
    const std::optional<QVariant> text = resolveValueAs(m_value, VarType::String, m_variableScope);
    if (!text) {
        warnSkipped("[TextSplit] 内容", m_value, "不是文本，已跳过");
        return;
    }
    QStringList parts;
    if (!split(text->toString(), parts))
        return;
    QVariantList list;
    list.reserve(parts.size());
    for (const QString &part : qAsConst(parts))
        list.append(part);
    m_variableScope->set(m_targetVar, list);
}

bool TextSplitOperation::split(const QString &text, QStringList &parts) const
{
    if (m_mode == 0) {
        if (m_separator.isEmpty()) {
            warnSkipped("[TextSplit] 分隔符", m_separator, "为空，已跳过");
            return false;
        }
        parts = text.split(m_separator);
        return true;
    }
    const int length = resolveInteger(m_length, m_variableScope).value_or(0);
    if (length < 1) {
        warnSkipped("[TextSplit] 每段长度", m_length, "不是正整数，已跳过");
        return false;
    }
    for (int start = 0; start < text.size(); start += parts.last().size())
        parts.append(text.mid(start, length));
    return true;
}

void TextSplitOperation::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    writeRecordVersion(stream, 1);
    stream << m_value << m_mode << m_separator << m_length << m_targetVar;
}

void TextSplitOperation::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    readRecordVersion(stream, 1);
    stream >> m_value >> m_mode >> m_separator >> m_length >> m_targetVar;
}

QString TextSplitOperation::toString() const
{
    return QStringLiteral("%1: %2 -> %3").arg(typeName(), m_value, displayVarName(m_targetVar));
}

QString TextSplitOperation::description() const
{
    const QString sentence =
        m_mode == 0 ? tr("用“%1”拆分文本 %2，写入列表 %3") : tr("按每段 %1 个字符拆分文本 %2，写入列表 %3");
    return sentence.arg(m_mode == 0 ? m_separator : m_length, m_value, displayVarName(m_targetVar));
}

Operation *TextSplitOperation::clone(QObject *parent) const
{
    auto *copy = new TextSplitOperation(parent);
    copy->m_baseState = m_baseState;
    copy->m_value = m_value;
    copy->m_mode = m_mode;
    copy->m_separator = m_separator;
    copy->m_length = m_length;
    copy->m_targetVar = m_targetVar;
    return copy;
}
