#include "ModelRows.h"

#include <QAbstractItemModel>

#include <algorithm>

namespace Workbench
{
void removeModelRows(QAbstractItemModel &model, QList<int> rows)
{
    std::sort(rows.begin(), rows.end());
    // From the end, one call for each run of neighbours: what is left to remove keeps its row.
    while (!rows.isEmpty()) {
        const int last = rows.takeLast();
        int first = last;
        while (!rows.isEmpty() && rows.last() == first - 1)
            first = rows.takeLast();
        model.removeRows(first, last - first + 1);
    }
}
} // namespace Workbench
