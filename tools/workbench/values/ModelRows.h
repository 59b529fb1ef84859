#pragma once

#include <QList>

class QAbstractItemModel;

namespace Workbench
{
/// Removes the top-level rows \a rows, in any order, from \a model.
void removeModelRows(QAbstractItemModel &model, QList<int> rows);
} // namespace Workbench
