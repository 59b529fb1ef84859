#pragma once

#include "Result.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace StepHost
{
/// The rows of \a text, read as comma-separated values with quotation marks.
///
/// Lines may end in LF, CR LF or CR; a line break within quotation marks belongs to the cell. A doubled
/// quotation mark within quoted text is one. An empty line is a row with one empty cell, except after the
/// last line break.
///
/// A text without that form is refused, with the line at which a quoted cell was opened and not closed, or was
/// followed by something else than a separator.
Result<QVector<QStringList>> parseCsv(const QString &text);

/// \a rows as comma-separated values, one line each, in a form that parseCsv() reads back.
QString formatCsv(const QVector<QStringList> &rows);
} // namespace StepHost
