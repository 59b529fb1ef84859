#pragma once

#include "host/values/Result.h"

#include <QString>
#include <QVariantList>

namespace StepHost
{
/// Writes \a list to the file \a fileName as writeOutputFile() does, in UTF-8: one item a line, or in ".csv" and ".tsv"
/// as a row of one cell, or in ".json" as a JSON array of the form that scripts have. Lists in it are rows of cells in
/// ".csv" and ".tsv". An item with a line break is refused for one item a line, which would read it back as two.
///
/// Returns a remark for the user as writeOutputFile() does, with the file's name, or an empty text. Errors name the file.
Result<QString> writeList(const QString &fileName, const QVariantList &list);

/// Writes the rows \a rows in the same way. In all but ".csv" and ".json" a tabulator stands between the cells of a row,
/// and a cell that holds one, or a line break, is refused.
Result<QString> writeTable(const QString &fileName, const QVariantList &rows);
} // namespace StepHost
