#pragma once

#include <QString>

/// A text that is made as by a chain of QString::arg(), as long as it does not grow without bound.
///
/// A text that is put in may hold place markers itself, which the next one replaces: what the chain makes of a
/// few kilobytes can be too long for the memory, and for the 32 bits in which Qt counts characters.
class ChainedText
{
public:
    /// A result of at most so many characters is what QString::arg() makes.
    static constexpr int maxLength = 10000000;

    explicit ChainedText(const QString &pattern);

    /// Replaces the place markers of the lowest number as QString::arg() does. Once the text, here or on the way,
    /// would be longer than maxLength, there is only tooLong() instead.
    ChainedText &arg(const QString &text);
    ChainedText &arg(int number);

    QString toString() const;

    /// Stands for a text that would be too long.
    static QString tooLong();

private:
    bool hasRoomFor(int length);

    QString m_text;
    bool m_isTooLong = false;
};
