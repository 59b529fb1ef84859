#include "ChainedText.h"

#include <QLocale>

ChainedText::ChainedText(const QString &pattern) : m_text(pattern) { }

// Whether the place markers that come next can be replaced with a text of `length` characters.
bool ChainedText::hasRoomFor(int length)
{
    const auto fits = [length](qint64 rest, qint64 markers) { return rest + markers * length <= maxLength; };
    if (m_isTooLong || fits(m_text.size(), m_text.count(QLatin1Char('%'))))
        return !m_isTooLong;
    // Not every percent sign is a marker, and only one number is replaced. What that comes to is for Qt to say.
    const int rest = m_text.arg(QString()).size();
    const int markers = m_text.arg(QStringLiteral("x")).size() - rest;
    m_isTooLong = !fits(rest, markers);
    return !m_isTooLong;
}

ChainedText &ChainedText::arg(const QString &text)
{
    if (hasRoomFor(text.size()))
        m_text = m_text.arg(text);
    return *this;
}

ChainedText &ChainedText::arg(int number)
{
    // The form of the locale, for markers such as %L1, is the longer one.
    if (hasRoomFor(QLocale().toString(number).size()))
        m_text = m_text.arg(number);
    return *this;
}

QString ChainedText::toString() const
{
    return m_isTooLong ? tooLong() : m_text;
}

QString ChainedText::tooLong()
{
    return QStringLiteral("（文本过长，无法显示）");
}
