#include "CborCheck.h"

#include "CborHead.h"
#include "CborReader.h"
#include "ErrorTexts.h"
#include "JsonValue.h"
#include "QuotedText.h"

#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace StepHost
{
namespace
{
using Checked = Result<void, CborError>;

Checked refuse(int offset, const QString &text)
{
    return tl::unexpected<CborError>(CborError{offset, text});
}

Checked refuseDepth(int start)
{
    return refuse(start,
                  ErrorTexts::tr("arrays and maps are nested deeper than %1 levels").arg(maxJsonDepth));
}

bool beginsAnItem(char first)
{
    switch (cborMajor(first)) {
    case CborUnsigned:
    case CborNegative:
    case CborText:
    case CborArray:
    case CborMap:
        return cborArgumentSize(first) <= int(sizeof(quint64));
    case CborSimple:
        break;
    default:
        return false;
    }
    switch (uchar(first)) {
    case CborFalse:
    case CborTrue:
    case CborNull:
    case CborSingle:
    case CborDouble:
        return true;
    default:
        return false;
    }
}

bool isUtf8(const QByteArray &bytes)
{
    if (std::none_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) > 0x7F; }))
        return true;
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

class CborChecker
{
public:
    explicit CborChecker(const QByteArray &cbor) : m_cbor(cbor) { }

    Checked checkDocument(int depth)
    {
        const Checked item = checkItem(depth);
        if (item && left() > 0)
            return refuse(m_offset, ErrorTexts::tr("%1 bytes follow the last value").arg(left()));
        return item;
    }

private:
    int left() const
    {
        return m_cbor.size() - m_offset;
    }

    // The bytes that are left for the present item: all but one for each item that has to follow it.
    int room() const
    {
        return qMax(0, left() - m_owed);
    }

    Checked checkItem(int depth)
    {
        const int start = m_offset;
        if (left() == 0)
            return refuseEnd();
        const char first = m_cbor.at(start);
        if (!beginsAnItem(first)) {
            return refuse(start,
                          ErrorTexts::tr("the byte 0x%1 begins no value of a script")
                              .arg(int(uchar(first)), 2, 16, QLatin1Char('0')));
        }
        const int size = 1 + cborArgumentSize(first);
        if (left() < size)
            return refuseEnd();
        m_offset += size;
        const quint64 argument = cborArgument(m_cbor.constData() + start);
        switch (cborMajor(first)) {
        case CborNegative:
            if (argument > quint64(std::numeric_limits<qint64>::max()))
                return refuse(start, ErrorTexts::tr("the integer does not fit into 64 bits"));
            return {};
        case CborText:
            return checkText(start, argument);
        case CborArray:
            return checkArray(start, argument, depth);
        case CborMap:
            return checkMap(start, argument, depth);
        case CborSimple:
            if (size > 1 && !std::isfinite(CborReader(m_cbor, start).readDouble()))
                return refuse(start, ErrorTexts::tr("the number is not finite"));
            return {};
        default:
            return {};
        }
    }

    Checked checkText(int start, quint64 length)
    {
        if (length > quint64(room()))
            return refuseLength(
                start, ErrorTexts::tr("the text should have %1 bytes, and %2 bytes are left for them"),
                length);
        if (!isUtf8(QByteArray::fromRawData(m_cbor.constData() + m_offset, int(length))))
            return refuse(start, ErrorTexts::tr("the text is not UTF-8"));
        m_offset += int(length);
        return {};
    }

    Checked checkArray(int start, quint64 length, int depth)
    {
        if (length > quint64(room()))
            return refuseLength(
                start, ErrorTexts::tr("the array should have %1 items, and %2 bytes are left for them"),
                length);
        if (depth == maxJsonDepth)
            return refuseDepth(start);
        m_owed += int(length);
        Checked item;
        for (quint64 i = 0; i < length && item; ++i) {
            --m_owed;
            item = checkItem(depth + 1);
        }
        return item;
    }

    Checked checkMap(int start, quint64 length, int depth)
    {
        if (length > quint64(room()) / 2)
            return refuseLength(
                start, ErrorTexts::tr("the map should have %1 pairs, and %2 bytes are left for them"),
                length);
        if (depth == maxJsonDepth)
            return refuseDepth(start);
        m_owed += 2 * int(length);
        std::set<QByteArray> keys; // By order: keys can be chosen to have one hash value.
        Checked item;
        for (quint64 i = 0; i < length && item; ++i) {
            --m_owed;
            const int keyStart = m_offset;
            item = checkItem(depth + 1);
            if (item)
                item = checkKey(keyStart, keys);
            --m_owed;
            if (item)
                item = checkItem(depth + 1);
        }
        return item;
    }

    Checked checkKey(int start, std::set<QByteArray> &keys) const
    {
        CborReader key(m_cbor, start);
        if (key.kind() != CborReader::Text)
            return refuse(start, ErrorTexts::tr("the key of a map is not a text"));
        const QByteArray utf8 = key.readUtf8();
        if (!keys.insert(utf8).second)
            return refuse(start, ErrorTexts::tr("the map has the key %1 already").arg(quoted(textOf(utf8))));
        return {};
    }

    Checked refuseEnd() const
    {
        return refuse(m_cbor.size(), ErrorTexts::tr("the data ends within a value"));
    }

    Checked refuseLength(int start, const QString &text, quint64 length) const
    {
        return refuse(start, text.arg(length).arg(room()));
    }

    const QByteArray &m_cbor;
    int m_offset = 0;
    int m_owed = 0; // Items that the open arrays and maps have to have yet, after the present one.
};
} // namespace

Result<void, CborError> checkCbor(const QByteArray &cbor, int depth)
{
    return CborChecker(cbor).checkDocument(depth);
}
} // namespace StepHost
