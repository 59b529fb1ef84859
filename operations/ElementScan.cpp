#include "ElementScan.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace
{
bool hasImage(const QVariant &element)
{
    const int kind = element.userType();
    return kind == QMetaType::Int || kind == QMetaType::Double || kind == QMetaType::QString;
}

// The low bytes of the last eight code units: texts in one list more often begin alike than end alike.
quint64 textEnd(const QString &text)
{
    quint64 end = 0;
    for (int i = std::max(0, text.size() - 8); i < text.size(); ++i)
        end = end << 8 | text.at(i).cell();
    return end;
}

template<typename Image>
Image imageOf(const QVariant &element);

template<>
int imageOf(const QVariant &element)
{
    return element.toInt();
}

template<>
double imageOf(const QVariant &element)
{
    return element.toDouble();
}

template<>
quint64 imageOf(const QVariant &element)
{
    return textEnd(element.toString());
}

// Whether a double may equal another one: those that differ by no more than 1e-12 of the smaller do. A NaN
// or an infinity is never ruled out.
class CloseTo
{
public:
    explicit CloseTo(double value) : m_value(value), m_reach(std::abs(value) * 2e-12) { }

    bool operator()(double image) const
    {
        return !(std::abs(image - m_value) > m_reach);
    }

private:
    double m_value;
    double m_reach;
};

// What int, double and text elements look like that may equal a value: the value in each of these kinds.
class ScalarLikeness
{
public:
    explicit ScalarLikeness(const QVariant &value)
        : m_isKnown(hasImage(value)), m_int(value.toInt()), m_closeTo(value.toDouble()),
          m_text(value.toString())
    {
    }

    bool mayEqual(const QVariant &candidate) const
    {
        switch (m_isKnown ? candidate.userType() : QMetaType::UnknownType) {
        case QMetaType::Int:
            return candidate.toInt() == m_int;
        case QMetaType::Double:
            return m_closeTo(candidate.toDouble());
        case QMetaType::QString:
            return mayEqualText(*static_cast<const QString *>(candidate.constData()));
        default:
            return true;
        }
    }

private:
    bool mayEqualText(const QString &text) const
    {
        return text.size() == m_text.size() && (text.isEmpty() || text.back() == m_text.back());
    }

    bool m_isKnown;
    int m_int;
    CloseTo m_closeTo;
    QString m_text;
};

// The same for lists, too: lists that may be equal are as long as each other and begin alike.
class Likeness
{
public:
    explicit Likeness(const QVariant &value)
        : m_list(listIn(value)), m_first(m_list && !m_list->isEmpty() ? m_list->constFirst() : value)
    {
    }

    bool mayEqual(const QVariant &candidate) const
    {
        if (!m_list)
            return m_first.mayEqual(candidate);
        const QVariantList *list = listIn(candidate);
        return !list
            || (list->size() == m_list->size() && (list->isEmpty() || m_first.mayEqual(list->constFirst())));
    }

private:
    static const QVariantList *listIn(const QVariant &value)
    {
        return value.userType() == QMetaType::QVariantList
            ? static_cast<const QVariantList *>(value.constData())
            : nullptr;
    }

    const QVariantList *m_list; // null when the value is no list, ...
    ScalarLikeness m_first; // ... and this is the value itself
};

// Without a way out of the loop, and with a flag as wide as an image, compilers examine several images at
// a time.
template<typename Image, typename Matches>
bool anyMatches(const Image *first, const Image *last, Matches matches)
{
    using Flag = std::conditional_t<sizeof(Image) == sizeof(qint32), qint32, qint64>;
    Flag found = 0;
    for (; first != last; ++first)
        found = matches(*first) ? Flag(1) : found;
    return found != 0;
}
} // namespace

ElementScan::ElementScan(int capacity)
{
    m_elements.reserve(capacity);
}

ElementScan::ElementScan(const QVariantList &elements) : m_elements(elements) { }

void ElementScan::append(const QVariant &element)
{
    m_elements.append(element);
}

bool ElementScan::containsByImages(const QVariant &candidate)
{
    switch (candidate.userType()) {
    case QMetaType::Int: {
        const int value = candidate.toInt();
        return containsMatch(candidate, m_intImages, [value](int image) { return image == value; });
    }
    case QMetaType::Double:
        return containsMatch(candidate, m_doubleImages, CloseTo(candidate.toDouble()));
    case QMetaType::QString: {
        const quint64 end = textEnd(candidate.toString());
        return containsMatch(candidate, m_textImages, [end](quint64 image) { return image == end; });
    }
    default:
        return std::any_of(m_elements.cbegin() + 1, m_elements.cend(), [&candidate](const QVariant &element) {
            return elementsEqual(candidate, element);
        });
    }
}

template<typename Image, typename Matches>
bool ElementScan::containsMatch(const QVariant &candidate, std::vector<Image> &images, Matches matches)
{
    const auto size = static_cast<std::size_t>(m_elements.size());
    while (images.size() < size)
        images.push_back(imageOf<Image>(m_elements.at(static_cast<int>(images.size()))));
    for (; m_kindsKnown < m_elements.size(); ++m_kindsKnown) {
        if (!hasImage(m_elements.at(m_kindsKnown)))
            m_otherKinds.push_back(m_kindsKnown);
    }
    // The first element has been asked about; the others are asked about in their order.
    constexpr std::size_t blockSize = 128;
    auto other = std::upper_bound(m_otherKinds.cbegin(), m_otherKinds.cend(), 0);
    for (std::size_t block = 1; block < size; block += blockSize) {
        const std::size_t end = std::min(block + blockSize, size);
        const bool hasOther = other != m_otherKinds.cend() && *other < static_cast<int>(end);
        if (!hasOther && !anyMatches(images.data() + block, images.data() + end, matches))
            continue;
        for (std::size_t i = block; i < end; ++i) {
            const int position = static_cast<int>(i);
            const bool isOther = other != m_otherKinds.cend() && *other == position;
            if (isOther)
                ++other;
            if ((isOther || matches(images[i])) && elementsEqual(candidate, m_elements.at(position)))
                return true;
        }
    }
    return false;
}

int indexOfEqual(const QVariantList &list, const QVariant &value)
{
    const Likeness likeness(value);
    const auto found = std::find_if(list.cbegin(), list.cend(), [&](const QVariant &candidate) {
        return likeness.mayEqual(candidate) && elementsEqual(candidate, value);
    });
    return found == list.cend() ? -1 : int(found - list.cbegin());
}
