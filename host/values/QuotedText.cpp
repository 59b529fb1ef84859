#include "QuotedText.h"

#include "ErrorTexts.h"
#include "JsonWriter.h"
#include "Suggestion.h"

#include <algorithm>

namespace StepHost
{
namespace
{
bool isShown(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString codeUnit(QChar unit)
{
    return QStringLiteral("\\u%1").arg(int(unit.unicode()), 4, 16, QLatin1Char('0'));
}

// `text` with `escape` instead of each code unit that is not shown as it is.
template<typename Escape>
QString shown(const QString &text, Escape escape)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const int units = isPair ? 2 : 1;
        const uint codePoint =
            isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : uint(text.at(i).unicode());
        if (isShown(codePoint)) {
            result += text.midRef(i, units);
        } else {
            for (int unit = i; unit < i + units; ++unit)
                result += escape(text.at(unit));
        }
        i += units - 1;
    }
    return result;
}

QString jsonEscape(QChar unit)
{
    const QString escape = controlEscape(unit);
    return escape.isEmpty() ? codeUnit(unit) : escape;
}

// The ends of `text`, two thirds of `most` characters and one third; no surrogate pair is cut.
QStringRef head(const QString &text, int most)
{
    const int size = most - most / 3;
    return text.leftRef(text.at(size - 1).isHighSurrogate() ? size - 1 : size);
}

QStringRef tail(const QString &text, int most)
{
    const int size = most / 3;
    return text.rightRef(text.at(text.size() - size).isLowSurrogate() ? size - 1 : size);
}
} // namespace

QString quoted(const QString &text)
{
    constexpr int most = 60;
    const auto inQuotes = [](const QString &part) {
        return QLatin1Char('"') + shown(part, codeUnit) + QLatin1Char('"');
    };
    if (text.size() <= most)
        return inQuotes(text);
    return inQuotes(head(text, most).toString()) + QLatin1String("...")
        + inQuotes(tail(text, most).toString()) + ErrorTexts::tr(" (%1 characters)").arg(text.size());
}

QString notAmong(const QString &what, const QString &name, const QStringList &choices)
{
    const QString list = choices.isEmpty()
        ? ErrorTexts::tr("none")
        : QLatin1Char('"') + choices.join(QLatin1String("\", \"")) + QLatin1Char('"');
    const QString meant = nearestOf(name, choices);
    if (!meant.isEmpty()) {
        return ErrorTexts::tr("there is no %1 %2; did you mean %3? There are %4")
            .arg(what, quoted(name), quoted(meant), list);
    }
    return ErrorTexts::tr("there is no %1 %2; there are %3").arg(what, quoted(name), list);
}

QString bounded(const QString &text, int most)
{
    if (text.size() <= most)
        return text;
    return head(text, most) + ErrorTexts::tr(" ... (%1 characters) ... ").arg(text.size()) + tail(text, most);
}

QString inOneLine(const QString &text)
{
    return shown(text, jsonEscape);
}

QByteArray inOneLine(const QByteArray &utf8)
{
    const bool isPlain =
        std::all_of(utf8.begin(), utf8.end(), [](char byte) { return byte >= ' ' && byte < 0x7f; });
    return isPlain ? utf8 : inOneLine(QString::fromUtf8(utf8)).toUtf8();
}

QString inLines(const QString &text)
{
    return shown(text, [](QChar unit) {
        return unit == QLatin1Char('\n') || unit == QLatin1Char('\t') ? QString(unit) : jsonEscape(unit);
    });
}

QString messageLine(const QString &text)
{
    return inOneLine(bounded(text, 2000));
}

QString inMarkdown(const QString &text)
{
    QString result;
    const QString line = inOneLine(text);
    for (const QChar c : line) {
        if (QStringLiteral("\\`*_[]<>&|~#").contains(c))
            result += QLatin1Char('\\');
        result += c;
    }
    return result;
}

QString markdownCode(const QString &text)
{
    if (text.isEmpty())
        return text;
    QString fence(QLatin1Char('`'));
    while (text.contains(fence))
        fence += QLatin1Char('`');
    // A blank at both ends is dropped when it is read.
    const bool needsRoom = text.startsWith(QLatin1Char('`')) || text.endsWith(QLatin1Char('`'));
    const QString room = needsRoom ? QStringLiteral(" ") : QString();
    return fence + room + inOneLine(text) + room + fence;
}
} // namespace StepHost
