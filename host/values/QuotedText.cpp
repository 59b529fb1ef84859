#include "QuotedText.h"

#include "JsonWriter.h"

namespace StepHost
{
QString quoted(const QString &text)
{
    constexpr int shown = 60;
    QString result(QLatin1Char('"'));
    const int end = qMin(text.size(), shown);
    for (int i = 0; i < end; ++i) {
        const QChar c = text.at(i);
        const bool pair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (pair)
            result += text.midRef(i++, 2);
        else if (c.isSurrogate() || c.category() == QChar::Other_Control)
            result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += c;
    }
    result += QLatin1Char('"');
    if (text.size() > shown)
        result += QStringLiteral("... (%1 characters)").arg(text.size());
    return result;
}

QString notAmong(const char *what, const QString &name, const QStringList &choices)
{
    const QString list = choices.isEmpty()
        ? QStringLiteral("none")
        : QLatin1Char('"') + choices.join(QLatin1String("\", \"")) + QLatin1Char('"');
    return QStringLiteral("there is no %1 %2; there are %3").arg(QLatin1String(what), quoted(name), list);
}

QString inOneLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        const QString escape = controlEscape(c);
        if (escape.isEmpty())
            line += c;
        else
            line += escape;
    }
    return line;
}
} // namespace StepHost
