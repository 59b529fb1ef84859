#include "TextFlaws.h"

namespace StepHost
{
namespace
{
QString flaw(const QString &text, bool mayHaveLines)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const QString code = QStringLiteral("U+%1").arg(c.unicode(), 4, 16, QLatin1Char('0')).toUpper();
        const bool isLayout = c == QLatin1Char('\n') || c == QLatin1Char('\t');
        if (c.category() == QChar::Other_Control && !(mayHaveLines && isLayout))
            return QStringLiteral("has the control character %1").arg(code);
        const bool isSeparator = c == QChar(QChar::LineSeparator) || c == QChar(QChar::ParagraphSeparator);
        if (isSeparator && !mayHaveLines)
            return QStringLiteral("has the line end %1").arg(code);
        if (c == QChar(QChar::ReplacementCharacter))
            return QStringLiteral("has a replacement character, which stands for bytes that are no UTF-8");
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            return QStringLiteral("has a half of a surrogate pair, %1").arg(code);
    }
    return QString();
}
} // namespace

QString flawOf(const QString &text)
{
    return flaw(text, false);
}

QString flawOfLines(const QString &text)
{
    return flaw(text, true);
}
} // namespace StepHost
