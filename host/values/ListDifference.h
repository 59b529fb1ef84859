#pragma once

#include <QVariantList>

#include <vector>

namespace StepHost
{
enum class DifferenceKind {
    Same, ///< At the same place among those that did not move.
    Added,
    Removed,
    Changed, ///< Another item stands in its place.
    Moved, ///< The same item, at another place among the others.
};

/// What became of an item.
struct Difference
{
    DifferenceKind kind = DifferenceKind::Same;
    int before = -1; ///< Its position in the older list; -1 for one that was added.
    int after = -1; ///< Its position in the newer list; -1 for one that was removed.
};

/// What makes \a after of \a before: each item of either list once, in the order of \a after, with those that were removed
/// behind what they stood behind. Items are the same as ItemValue::same() says, the first of equal ones for the first, and
/// as many of them as possible are those that did not move.
///
/// Takes n log n, and some 50 bytes for each item beside the lists.
std::vector<Difference> listDifference(const QVariantList &before, const QVariantList &after);
} // namespace StepHost
