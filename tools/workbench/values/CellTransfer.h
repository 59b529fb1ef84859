#pragma once

#include <QVariantList>
#include <QVector>

class QMimeData;

namespace Workbench
{
/// A block of cells, row by row.
using Cells = QVector<QVariantList>;

/// \a cells for the clipboard: with their types for this program, and for others as lines of texts with tabulators
/// between, in the form that spreadsheets give and take.
QMimeData *mimeOfCells(const Cells &cells);

/// The cells that \a mime holds; none when it holds no text. A text of another program is read as it comes from a
/// spreadsheet; the cells of a column become numbers, or yes and no, when all of them are such, but `007` stays a text.
Cells cellsOfMime(const QMimeData &mime);

/// \a cell as it goes in the place of \a present: with the type of that where its text has such a value.
QVariant fittingCell(const QVariant &cell, const QVariant &present);
} // namespace Workbench
