#include "TextEncoding.h"

#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

#include <QTextCodec>

#include <algorithm>
#include <array>

namespace StepHost
{
namespace
{
constexpr uchar asciiEnd = 0x80;

/// Looks through encoded text one character after the other.
class EncodedText
{
public:
    EncodedText(const QByteArray &bytes, TextEncoding encoding)
        : m_at(reinterpret_cast<const uchar *>(bytes.constData())), m_end(m_at + bytes.size()),
          m_encoding(encoding), m_isBigEndian(encoding == TextEncoding::Utf16 && isBigEndian(bytes))
    {
    }

    /// Whether the bytes of UTF-16 have the higher one first.
    static bool isBigEndian(const QByteArray &bytes)
    {
        if (bytes.startsWith("\xFE\xFF") || bytes.startsWith("\xFF\xFE"))
            return bytes.startsWith("\xFE\xFF");
        // Of Latin letters, digits, blanks and line ends the higher byte is 0.
        int zeros[2] = {0, 0};
        for (int i = 0; i < bytes.size(); ++i)
            zeros[i % 2] += bytes.at(i) == 0 ? 1 : 0;
        return zeros[0] > zeros[1];
    }

    bool atEnd() const
    {
        return m_at >= m_end;
    }

    /// How many bytes the next character has; 0 when these bytes are none.
    int next() const
    {
        switch (m_encoding) {
        case TextEncoding::Utf8:
            return nextUtf8();
        case TextEncoding::Gb18030:
            return nextGb18030();
        case TextEncoding::Utf16:
            return nextUtf16();
        case TextEncoding::Latin1:
            break;
        }
        return 1;
    }

    bool isLineFeed() const
    {
        return m_encoding == TextEncoding::Utf16 ? unit(0) == '\n' : *m_at == '\n';
    }

    void skip(int size)
    {
        m_at += size;
    }

    uchar byte(int offset) const
    {
        return m_end - m_at > offset ? m_at[offset] : uchar(0);
    }

private:
    bool isBetween(int offset, uchar first, uchar last) const
    {
        return m_end - m_at > offset && m_at[offset] >= first && m_at[offset] <= last;
    }

    int nextUtf8() const
    {
        constexpr uchar firstTrail = 0x80;
        constexpr uchar lastTrail = 0xBF;
        const auto trails = [&](int from, int to) {
            for (int i = from; i <= to; ++i) {
                if (!isBetween(i, firstTrail, lastTrail))
                    return false;
            }
            return true;
        };
        const uchar lead = *m_at;
        if (lead < asciiEnd)
            return 1;
        if (lead >= 0xC2 && lead <= 0xDF)
            return trails(1, 1) ? 2 : 0;
        // Neither longer than need be, nor a half of a surrogate pair, nor beyond U+10FFFF.
        if (lead >= 0xE0 && lead <= 0xEF) {
            const bool fits = isBetween(1, lead == 0xE0 ? 0xA0 : firstTrail, lead == 0xED ? 0x9F : lastTrail);
            return fits && trails(2, 2) ? 3 : 0;
        }
        if (lead >= 0xF0 && lead <= 0xF4) {
            const bool fits = isBetween(1, lead == 0xF0 ? 0x90 : firstTrail, lead == 0xF4 ? 0x8F : lastTrail);
            return fits && trails(2, 3) ? 4 : 0;
        }
        return 0;
    }

    int nextGb18030() const
    {
        if (*m_at < asciiEnd)
            return 1;
        if (!isBetween(0, 0x81, 0xFE))
            return 0;
        if (isBetween(1, 0x40, 0x7E) || isBetween(1, 0x80, 0xFE))
            return 2;
        return isBetween(1, 0x30, 0x39) && isBetween(2, 0x81, 0xFE) && isBetween(3, 0x30, 0x39) ? 4 : 0;
    }

    int nextUtf16() const
    {
        if (m_end - m_at < 2)
            return 0;
        if (!QChar::isSurrogate(unit(0)))
            return 2;
        return QChar::isHighSurrogate(unit(0)) && m_end - m_at >= 4 && QChar::isLowSurrogate(unit(2)) ? 4 : 0;
    }

    uint unit(int offset) const
    {
        const uint first = byte(offset);
        const uint second = byte(offset + 1);
        return m_isBigEndian ? first << 8 | second : second << 8 | first;
    }

