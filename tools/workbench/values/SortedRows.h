#pragma once

#include <QtGlobal>

#include <algorithm>
#include <numeric>
#include <vector>

namespace Workbench
{
/// The rows 0 to \a count - 1 in the order of what \a keyOf gives for each; equal ones as they stand.
template<typename KeyOf>
std::vector<int> sortedRows(int count, Qt::SortOrder order, KeyOf keyOf)
{
    std::vector<decltype(keyOf(0))> keys;
    keys.reserve(size_t(count));
    for (int row = 0; row < count; ++row)
        keys.push_back(keyOf(row));
    std::vector<int> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::stable_sort(rows.begin(), rows.end(), [&keys, order](int a, int b) {
        return order == Qt::AscendingOrder ? keys[size_t(a)] < keys[size_t(b)]
                                           : keys[size_t(b)] < keys[size_t(a)];
    });
    return rows;
}

/// Moves the \a count rows from \a row on in front of the row \a target, which is none of them. \a rows are all rows.
template<typename Iterator>
void rotateRows(Iterator rows, int row, int count, int target)
{
    if (target > row)
        std::rotate(rows + row, rows + row + count, rows + target);
    else
        std::rotate(rows + target, rows + row, rows + row + count);
}
} // namespace Workbench
