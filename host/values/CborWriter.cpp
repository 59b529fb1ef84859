#include "CborWriter.h"

#include "CborHead.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace StepHost
{
namespace
{
template<typename Bits, typename Float>
Bits bitsOf(Float number)
{
    static_assert(sizeof(Float) == sizeof(Bits), "the bits of a number");
    Bits bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}
} // namespace

// The first byte of an item, and as many bytes of `argument` as an Integer has.
template<typename Integer>
CborWriter::Head CborWriter::headWith(int first, Integer argument)
{
    Head head{{char(first)}, 1 + int(sizeof argument)};
    qToBigEndian(argument, head.bytes + 1);
    return head;
}

CborWriter::Head CborWriter::headOf(int major, quint64 argument)
{
    const int first = major << cborArgumentBits;
    if (argument < cborLongArgument)
        return Head{{char(first | int(argument))}, 1};
    const int longFirst = first | cborLongArgument;
    if (argument <= std::numeric_limits<quint8>::max())
        return headWith(longFirst, quint8(argument));
    if (argument <= std::numeric_limits<quint16>::max())
        return headWith(longFirst + 1, quint16(argument));
    if (argument <= std::numeric_limits<quint32>::max())
        return headWith(longFirst + 2, quint32(argument));
    return headWith(longFirst + 3, argument);
}

void CborWriter::null()
{
    add(CborNull);
}

void CborWriter::boolean(bool value)
{
    add(value ? CborTrue : CborFalse);
}

void CborWriter::integer(qint64 value)
{
    if (value >= 0)
        unsignedInteger(quint64(value));
    else
        add(headOf(CborNegative, quint64(-(value + 1))));
}

void CborWriter::unsignedInteger(quint64 value)
{
    add(headOf(CborUnsigned, value));
}

void CborWriter::number(double value)
{
    const bool isInReach = std::fabs(value) <= double(std::numeric_limits<float>::max());
    add(isInReach && double(float(value)) == value ? headWith(CborSingle, bitsOf<quint32>(float(value)))
                                                   : headWith(CborDouble, bitsOf<quint64>(value)));
}

void CborWriter::text(const char *utf8, int size)
{
    add(headOf(CborText, quint64(size)));
    m_document.append(utf8, size);
}

void CborWriter::openArray()
{
    open(false);
}

void CborWriter::openMap()
{
    open(true);
}

void CborWriter::close()
{
    const Container container = m_open.back();
    m_open.pop_back();
    const Head head =
        container.isMap ? headOf(CborMap, container.items / 2) : headOf(CborArray, container.items);
    if (head.size == 1)
        m_document.data()[container.start] = head.bytes[0];
    else
        m_longLengths.push_back({container.start, head});
}

int CborWriter::depth() const
{
    return int(m_open.size());
}

QByteArray CborWriter::takeDocument()
{
    insertLengths();
    m_document.squeeze();
    return std::move(m_document);
}

void CborWriter::open(bool isMap)
{
    const int start = m_document.size();
    add(0);
    m_open.push_back({start, isMap, 0});
}

void CborWriter::add(int first)
{
    add(Head{{char(first)}, 1});
}

void CborWriter::add(const Head &head)
{
    if (!m_open.empty())
        ++m_open.back().items;
    m_document.append(head.bytes, head.size);
}

// From the end on, so that each byte moves once.
void CborWriter::insertLengths()
{
    std::sort(m_longLengths.begin(), m_longLengths.end(),
              [](const LongLength &left, const LongLength &right) { return left.start > right.start; });
    int from = m_document.size();
    int to = from;
    for (const LongLength &length : m_longLengths)
        to += length.head.size - 1;
    m_document.resize(to);
    char *const bytes = m_document.data();
    for (const LongLength &length : m_longLengths) {
        const int rest = from - length.start - 1;
        to -= rest;
        std::memmove(bytes + to, bytes + from - rest, std::size_t(rest));
        to -= length.head.size;
        std::copy_n(length.head.bytes, length.head.size, bytes + to);
        from = length.start;
    }
}
} // namespace StepHost
