#include "ElementImage.h"

#include <QDateTime>
#include <QHash>
#include <QStringView>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{
constexpr int otherKind = -1;

// Long texts and lists are told apart by their beginnings and ends, so that an image costs little beside
// the comparisons that it saves.
constexpr int textEnd = 256;
constexpr int listEnd = 16;

template<typename T>
const T &stored(const QVariant &value)
{
    return *static_cast<const T *>(value.constData());
}

quint64 mixed(quint64 bits)
{
    bits = (bits ^ bits >> 32) * Q_UINT64_C(0x9e3779b97f4a7c15);
    return (bits ^ bits >> 29) * Q_UINT64_C(0xbf58476d1ce4e5b9);
}

quint16 folded(quint64 bits)
{
    return static_cast<quint16>(mixed(bits) >> 48);
}

// What the number of a list's element adds to that of the list.
quint64 part(std::size_t i, quint64 digest)
{
    return mixed(digest + i * Q_UINT64_C(0x9e3779b97f4a7c15));
}

// Doubles that count as equal are less than 10,000 of the smallest steps apart. They share a bucket of
// 2^width steps, or one of them is that near to the next bucket. Round numbers stand in the middle of theirs.
class Buckets
{
public:
    constexpr explicit Buckets(int width) : m_width(width) { }

    quint64 of(double value) const
    {
        return at(value, 0);
    }

    quint64 below(double value) const
    {
        return at(value, -reach);
    }

    quint64 above(double value) const
    {
        return at(value, reach);
    }

private:
    static constexpr qint64 reach = 10000;

    quint64 at(double value, qint64 distance) const
    {
        quint64 steps = 0; // from zero, which has no sign here
        if (value != 0)
            std::memcpy(&steps, &value, sizeof steps);
        const quint64 sign = steps & Q_UINT64_C(1) << 63;
        const quint64 middle = Q_UINT64_C(1) << (m_width - 1);
        return ((steps ^ sign) + middle + static_cast<quint64>(distance)) >> m_width | sign;
    }

    int m_width;
};

// Narrow, for a scan over like doubles; wide, for lists, where other elements help to tell them apart.
constexpr Buckets narrowBuckets(18);
constexpr Buckets wideBuckets(28);

quint64 digestOfText(const QString &text)
{
    if (text.size() <= 2 * textEnd)
        return qHash(text);
    const QStringView view(text);
    return qHash(view.left(textEnd), qHash(view.right(textEnd)));
}

quint64 digestOfDateTime(const QDateTime &dateTime)
{
    return dateTime.isValid() ? static_cast<quint64>(dateTime.toMSecsSinceEpoch()) : 0;
}

// The integer next to a double is the only one that it may be equal to, unless the double is large.
std::optional<quint64> digestOfInteger(double value)
{
    constexpr double largest = 1e11;
    return std::abs(value) < largest ? std::optional(static_cast<quint64>(std::llround(value)))
                                     : std::nullopt;
}

// What is compared of a value, as a number: equal values of one kind have equal numbers.
quint64 digestOf(int kind, const QVariant &value, const Buckets &buckets)
{
    switch (kind) {
    case QMetaType::Bool:
        return stored<bool>(value);
    case QMetaType::Int:
        return static_cast<quint32>(stored<int>(value));
    case QMetaType::UInt:
        return stored<uint>(value);
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return stored<quint64>(value);
    case QMetaType::Double:
        return buckets.of(stored<double>(value));
    case QMetaType::QString:
        return digestOfText(stored<QString>(value));
    case QMetaType::QDate:
        return static_cast<quint64>(stored<QDate>(value).toJulianDay());
    case QMetaType::QTime:
        return static_cast<quint64>(stored<QTime>(value).msecsSinceStartOfDay());
    case QMetaType::QDateTime:
        return digestOfDateTime(stored<QDateTime>(value));
    case QMetaType::QVariantList:
        return static_cast<quint64>(stored<QVariantList>(value).size());
    default:
        return 1; // an invalid value; all of them are equal
    }
}

