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

template<typename Iterator, typename Less>
void insertionSort(Iterator first, Iterator last, Less less)
{
    for (Iterator next = first; next != last; ++next) {
        if (next == first || !less(*next, *(next - 1)))
            continue;
        auto element = std::move(*next);
        Iterator hole = next;
        do {
            *hole = std::move(*(hole - 1));
            --hole;
        } while (hole != first && less(element, *(hole - 1)));
        *hole = std::move(element);
    }
}

template<typename Iterator, typename BufferIterator, typename Less>
void mergeHalves(Iterator first, Iterator middle, Iterator last, BufferIterator buffer, Less less)
{
    BufferIterator left = buffer;
    const BufferIterator leftEnd = std::move(first, middle, buffer);
    Iterator right = middle;
    Iterator out = first;
    while (left != leftEnd && right != last) {
        if (less(*right, *left))
            *out++ = std::move(*right++);
        else
            *out++ = std::move(*left++);
    }
    std::move(left, leftEnd, out);
}

template<typename Iterator, typename BufferIterator, typename Less>
void mergeSort(Iterator first, Iterator last, BufferIterator buffer, Less less)
{
    constexpr auto shortRange = 8;
    if (last - first <= shortRange) {
        insertionSort(first, last, less);
        return;
    }
    const Iterator middle = first + (last - first) / 2;
    mergeSort(first, middle, buffer, less);
    mergeSort(middle, last, buffer, less);
    if (less(*middle, *(middle - 1)))
        mergeHalves(first, middle, last, buffer, less);
}

template<typename Iterator, typename Less>
void mergeSort(Iterator first, Iterator last, Less less)
{
    std::vector<typename std::iterator_traits<Iterator>::value_type> buffer(
        static_cast<std::size_t>(last - first) / 2);
    mergeSort(first, last, buffer.begin(), less);
}
