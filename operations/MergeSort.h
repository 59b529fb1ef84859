#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

/// A stable sort for relations that need not be orders.
///
/// The standard library's sorts may leave the range when the relation contradicts itself. This one
/// compares and moves only elements of the range and makes O(n log n) comparisons, whatever \a less
/// answers. Its buffer has room for half of the elements.
///
/// \a locate gives a pointer to what \a less compares of an element. It is asked once when the element
/// comes up for comparison, not for each comparison.

template<typename Iterator, typename Locate, typename Less>
void insertionSort(Iterator first, Iterator last, Locate locate, Less less)
{
    for (Iterator next = first; next != last; ++next) {
        if (next == first || !less(locate(*next), locate(*(next - 1))))
            continue;
        auto element = std::move(*next);
        const auto value = locate(element);
        Iterator hole = next;
        do {
            *hole = std::move(*(hole - 1));
            --hole;
        } while (hole != first && less(value, locate(*(hole - 1))));
        *hole = std::move(element);
    }
}

template<typename Iterator, typename BufferIterator, typename Locate, typename Less>
void mergeHalves(Iterator first, Iterator middle, Iterator last, BufferIterator buffer, Locate locate,
                 Less less)
{
    BufferIterator left = buffer;
    const BufferIterator leftEnd = std::move(first, middle, buffer);
    Iterator right = middle;
    Iterator out = first;
    auto leftValue = locate(*left);
    auto rightValue = locate(*right);
    while (true) {
        if (less(rightValue, leftValue)) {
            *out++ = std::move(*right++);
            if (right == last)
                break;
            rightValue = locate(*right);
        } else {
            *out++ = std::move(*left++);
            if (left == leftEnd)
                break;
            leftValue = locate(*left);
        }
    }
    std::move(left, leftEnd, out);
}

template<typename Iterator, typename BufferIterator, typename Locate, typename Less>
void mergeSort(Iterator first, Iterator last, BufferIterator buffer, Locate locate, Less less)
{
    constexpr auto shortRange = 8;
    if (last - first <= shortRange) {
        insertionSort(first, last, locate, less);
        return;
    }
    const Iterator middle = first + (last - first) / 2;
    mergeSort(first, middle, buffer, locate, less);
    mergeSort(middle, last, buffer, locate, less);
    if (less(locate(*middle), locate(*(middle - 1))))
        mergeHalves(first, middle, last, buffer, locate, less);
}

template<typename Iterator, typename Locate, typename Less>
void mergeSort(Iterator first, Iterator last, Locate locate, Less less)
{
    std::vector<typename std::iterator_traits<Iterator>::value_type> buffer(
        static_cast<std::size_t>(last - first) / 2);
    mergeSort(first, last, buffer.begin(), locate, less);
}
