#include "JsonWriter.h"

#include "ErrorTexts.h"
#include "JsonValue.h"

#include <algorithm>

namespace StepHost
{
namespace
{
bool isControl(QChar c)
{
    return c < QLatin1Char(' ') || (c >= QChar(0x7F) && c <= QChar(0x9F));
}

bool isEscaped(QChar c)
{
    return c == QLatin1Char('"') || c == QLatin1Char('\\') || isControl(c);
}

QString escapeOf(QChar c)
{
    return isControl(c) ? controlEscape(c) : QLatin1Char('\\') + QString(c);
}
} // namespace

QString controlEscape(QChar c)
{
    if (c == QLatin1Char('\n'))
        return QStringLiteral("\\n");
    if (c == QLatin1Char('\r'))
        return QStringLiteral("\\r");
    if (c == QLatin1Char('\t'))
        return QStringLiteral("\\t");
    return isControl(c) ? QStringLiteral("\\u%1").arg(int(c.unicode()), 4, 16, QLatin1Char('0')) : QString();
}

JsonWriter::JsonWriter(QByteArray &json, Layout layout, int indent)
    : m_json(json), m_layout(layout), m_indent(indent)
{
}

JsonWriter &JsonWriter::openObject(Layout layout)
{
    return open('{', '}', layout);
}

JsonWriter &JsonWriter::openArray(Layout layout)
{
    return open('[', ']', layout);
}

JsonWriter &JsonWriter::close()
{
    const Level level = m_levels.back();
    m_levels.pop_back();
    if (level.layout == OnLines && !level.isEmpty)
        breakLine();
    m_json += level.end;
    return *this;
}

JsonWriter &JsonWriter::key(const char *name)
{
    startItem();
    m_json += '"';
    m_json += name;
    m_json += "\": ";
    m_isAfterKey = true;
    return *this;
}

JsonWriter &JsonWriter::key(const QString &name)
{
    startItem();
    appendString(name);
    m_json += ": ";
    m_isAfterKey = true;
    return *this;
}

JsonWriter &JsonWriter::text(const QString &text)
{
    startItem();
    appendString(text);
    return *this;
}

JsonWriter &JsonWriter::number(qlonglong number)
{
    return raw(QByteArray::number(number));
}

JsonWriter &JsonWriter::raw(const QByteArray &json)
{
    startItem();
    m_json += json;
    return *this;
}

Result<void> JsonWriter::check() const
{
    if (m_levels.size() > std::size_t(maxJsonDepth))
        return failure(ErrorTexts::tr("is nested deeper than %1 levels of JSON").arg(maxJsonDepth));
    if (m_json.size() > maxJsonSize)
        return failure(ErrorTexts::tr("makes more than 256 MiB of JSON"));
    return {};
}

JsonWriter::Layout JsonWriter::presentLayout() const
{
    return m_levels.empty() ? m_layout : m_levels.back().layout;
}

JsonWriter &JsonWriter::open(char begin, char end, Layout wanted)
{
    startItem();
    m_levels.push_back({end, presentLayout() == InLine ? InLine : wanted, true});
    m_json += begin;
    return *this;
}

void JsonWriter::startItem()
{
    if (m_isAfterKey || m_levels.empty()) {
        m_isAfterKey = false;
        return;
    }
    Level &level = m_levels.back();
    if (!level.isEmpty)
        m_json += level.layout == InLine ? ", " : ",";
    level.isEmpty = false;
    if (level.layout == OnLines)
        breakLine();
}

void JsonWriter::breakLine()
{
    m_json += '\n';
    m_json += QByteArray(int(m_levels.size()) * m_indent, ' ');
}

void JsonWriter::appendString(const QString &text)
{
    m_json += '"';
    for (const QChar *from = text.cbegin(); from != text.cend();) {
        const QChar *const escaped = std::find_if(from, text.cend(), isEscaped);
        m_json += QStringView(from, escaped).toUtf8();
        from = escaped;
        if (from != text.cend())
            m_json += escapeOf(*from++).toLatin1();
    }
    m_json += '"';
}
} // namespace StepHost
