#include "ListDifference.h"

#include "ItemValue.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace StepHost
{
namespace
{
constexpr int none = -1;

// Equal for values that ItemValue::same() takes for the same.
uint hashOf(const QVariant &value)
{
    const auto type = uint(value.userType());
    switch (value.userType()) {
    case QMetaType::QString:
        return qHash(value.toString(), type);
    case QMetaType::Double: {
        const double number = value.toDouble();
        return std::isnan(number) ? type : qHash(number == 0.0 ? 0.0 : number, type);
    }
    case QMetaType::QVariantList: {
        uint hash = type;
        const QVariantList items = value.toList();
        for (const QVariant &item : items)
            hash = hash * 31 + hashOf(item);
        return hash;
    }
    default:
        return value.canConvert<qlonglong>() ? qHash(value.toLongLong(), type) : type;
    }
}

/// The items of a part of a list, each to be found once by its value.
class FreeItems
{
public:
    FreeItems(const QVariantList &list, int begin, int end) : m_list(list)
    {
        for (int i = begin; i < end; ++i)
            m_items.push_back({hashOf(list.at(i)), i, false});
        std::sort(m_items.begin(), m_items.end(), [](const Item &a, const Item &b) {
            return a.hash != b.hash ? a.hash < b.hash : a.position < b.position;
        });
        m_firstFree.assign(m_items.size(), 0);
    }

    /// The position of the first item that is the same as \a value and was not taken before; none when there is none.
    int take(const QVariant &value)
    {
        // Others with the same hash are rare, unless somebody made them so.
        constexpr int mostTries = 16;
        const uint hash = hashOf(value);
        const auto group = std::lower_bound(m_items.begin(), m_items.end(), hash,
                                            [](const Item &item, uint wanted) { return item.hash < wanted; });
        if (group == m_items.end())
            return none;
        int &taken = m_firstFree[std::size_t(group - m_items.begin())];
        const auto isOfGroup = [&](auto item) { return item != m_items.end() && item->hash == hash; };
        while (isOfGroup(group + taken) && (group + taken)->isTaken)
            ++taken;
        auto item = group + taken;
        for (int tries = 0; tries < mostTries && isOfGroup(item); ++tries, ++item) {
            if (!item->isTaken && ItemValue::same(m_list.at(item->position), value)) {
                item->isTaken = true;
                return item->position;
            }
        }
        return none;
    }

private:
    struct Item
    {
        uint hash;
        int position;
        bool isTaken;
    };

    const QVariantList &m_list;
    std::vector<Item> m_items;
    std::vector<int>
        m_firstFree; // For the first item of each hash: how many of its group are taken in a row.
};

// Which of `numbers`, leaving out those that are none, form the longest rising sequence.
std::vector<bool> longestRise(const std::vector<int> &numbers)
{
    std::vector<std::size_t> ends; // Of the rises of each length the one with the lowest end.
    std::vector<std::size_t> previous(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers[i] == none)
            continue;
        const auto longer =
            std::lower_bound(ends.begin(), ends.end(), numbers[i],
                             [&](std::size_t end, int number) { return numbers[end] < number; });
        previous[i] = longer == ends.begin() ? i : *(longer - 1);
        if (longer == ends.end())
            ends.push_back(i);
        else
            *longer = i;
    }
    std::vector<bool> isOfRise(numbers.size(), false);
    if (ends.empty())
        return isOfRise;
    std::size_t i = ends.back();
    while (!isOfRise[i]) {
        isOfRise[i] = true;
        i = previous[i];
    }
    return isOfRise;
}

/// Compares what stands between the equal beginnings and ends of two lists.
class MiddleDifference
{
public:
    MiddleDifference(const QVariantList &before, const QVariantList &after, int begin, int beforeEnd,
                     int afterEnd, std::vector<Difference> &differences)
        : m_begin(begin), m_beforeEnd(beforeEnd), m_differences(differences),
          m_stayed(std::size_t(beforeEnd), false)
    {
        FreeItems items(before, begin, beforeEnd);
        for (int position = begin; position < afterEnd; ++position) {
            m_partners.push_back(items.take(after.at(position)));
            if (m_partners.back() != none)
                m_stayed[std::size_t(m_partners.back())] = true;
        }
    }

    void append()
    {
        const std::vector<bool> isKept = longestRise(m_partners);
        int position = m_begin;
        std::size_t gapStart = 0;
        for (std::size_t i = 0; i < m_partners.size(); ++i) {
            if (!isKept[i])
                continue;
            appendGap(gapStart, i, position, m_partners[i]);
            m_differences.push_back({DifferenceKind::Same, m_partners[i], m_begin + int(i)});
            position = m_partners[i] + 1;
            gapStart = i + 1;
        }
        appendGap(gapStart, m_partners.size(), position, m_beforeEnd);
    }

private:
    // The newer items from `newBegin` on, and the older ones from `position` on, between two that did not move.
    void appendGap(std::size_t newBegin, std::size_t newEnd, int position, int end)
    {
        const auto nextRemoved = [&] {
            while (position < end && m_stayed[std::size_t(position)])
                ++position;
            return position < end ? position++ : none;
        };
        for (std::size_t i = newBegin; i < newEnd; ++i) {
            const int after = m_begin + int(i);
            if (m_partners[i] != none) {
                m_differences.push_back({DifferenceKind::Moved, m_partners[i], after});
                continue;
            }
            const int replaced = nextRemoved();
            m_differences.push_back(
                {replaced == none ? DifferenceKind::Added : DifferenceKind::Changed, replaced, after});
        }
        for (int removed = nextRemoved(); removed != none; removed = nextRemoved())
            m_differences.push_back({DifferenceKind::Removed, removed, none});
    }

    int m_begin;
    int m_beforeEnd;
    std::vector<Difference> &m_differences;
    std::vector<int> m_partners; // For each newer item the position of the older one that is the same.
    std::vector<bool> m_stayed; // For each older item whether it is one of these.
};
} // namespace

std::vector<Difference> listDifference(const QVariantList &before, const QVariantList &after)
{
    const int shorter = std::min(before.size(), after.size());
    int head = 0;
    while (head < shorter && ItemValue::same(before.at(head), after.at(head)))
        ++head;
    int tail = 0;
    while (tail < shorter - head
           && ItemValue::same(before.at(before.size() - 1 - tail), after.at(after.size() - 1 - tail)))
        ++tail;
    std::vector<Difference> differences;
    differences.reserve(std::size_t(std::max(before.size(), after.size())));
    for (int i = 0; i < head; ++i)
        differences.push_back({DifferenceKind::Same, i, i});
    MiddleDifference(before, after, head, before.size() - tail, after.size() - tail, differences).append();
    for (int i = tail; i > 0; --i)
        differences.push_back({DifferenceKind::Same, before.size() - i, after.size() - i});
    return differences;
}
} // namespace StepHost
