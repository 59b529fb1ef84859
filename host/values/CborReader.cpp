#include "CborReader.h"

#include "JsonValue.h"
#include "QuotedText.h"

#include <QTextCodec>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>

// nlohmann-json's own reader is of no use for bytes from elsewhere: texts of indefinite length, nested in each
// other, overflow its stack.

namespace StepHost
{
namespace
{
// The upper three bits of an item's first byte.
enum MajorType {
    Unsigned = 0,
    Negative = 1,
    Text = 3,
    Array = 4,
    Map = 5,
    Simple = 7,
};

// The whole first byte of the simple items.
enum SimpleItem {
    False = 0xF4,
    True = 0xF5,
    Null = 0xF6,
    Single = 0xFA,
    Double = 0xFB,
};

template<typename Float, typename Bits>
double floatFrom(quint64 bits)
{
    static_assert(sizeof(Float) == sizeof(Bits), "the bits of a number");
    const Bits own = Bits(bits);
    Float number = 0;
    std::memcpy(&number, &own, sizeof number);
    return double(number);
}

class CborReader
{
public:
    CborReader(const QByteArray &cbor, CborError &error) : m_cbor(cbor), m_error(error) { }

    bool readDocument(Json &document, int depth)
    {
        if (!readItem(document, depth))
            return false;
        return m_offset == m_cbor.size()
            || refuse(m_offset, QStringLiteral("%1 bytes follow the last value").arg(left()));
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

    bool refuse(int offset, const QString &text)
    {
        m_error = {offset, text};
        return false;
    }

    bool refuseEnd()
    {
        return refuse(m_cbor.size(), QStringLiteral("the data ends within a value"));
    }

    bool refuseByte(int offset)
    {
        return refuse(offset,
                      QStringLiteral("the byte 0x%1 begins no value of a script")
                          .arg(int(uchar(m_cbor.at(offset))), 2, 16, QLatin1Char('0')));
    }

    bool readBigEndian(int size, quint64 &number)
    {
        if (left() < size)
            return refuseEnd();
        number = 0;
        for (int i = 0; i < size; ++i)
            number = number << 8 | uchar(m_cbor.at(m_offset++));
        return true;
    }

    // The number in the lower five bits of the item's first byte, or in the 1, 2, 4 or 8 bytes after it.
    bool readArgument(int start, quint64 &argument)
    {
        const int low = uchar(m_cbor.at(start)) & 0x1F;
        if (low < 24) {
            argument = quint64(low);
            return true;
        }
        return low < 28 ? readBigEndian(1 << (low - 24), argument) : refuseByte(start);
    }

    bool readItem(Json &item, int depth)
    {
        const int start = m_offset;
        if (left() == 0)
            return refuseEnd();
        const int major = uchar(m_cbor.at(m_offset++)) >> 5;
        if (major == Simple)
            return readSimple(item, start);
        if (major != Unsigned && major != Negative && major != Text && major != Array && major != Map)
            return refuseByte(start);
        quint64 argument = 0;
        if (!readArgument(start, argument))
            return false;
        switch (major) {
        case Unsigned:
            item = argument;
            return true;
        case Negative:
            if (argument > quint64(std::numeric_limits<qint64>::max()))
                return refuse(start, QStringLiteral("the integer does not fit into 64 bits"));
            item = -1 - qint64(argument);
            return true;
        case Text:
            item = std::string();
            return readText(item.get_ref<std::string &>(), start, argument);
        case Array:
            return readArray(item, start, argument, depth);
        default:
            return readMap(item, start, argument, depth);
        }
    }

    bool readSimple(Json &item, int start)
    {
        quint64 bits = 0;
        switch (uchar(m_cbor.at(start))) {
        case False:
            item = false;
            return true;
        case True:
            item = true;
            return true;
        case Null:
            item = nullptr;
            return true;
        case Single:
            return readBigEndian(4, bits) && setNumber(item, start, floatFrom<float, quint32>(bits));
        case Double:
            return readBigEndian(8, bits) && setNumber(item, start, floatFrom<double, quint64>(bits));
        default:
            return refuseByte(start);
        }
    }

    bool setNumber(Json &item, int start, double number)
    {
        if (!std::isfinite(number))
            return refuse(start, QStringLiteral("the number is not finite"));
        item = number;
        return true;
    }

    bool readText(std::string &text, int start, quint64 length)
    {
        if (length > quint64(room()))
            return refuseLength(start, "text", length, "bytes");
        const char *begin = m_cbor.constData() + m_offset;
        QTextCodec::ConverterState state;
        QTextCodec::codecForName("UTF-8")->toUnicode(begin, int(length), &state);
        if (state.invalidChars != 0 || state.remainingChars != 0)
            return refuse(start, QStringLiteral("the text is not UTF-8"));
        text.assign(begin, std::size_t(length));
        m_offset += int(length);
        return true;
    }

    bool readArray(Json &item, int start, quint64 length, int depth)
    {
        if (length > quint64(room()))
            return refuseLength(start, "array", length, "items");
        if (depth == maxJsonDepth)
            return refuseDepth(start);
        item = Json::array();
        auto &array = item.get_ref<Json::array_t &>();
        array.reserve(std::size_t(length));
        m_owed += int(length);
        for (quint64 i = 0; i < length; ++i) {
            --m_owed;
            array.emplace_back();
            if (!readItem(array.back(), depth + 1))
                return false;
        }
        return true;
    }

    bool readMap(Json &item, int start, quint64 length, int depth)
    {
        if (length > quint64(room()) / 2)
            return refuseLength(start, "map", length, "pairs");
        if (depth == maxJsonDepth)
            return refuseDepth(start);
        item = Json::object();
        auto &map = item.get_ref<Json::object_t &>();
        m_owed += 2 * int(length);
        for (quint64 i = 0; i < length; ++i) {
            --m_owed;
            const int keyStart = m_offset;
            Json key;
            if (!readItem(key, depth + 1))
                return false;
            if (!key.is_string())
                return refuse(keyStart, QStringLiteral("the key of a map is not a text"));
            const auto added = map.emplace(key.get_ref<const std::string &>(), Json());
            if (!added.second)
                return refuse(keyStart,
                              QStringLiteral("the map has the key %1 already").arg(quoted(textOf(key))));
            --m_owed;
            if (!readItem(added.first->second, depth + 1))
                return false;
        }
        return true;
    }

    bool refuseLength(int start, const char *what, quint64 length, const char *unit)
    {
        return refuse(start,
                      QStringLiteral("the %1 should have %2 %3, and %4 bytes are left for them")
                          .arg(QLatin1String(what))
                          .arg(length)
                          .arg(QLatin1String(unit))
                          .arg(room()));
    }

    bool refuseDepth(int start)
    {
        return refuse(start,
                      QStringLiteral("arrays and maps are nested deeper than %1 levels").arg(maxJsonDepth));
    }

    const QByteArray &m_cbor;
    CborError &m_error;
    int m_offset = 0;
    int m_owed = 0; // Items that the open arrays and maps have to have yet, after the present one.
};
} // namespace

bool parseCbor(const QByteArray &cbor, Json &document, CborError &error, int depth)
{
    return CborReader(cbor, error).readDocument(document, depth);
}
} // namespace StepHost
