#pragma once

#include <QByteArray>
#include <QtEndian>

/// How an item of a CBOR document begins: with a byte that has its kind in the upper three bits. In the lower five it
/// has the item's argument, or tells the 1, 2, 4 or 8 bytes after it that have the argument.
namespace StepHost
{
/// The kinds of items. Those between, which a script does not have, are byte strings and tags.
enum CborMajor {
    CborUnsigned = 0, ///< The argument is the number.
    CborNegative = 1, ///< The number is one less than the argument with a minus.
    CborText = 3, ///< As many bytes of UTF-8 follow.
    CborArray = 4, ///< As many items follow.
    CborMap = 5, ///< As many pairs of items follow.
    CborSimple = 7, ///< What the whole first byte says.
};

/// The first bytes of the simple items.
enum CborSimpleItem {
    CborFalse = 0xF4,
    CborTrue = 0xF5,
    CborNull = 0xF6,
    CborSingle = 0xFA, ///< The argument is the bits of a `float`.
    CborDouble = 0xFB, ///< The argument is the bits of a `double`.
};

/// The bits of the first byte below its kind.
constexpr int cborArgumentBits = 5;

/// Arguments from this one on stand in bytes of their own: one after a first byte with these bits, two, four or eight
/// after the next three.
constexpr int cborLongArgument = 24;

/// The CborMajor of an item that begins with the byte \a first.
inline int cborMajor(char first)
{
    return uchar(first) >> cborArgumentBits;
}

/// How many bytes of argument follow the byte \a first.
inline int cborArgumentSize(char first)
{
    const int low = uchar(first) & 0x1F;
    return low < cborLongArgument ? 0 : 1 << (low - cborLongArgument);
}

/// The argument of the item that begins at \a at, all of whose bytes have to be there.
inline quint64 cborArgument(const char *at)
{
    switch (cborArgumentSize(*at)) {
    case 0:
        return uchar(*at) & 0x1F;
    case 1:
        return uchar(at[1]);
    case 2:
        return qFromBigEndian<quint16>(at + 1);
    case 4:
        return qFromBigEndian<quint32>(at + 1);
    default:
        return qFromBigEndian<quint64>(at + 1);
    }
}
} // namespace StepHost
