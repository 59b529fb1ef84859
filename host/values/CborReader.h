#pragma once

#include <QByteArray>
#include <QString>

#include <limits>
#include <map>
#include <type_traits>

namespace StepHost
{
/// An integer of up to 64 bits, with a sign or without.
struct CborInteger
{
    bool isNegative = false;
    quint64 magnitude = 0; ///< At most 2^63 for a negative one.

    /// Whether an \a Integer can hold it.
    template<typename Integer>
    bool fits() const
    {
        using Limits = std::numeric_limits<Integer>;
        if (!isNegative)
            return magnitude <= quint64(Limits::max());
        return Limits::is_signed && magnitude <= 0 - quint64(Limits::min());
    }

    /// Whether the bits of a \a Float are enough for it.
    template<typename Float>
    bool isExactAs() const
    {
        constexpr quint64 limit = quint64(1) << std::numeric_limits<Float>::digits;
        quint64 rest = magnitude;
        while (rest > limit && rest % 2 == 0)
            rest /= 2;
        return rest <= limit;
    }

    /// It as a \a Number that can hold it, or as the \a Number next to it when that is a floating-point one.
    template<typename Number>
    Number as() const
    {
        if constexpr (std::is_integral_v<Number>)
            return Number(isNegative ? 0 - magnitude : magnitude);
        else
            return isNegative ? -Number(magnitude) : Number(magnitude);
    }

    /// Its digits.
    QString toString() const;
};

/// Reads a CBOR document item by item, without a tree: a place in the document, in front of an item. Each function that
/// reads goes on to the next item. A copy is a place of its own, to look at an item before it is read, or to come back
/// to it.
///
/// The document has to be one that checkCbor() takes or cborFromJson() made, and to outlive the reader. An item has to
/// be of the kind that is read.
class CborReader
{
public:
    enum Kind {
        Null,
        Bool,
        Integer,
        Double,
        Text,
        Array,
        Map,
    };

    /// A place in front of the item that begins \a offset bytes after the beginning of \a document.
    explicit CborReader(const QByteArray &document, int offset = 0);

    Kind kind() const;

    /// Reads over an item and all that is in it.
    void skip();

    bool readBool();
    CborInteger readInteger();
    double readDouble();
    QString readText();

    /// The bytes of a text, which share the memory of the document.
    QByteArray readUtf8();

    /// Goes in front of the first item of an array, or the first key of a map. Returns how many items, or pairs of key
    /// and value, there are.
    int enter();

    /// The keys of a map, by order of their bytes, with the places of their values.
    std::map<QByteArray, CborReader> readMembers();

private:
    // Reads the first bytes of an item. Returns its argument.
    quint64 readHead();

    const char *m_at;
};

/// The characters of \a utf8. Unlike `QString::fromUtf8`, a U+FEFF in front is kept.
QString textOf(const QByteArray &utf8);
} // namespace StepHost
