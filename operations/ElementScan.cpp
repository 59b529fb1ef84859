#include "ElementScan.h"

#include "ListFunctions.h"

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

ElementScan::ElementScan(const QVariantList &elements) : m_elements(elements)
{
    for (int i = 0; i < m_elements.size(); ++i) {
        if (!hasImage(m_elements.at(i)))
            m_otherKinds.push_back(i);
    }
}

void ElementScan::append(const QVariant &element)
{
    if (!hasImage(element))
        m_otherKinds.push_back(m_elements.size());
    m_elements.append(element);
}

bool ElementScan::contains(const QVariant &candidate)
{
    switch (candidate.userType()) {
    case QMetaType::Int: {
        const int value = candidate.toInt();
        return containsMatch(candidate, m_intImages, [value](int image) { return image == value; });
    }
    case QMetaType::Double: {
        // Doubles are equal when they differ by no more than 1e-12 of the smaller one.
        const double value = candidate.toDouble();
        if (!std::isfinite(value))
            return equalsAny(candidate, m_elements);
        const double reach = std::abs(value) * 2e-12;
        return containsMatch(candidate, m_doubleImages,
                             [value, reach](double image) { return std::abs(image - value) <= reach; });
    }
    case QMetaType::QString: {
        const quint64 end = textEnd(candidate.toString());
        return containsMatch(candidate, m_textImages, [end](quint64 image) { return image == end; });
    }
    default:
        return equalsAny(candidate, m_elements);
    }
}

template<typename Image, typename Matches>
bool ElementScan::containsMatch(const QVariant &candidate, std::vector<Image> &images, Matches matches)
{
    const auto size = static_cast<std::size_t>(m_elements.size());
    while (images.size() < size)
        images.push_back(imageOf<Image>(m_elements.at(static_cast<int>(images.size()))));
    constexpr std::size_t blockSize = 128;
    for (std::size_t block = 0; block < size; block += blockSize) {
        const std::size_t end = std::min(block + blockSize, size);
        if (!anyMatches(images.data() + block, images.data() + end, matches))
            continue;
        for (std::size_t i = block; i < end; ++i) {
            if (matches(images[i]) && elementsEqual(candidate, m_elements.at(static_cast<int>(i))))
                return true;
        }
    }
    return std::any_of(m_otherKinds.cbegin(), m_otherKinds.cend(), [this, &candidate](int position) {
        return elementsEqual(candidate, m_elements.at(position));
    });
}

int indexOfEqual(const QVariantList &list, const QVariant &value)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), [&value](const QVariant &candidate) {
        return elementsEqual(candidate, value);
    });
    return found == list.cend() ? -1 : int(found - list.cbegin());
}
