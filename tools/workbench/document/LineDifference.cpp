#include "LineDifference.h"

#include <vector>

namespace Workbench
{
namespace
{
constexpr qint64 maxComparisons = 4000000;

/// How many lines two texts have in common, from each pair of lines on to their ends.
class CommonLines
{
public:
    CommonLines(const QStringList &first, const QStringList &second)
        : m_columns(size_t(second.size()) + 1), m_counts((size_t(first.size()) + 1) * m_columns)
    {
        for (int i = first.size() - 1; i >= 0; --i) {
            for (int j = second.size() - 1; j >= 0; --j)
                at(i, j) =
                    first.at(i) == second.at(j) ? at(i + 1, j + 1) + 1 : qMax(at(i + 1, j), at(i, j + 1));
        }
    }

    int &at(int i, int j)
    {
        return m_counts[size_t(i) * m_columns + size_t(j)];
    }

private:
    size_t m_columns;
    std::vector<int> m_counts;
};

void append(QVector<DifferenceLine> &lines, DifferenceLine::Side side, const QStringList &texts)
{
    for (const QString &text : texts)
        lines.append({side, text});
}

void appendDifference(QVector<DifferenceLine> &lines, const QStringList &first, const QStringList &second)
{
    int i = 0;
    int j = 0;
    if (qint64(first.size()) * second.size() <= maxComparisons) {
        CommonLines common(first, second);
        while (i < first.size() && j < second.size()) {
            if (first.at(i) == second.at(j)) {
                lines.append({DifferenceLine::Both, first.at(i)});
                ++i;
                ++j;
            } else if (common.at(i + 1, j) >= common.at(i, j + 1)) {
                lines.append({DifferenceLine::First, first.at(i++)});
            } else {
                lines.append({DifferenceLine::Second, second.at(j++)});
            }
        }
    }
    append(lines, DifferenceLine::First, first.mid(i));
    append(lines, DifferenceLine::Second, second.mid(j));
}
} // namespace

QVector<DifferenceLine> lineDifference(const QStringList &first, const QStringList &second)
{
    const int shorter = qMin(first.size(), second.size());
    int head = 0;
    while (head < shorter && first.at(head) == second.at(head))
        ++head;
    int tail = 0;
    while (tail < shorter - head && first.at(first.size() - 1 - tail) == second.at(second.size() - 1 - tail))
        ++tail;
    QVector<DifferenceLine> lines;
    append(lines, DifferenceLine::Both, first.mid(0, head));
    appendDifference(lines, first.mid(head, first.size() - head - tail),
                     second.mid(head, second.size() - head - tail));
    append(lines, DifferenceLine::Both, first.mid(first.size() - tail));
    return lines;
}
} // namespace Workbench
