#include "CborReader.h"

#include "CborHead.h"

#include <cstring>

namespace StepHost
{
namespace
{
template<typename Float, typename Bits>
double floatFrom(Bits bits)
{
    static_assert(sizeof(Float) == sizeof(Bits), "the bits of a number");
    Float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return double(number);
}
} // namespace

QString CborInteger::toString() const
{
    return (isNegative ? QStringLiteral("-") : QString()) + QString::number(magnitude);
}

CborReader::CborReader(const QByteArray &document, int offset) : m_at(document.constData() + offset) { }

CborReader::Kind CborReader::kind() const
{
    switch (cborMajor(*m_at)) {
    case CborUnsigned:
    case CborNegative:
        return Integer;
    case CborText:
        return Text;
    case CborArray:
        return Array;
    case CborMap:
        return Map;
    default:
        break;
    }
    switch (uchar(*m_at)) {
    case CborFalse:
    case CborTrue:
        return Bool;
    case CborNull:
        return Null;
    default:
        return Double;
    }
}

quint64 CborReader::readHead()
{
    const quint64 argument = cborArgument(m_at);
    m_at += 1 + cborArgumentSize(*m_at);
    return argument;
}

void CborReader::skip()
{
    for (quint64 items = 1; items > 0; --items) {
        const int major = cborMajor(*m_at);
        const quint64 argument = readHead();
        if (major == CborText)
            m_at += argument;
        else if (major == CborArray || major == CborMap)
            items += major == CborMap ? 2 * argument : argument;
    }
}

bool CborReader::readBool()
{
    return uchar(*m_at++) == CborTrue;
}

CborInteger CborReader::readInteger()
{
    const bool isNegative = cborMajor(*m_at) == CborNegative;
    return {isNegative, readHead() + (isNegative ? 1 : 0)};
}

double CborReader::readDouble()
{
    const bool isSingle = uchar(*m_at) == CborSingle;
    const quint64 bits = readHead();
    return isSingle ? floatFrom<float>(quint32(bits)) : floatFrom<double>(bits);
}

QString CborReader::readText()
{
    return textOf(readUtf8());
}

QByteArray CborReader::readUtf8()
{
    const int size = int(readHead());
    m_at += size;
    return QByteArray::fromRawData(m_at - size, size);
}

int CborReader::enter()
{
    return int(readHead());
}

std::map<QByteArray, CborReader> CborReader::readMembers()
{
    std::map<QByteArray, CborReader> members;
    for (int left = enter(); left > 0; --left) {
        const QByteArray key = readUtf8();
        members.emplace(key, *this);
        skip();
    }
    return members;
}

QString textOf(const QByteArray &utf8)
{
    static const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF");
    int marks = 0;
    QByteArray rest = utf8;
    while (rest.startsWith(mark)) {
        ++marks;
        rest = QByteArray::fromRawData(rest.constData() + mark.size(), rest.size() - mark.size());
    }
    // QString::fromUtf8() gives an empty text memory of its own, and without a size ends at a NUL.
    const QString text =
        rest.isEmpty() ? QString(QLatin1String("")) : QString::fromUtf8(rest.constData(), rest.size());
    return marks == 0 ? text : QString(marks, QChar(0xFEFF)) + text;
}
} // namespace StepHost