// The same for a value of another kind, converted to the candidate's as Qt does. A value that is equal to no
// candidate may have any number. None when every candidate has to be asked about the value.
std::optional<quint64> digestOfConverted(int kind, int ownKind, const QVariant &value, const Buckets &buckets)
{
    switch (kind) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
        // Two integers of which one has 32 bits are equal only if their lower halves are.
        if (ownKind == QMetaType::QString)
            return kind == QMetaType::Bool ? uint(value.toBool())
                : kind == QMetaType::Int   ? static_cast<uint>(value.toInt())
                                           : value.toUInt();
        if (ownKind == QMetaType::Double)
            return static_cast<quint32>(digestOfInteger(stored<double>(value)).value_or(0));
        return static_cast<quint32>(value.toLongLong());
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        if (ownKind == QMetaType::Double)
            return digestOfInteger(stored<double>(value));
        return ownKind == QMetaType::QString && kind == QMetaType::ULongLong
            ? value.toULongLong()
            : static_cast<quint64>(value.toLongLong());
    case QMetaType::Double:
        return buckets.of(value.toDouble());
    case QMetaType::QString:
        return digestOfText(value.toString());
    case QMetaType::QDate:
        return static_cast<quint64>(value.toDate().toJulianDay());
    case QMetaType::QTime:
        return static_cast<quint64>(value.toTime().msecsSinceStartOfDay());
    case QMetaType::QDateTime:
        if (ownKind == QMetaType::QTime)
            return std::nullopt; // Qt converts the candidate instead.
        return digestOfDateTime(value.toDateTime());
    default:
        return 0; // Neither a list nor an invalid value equals one of another kind.
    }
}

std::optional<quint64> digestFor(int kind, const QVariant &value, const Buckets &buckets)
{
    const int ownKind = CandidateForm::kindOf(value);
    if (ownKind == otherKind)
        return std::nullopt;
    if (ownKind == kind)
        return digestOf(kind, value, buckets);
    return digestOfConverted(kind, ownKind, value, buckets);
}

const QVariantList &listIn(const QVariant &value)
{
    return stored<QVariantList>(value);
}
} // namespace

int CandidateForm::kindOf(const QVariant &value)
{
    const int kind = value.userType();
    switch (kind) {
    case QMetaType::UnknownType:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
    case QMetaType::QVariantList:
        return kind;
    default:
        return otherKind;
    }
}

CandidateForm::CandidateForm(const QVariant &candidate) : m_kind(kindOf(candidate))
{
    if (m_kind != QMetaType::QVariantList)
        return;
    const QVariantList &list = listIn(candidate);
    m_size = list.size();
    m_kinds.resize(static_cast<std::size_t>(std::min(m_size, 2 * listEnd)));
    for (std::size_t i = 0; i < m_kinds.size(); ++i)
        m_kinds[i] = kindOf(list.at(placeOf(i)));
}

bool CandidateForm::fitsList(const QVariant &candidate) const
{
    const QVariantList &list = listIn(candidate);
    if (list.size() != m_size)
        return false;
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        if (kindOf(list.at(placeOf(i))) != m_kinds[i])
            return false;
    }
    return true;
}

std::optional<SoughtImage> CandidateForm::sought(const QVariant &candidate) const
{
    if (m_kind == QMetaType::Double) {
        const double value = stored<double>(candidate);
        return SoughtImage{folded(narrowBuckets.below(value)), folded(narrowBuckets.above(value))};
    }
    if (m_kind != QMetaType::QVariantList) {
        const quint16 image = folded(digestOf(m_kind, candidate, narrowBuckets));
        return SoughtImage{image, image};
    }
    const QVariantList &list = listIn(candidate);
    quint64 sum = 0;
    quint64 difference = 0; // to the sum for the other bucket of one double
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        const QVariant &element = list.at(placeOf(i));
        if (m_kinds[i] == QMetaType::Double) {
            const double value = stored<double>(element);
            const quint64 below = part(i, wideBuckets.below(value));
            const quint64 above = part(i, wideBuckets.above(value));
            if (below != above && difference != 0)
                return std::nullopt;
            sum += below;
            difference += above - below;
        } else if (m_kinds[i] != otherKind) {
            sum += part(i, digestOf(m_kinds[i], element, wideBuckets));
        }
    }
    return SoughtImage{folded(sum), folded(sum + difference)};
}

std::optional<quint16> CandidateForm::imageOf(const QVariant &value) const
{
    if (m_kind != QMetaType::QVariantList || kindOf(value) != QMetaType::QVariantList) {
        const auto digest = digestFor(m_kind, value, narrowBuckets);
        return digest ? std::optional(folded(*digest)) : std::nullopt;
    }
    const QVariantList &list = listIn(value);
    if (list.size() != m_size)
        return quint16(0);
    quint64 sum = 0;
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        if (m_kinds[i] == otherKind)
            continue;
        const auto digest = digestFor(m_kinds[i], list.at(placeOf(i)), wideBuckets);
        if (!digest)
            return std::nullopt;
        sum += part(i, *digest);
    }
    return folded(sum);
}

int CandidateForm::placeOf(std::size_t i) const
{
    const auto place = static_cast<int>(i);
    return place < listEnd ? place : m_size - static_cast<int>(m_kinds.size()) + place;
}
