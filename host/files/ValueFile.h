#pragma once

#include "host/values/Result.h"

#include <QCoreApplication>
#include <QString>
#include <QVariantList>

namespace StepHost
{
/// Lists and tables from and to text files in UTF-8. What is read is text: no item loses a leading zero or
/// is taken for a number. Errors name the file. Standard input, read for "-", holds lines.
class ValueFile
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::ValueFile)

public:
    enum class Form {
        Lines, ///< One item a line.
        Csv, ///< Comma-separated values, one row a line.
    };

    /// The form that the suffix of \a fileName stands for: CSV for ".csv", lines for all else.
    static Form formOf(const QString &fileName);

    /// Reads \a fileName as a list: its lines, or all cells of its rows one after the other.
    static Result<QVariantList> readList(const QString &fileName);

    /// Reads \a fileName as a table: its rows, or one row of a single cell for each line.
    static Result<QVariantList> readTable(const QString &fileName);

    /// Writes \a list, one item a line, as writeOutputFile() does. An item with a line break is refused for the form
    /// Lines, which would read it back as two. Returns a remark for the user as that does, with the file's name.
    static Result<QString> writeList(const QString &fileName, const QVariantList &list);

    /// Writes the rows \a rows, as readTable() reads them back. Returns a remark for the user or an empty text, too.
    static Result<QString> writeTable(const QString &fileName, const QVariantList &rows);

private:
    static Result<QString> write(const QString &fileName, const QString &text);
};
} // namespace StepHost
