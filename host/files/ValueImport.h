#pragma once

#include "TextEncoding.h"
#include "host/values/CsvText.h"
#include "host/values/Result.h"
#include "hostapi/VariableScope.h"

#include <QByteArray>
#include <QString>
#include <QVariantList>
#include <QVector>

#include <limits>
#include <optional>

/// Lists and tables from text files, step by step: the bytes become a text, that becomes rows of cells, and these become
/// the value of a variable. In each step somebody may choose, and what is not chosen is guessed.
namespace StepHost
{
/// What a file gives.
enum class ImportShape {
    Lines, ///< Each line, whatever is in it.
    Single, ///< The cells of a file with one column. One with more is refused, as several things could be meant.
    Cells, ///< All cells, row by row.
    Rows, ///< Each row as a list of its cells.
    Column, ///< The cells of one column; rows that do not reach it give nothing.
};

/// What the cells of a column become.
enum class ColumnType {
    Text,
    /// Integers, numbers, or yes and no, when all its cells that are not empty are such; else text. What would lose
    /// something as a number stays text: 007, +5, more than 15 digits with a point.
    Auto,
    Int,
    Double,
    Bool,
};

/// How a file is read.
struct ImportForm
{
    TextEncoding encoding = TextEncoding::Utf8;
    bool isEncodingCertain =
        true; ///< False where the encoding was guessed, and another one would give a text, too.
    ImportShape shape = ImportShape::Lines;
    CsvForm csv; ///< For all shapes but Lines.
    bool hasHeader = false; ///< Whether the first row, or line, names the columns and is no value.
    int column = 0; ///< For ImportShape::Column; counted from 0.
    QVector<ColumnType>
        types; ///< For each column; the last also for those behind it. Text when there is none.
    bool appends = false; ///< Whether the values go behind those that the variable has.
};

/// Whether the name \a fileName is one of a file with rows of cells: ".csv" or ".tsv".
bool holdsRows(const QString &fileName);

/// The form that \a bytes, read from the file \a fileName, look like for a variable of the type \a type. A file that
/// holdsRows() has ImportShape::Rows for a table and ImportShape::Single for a list, all others have lines; all columns
/// are text.
ImportForm guessForm(const QString &fileName, const QByteArray &bytes, VarType type);

/// \a guessed with what \a options say instead: words with commas between, such as "encoding=gb18030,separator=tab,header".
///
/// - `encoding=utf-8`, `gb18030`, `utf-16`, `latin-1`
/// - `separator=comma`, `semicolon`, `tab`, `bar`, `space`; `quotes=double`, `single`, `none`
/// - `as=lines`, `cells`, `rows`, `column:2`, counted from 1
/// - `types=text`, `auto`, `int`, `double`, `bool`; one for each column with a plus between, the last for all others
/// - `header`, `append`
///
/// An error names the word and those there are.
Result<ImportForm> chosenForm(const QString &options, ImportForm guessed);

/// The rows of \a text, or the first \a mostRows, the header among them. A line is a row of one cell for
/// ImportShape::Lines.
Result<QVector<QStringList>> importedRows(const QString &text, const ImportForm &form,
                                          int mostRows = std::numeric_limits<int>::max());

/// The type that ColumnType::Auto stands for in the column \a column of \a rows, without the first when \a form has a
/// header.
ColumnType guessColumn(const QVector<QStringList> &rows, int column, const ImportForm &form);

/// The value of a variable of the type \a type that \a rows give. An empty cell of a column that is not text becomes an
/// empty value. Refused is a cell that is not of its column's type, with row and column, both counted from 1.
Result<QVariantList> importedValue(const QVector<QStringList> &rows, const ImportForm &form, VarType type);

/// The value for a variable of the type \a type, list or table, from the file \a fileName, or standard input for "-",
/// which holds lines. \a options are those of chosenForm(). \a present is the value that the variable has, for those who
/// append. An error names the file; an encoding that could be another one is not chosen unasked, but an error.
Result<QVariantList> importFile(const QString &fileName, VarType type, const QString &options = QString(),
                                const QVariantList &present = QVariantList());
} // namespace StepHost