    const uchar *m_at;
    const uchar *m_end;
    TextEncoding m_encoding;
    bool m_isBigEndian;
};

tl::unexpected<QString> noText(int line, int character, TextEncoding encoding)
{
    return failure(ErrorTexts::tr("line %1, character %2 is not %3 text")
                       .arg(QString::number(line), QString::number(character), encodingName(encoding)));
}

// Why `bytes` are no text in `encoding`, if so.
Result<void> checkText(const QByteArray &bytes, TextEncoding encoding)
{
    int line = 1;
    int character = 1;
    for (EncodedText text(bytes, encoding); !text.atEnd();) {
        const int size = text.next();
        if (size == 0)
            return noText(line, character, encoding);
        const bool endsLine = text.isLineFeed();
        line += endsLine ? 1 : 0;
        character = endsLine ? 1 : character + 1;
        text.skip(size);
    }
    return {};
}

// Whether `bytes`, which are no UTF-8, look like GB18030: it begins most characters beyond ASCII with two bytes beyond
// it, while those of Latin-1 stand alone among ASCII.
bool looksLikeGb18030(const QByteArray &bytes)
{
    int pairs = 0;
    int others = 0;
    for (EncodedText text(bytes, TextEncoding::Gb18030); !text.atEnd();) {
        const int size = text.next();
        if (size == 0)
            return false;
        if (size > 1)
            ++(text.byte(1) >= asciiEnd ? pairs : others);
        text.skip(size);
    }
    return pairs > others;
}

// Whether a third of `bytes` or more are 0, as in UTF-16 of a text with Latin letters, digits or line ends.
bool looksLikeUtf16(const QByteArray &bytes)
{
    constexpr int share = 3;
    const auto zeros = std::count(bytes.cbegin(), bytes.cend(), '\0');
    return zeros > 0 && bytes.size() % 2 == 0 && zeros >= bytes.size() / share
        && checkText(bytes, TextEncoding::Utf16).has_value();
}

const char *codecName(const QByteArray &bytes, TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::Utf8:
        return "UTF-8";
    case TextEncoding::Gb18030:
        return "GB18030";
    case TextEncoding::Utf16:
        return EncodedText::isBigEndian(bytes) ? "UTF-16BE" : "UTF-16LE";
    case TextEncoding::Latin1:
        break;
    }
    return "ISO-8859-1";
}

// The place of the first U+FFFD in `text`: bytes that have the form of a character, and stand for none.
Result<void> checkCharacters(const QString &text, TextEncoding encoding)
{
    const int at = text.indexOf(QChar(QChar::ReplacementCharacter));
    if (at < 0)
        return {};
    const int lineStart = at == 0 ? 0 : text.lastIndexOf(QLatin1Char('\n'), at - 1) + 1;
    const int line = int(std::count(text.cbegin(), text.cbegin() + at, QLatin1Char('\n'))) + 1;
    return noText(line, text.midRef(lineStart, at - lineStart).toUcs4().size() + 1, encoding);
}
} // namespace

QVector<TextEncoding> textEncodings()
{
    return {TextEncoding::Utf8, TextEncoding::Gb18030, TextEncoding::Utf16, TextEncoding::Latin1};
}

QString encodingName(TextEncoding encoding)
{
    static const std::array<const char *, 4> names = {"UTF-8", "GB18030", "UTF-16", "Latin-1"};
    return QLatin1String(names.at(std::size_t(encoding)));
}

Result<TextEncoding> encodingNamed(const QString &name)
{
    QStringList names;
    const QVector<TextEncoding> encodings = textEncodings();
    for (const TextEncoding encoding : encodings) {
        names.append(encodingName(encoding).toLower());
        if (names.constLast() == name.toLower())
            return encoding;
    }
    return failure(notAmong(ErrorTexts::tr("encoding"), name, names));
}

EncodingGuess guessEncoding(const QByteArray &bytes)
{
    if (bytes.startsWith("\xFE\xFF") || bytes.startsWith("\xFF\xFE"))
        return {TextEncoding::Utf16, true};
    if (bytes.startsWith("\x84\x31\x95\x33"))
        return {TextEncoding::Gb18030, true};
    if (looksLikeUtf16(bytes))
        return {TextEncoding::Utf16, false};
    if (checkText(bytes, TextEncoding::Utf8))
        return {TextEncoding::Utf8, true};
    return {looksLikeGb18030(bytes) ? TextEncoding::Gb18030 : TextEncoding::Latin1, false};
}

Result<QString> decodeText(const QByteArray &bytes, TextEncoding encoding)
{
    const Result<void> checked = checkText(bytes, encoding);
    if (!checked)
        return failure(checked.error());
    const QTextCodec *codec = QTextCodec::codecForName(codecName(bytes, encoding));
    if (!codec)
        return failure(ErrorTexts::tr("this program cannot read %1").arg(encodingName(encoding)));
    // Some codecs drop a byte order mark, others do not.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    if (encoding == TextEncoding::Gb18030) {
        const Result<void> known = checkCharacters(text, encoding);
        if (!known)
            return failure(known.error());
    }
    return text;
}
} // namespace StepHost
