#pragma once

#include "Result.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <limits>

namespace StepHost
{
/// What a text of values in rows is put together with.
struct CsvForm
{
    QChar separator = QLatin1Char(','); ///< Stands between two cells of a row.
    QChar quote =
        QLatin1Char('"'); ///< Stands around a cell that holds what else would end it; null for none.
};

/// No text with more cells than this is read: one cell as a value takes up to 100 bytes beside its text.
constexpr int maxCells = 10000000;

/// The rows of \a text, cells with separators between and quotation marks around as \a form says, and no more than the
/// first \a mostRows of them.
///
/// Lines may end in LF, CR LF or CR; a line break within quotation marks belongs to the cell. A doubled
/// quotation mark within quoted text is one. An empty line is a row with one empty cell, except after the
/// last line break.
///
/// A text without that form, or with more than maxCells cells, is refused with the line and the column, both counted
/// from 1, at which a quoted cell was opened and not closed, or was followed by something else than a separator.
Result<QVector<QStringList>> parseCsv(const QString &text, const CsvForm &form = CsvForm(),
                                      int mostRows = std::numeric_limits<int>::max());

/// The lines of \a text, or the first \a mostLines, each as a row of one cell. They end in LF or CR LF; the end of the
/// last line may be missing, and an empty text has no lines. More than maxCells lines are refused.
Result<QVector<QStringList>> parseLines(const QString &text, int mostLines = std::numeric_limits<int>::max());

/// The separator that the first lines of \a text look like they have: comma, semicolon, tabulator or vertical bar; a
/// comma where none of them parts the lines into equally many cells.
QChar guessSeparator(const QString &text);

/// \a rows in the form \a form, one line each, as parseCsv() reads them back. Without a quotation mark a cell that
/// needs one is refused, with its row and column, both counted from 1.
Result<QString> formatCsv(const QVector<QStringList> &rows, const CsvForm &form = CsvForm());
} // namespace StepHost
