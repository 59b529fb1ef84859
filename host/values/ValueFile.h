#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVariantList>

namespace StepHost
{
/// Lists and tables from and to text files in UTF-8. What is read is text: no item loses a leading zero or
/// is taken for a number.
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
    /// \return an empty text, or why the file cannot be read; \a list is left alone then.
    static QString readList(const QString &fileName, QVariantList &list);

    /// Reads \a fileName as a table: its rows, or one row of a single cell for each line.
    /// \return an empty text, or why the file cannot be read; \a rows is left alone then.
    static QString readTable(const QString &fileName, QVariantList &rows);

    /// Writes \a list, one item a line. An item with a line break is refused for the form Lines, which would
    /// read it back as two.
    /// \return an empty text, or why the file cannot be written.
    static QString writeList(const QString &fileName, const QVariantList &list);

    /// Writes the rows \a rows, as readTable() reads them back.
    /// \return an empty text, or why the file cannot be written.
    static QString writeTable(const QString &fileName, const QVariantList &rows);
};
} // namespace StepHost
