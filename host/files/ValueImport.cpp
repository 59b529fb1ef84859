#include "ValueImport.h"

#include "InputFile.h"
#include "host/values/ErrorTexts.h"
#include "host/values/ItemValue.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace StepHost
{
namespace
{
ItemKind kindOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Int:
        return ItemKind::Int;
    case ColumnType::Double:
        return ItemKind::Double;
    case ColumnType::Bool:
        return ItemKind::Bool;
    case ColumnType::Text:
    case ColumnType::Auto:
        break;
    }
    return ItemKind::Text;
}

bool isInteger(const QString &cell)
{
    static const QRegularExpression form(QStringLiteral("^(0|-?[1-9][0-9]{0,18})$"));
    bool fits = false;
    static_cast<void>(cell.toLongLong(&fits));
    return fits && form.match(cell).hasMatch();
}

// No more digits than a double keeps.
bool isNumber(const QString &cell)
{
    static const QRegularExpression form(
        QStringLiteral("^(?!-0$)-?(0|[1-9][0-9]*)(\\.[0-9]+)?([eE][+-]?[0-9]{1,2})?$"));
    constexpr int keptDigits = 15;
    const int size = std::min(cell.size(), keptDigits + 10);
    const auto digits =
        std::count_if(cell.cbegin(), cell.cbegin() + size, [](QChar c) { return c.isDigit(); });
    return digits <= keptDigits && form.match(cell).hasMatch();
}

bool isBool(const QString &cell)
{
    return cell.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0
        || cell.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0;
}

int firstValueRow(const ImportForm &form)
{
    return form.hasHeader ? 1 : 0;
}

/// Makes values of cells, each by the type of its column.
class CellReader
{
public:
    CellReader(const QVector<QStringList> &rows, const ImportForm &form)
    {
        int columns = 0;
        for (const QStringList &row : rows)
            columns = std::max(columns, row.size());
        for (int column = 0; column < columns && !form.types.isEmpty(); ++column) {
            const ColumnType type = form.types.at(std::min(column, form.types.size() - 1));
            m_kinds.append(kindOf(type == ColumnType::Auto ? guessColumn(rows, column, form) : type));
        }
    }

    Result<QVariant> value(const QString &cell, int row, int column) const
    {
        const ItemKind kind = m_kinds.value(column, ItemKind::Text);
        if (kind == ItemKind::Text)
            return QVariant(cell);
        if (cell.trimmed().isEmpty())
            return QVariant();
        return ItemValue::parse(cell, kind).map_error([&](const QString &error) {
            return ErrorTexts::tr("row %1, column %2: %3")
                .arg(QString::number(row + 1), QString::number(column + 1), error);
        });
    }

private:
    QVector<ItemKind> m_kinds; // Empty when all are texts.
};

Result<void> checkSingle(const QVector<QStringList> &rows)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).size() > 1)
            return failure(
                ErrorTexts::tr(
                    "row %1 has %2 columns; choose what a list takes of them: all cells, the rows, "
                    "or one column (as=cells, as=rows, as=column:1)")
                    .arg(row + 1)
                    .arg(rows.at(row).size()));
    }
    return {};
}

// The values of one row: those of all its cells, or of one column.
Result<QVariantList> valuesOf(const QStringList &row, int rowNumber, const CellReader &cells,
                              const ImportForm &form)
{
    const bool isOne = form.shape == ImportShape::Column;
    QVariantList values;
    for (int column = isOne ? form.column : 0; column < (isOne ? form.column + 1 : row.size()); ++column) {
        if (column >= row.size())
            break;
        const Result<QVariant> value = cells.value(row.at(column), rowNumber, column);
        if (!value)
            return failure(value.error());
        values.append(*value);
    }
    return values;
}

// What to do about an encoding that could be another one, too.
QString encodingAdvice(const QByteArray &bytes, const ImportForm &form)
{
    const QString name = encodingName(form.encoding);
    const Result<QString> utf8 = decodeText(bytes, TextEncoding::Utf8);
    return (utf8 ? QString() : utf8.error() + QLatin1String("; "))
        + ErrorTexts::tr("it looks like %1: choose the encoding, as with encoding=%2")
              .arg(name, name.toLower());
}
} // namespace

bool holdsRows(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    return suffix == QLatin1String("csv") || suffix == QLatin1String("tsv");
}

ImportForm guessForm(const QString &fileName, const QByteArray &bytes, VarType type)
{
    ImportForm form;
    const EncodingGuess guess = guessEncoding(bytes);
    form.encoding = guess.encoding;
    form.isEncodingCertain = guess.isCertain;
    if (holdsRows(fileName))
        form.shape = type == VarType::Table ? ImportShape::Rows : ImportShape::Single;
    if (fileName.endsWith(QLatin1String(".tsv"), Qt::CaseInsensitive))
        form.csv.separator = QLatin1Char('\t');
    return form;
}

Result<QVector<QStringList>> importedRows(const QString &text, const ImportForm &form, int mostRows)
{
    return form.shape == ImportShape::Lines ? parseLines(text, mostRows) : parseCsv(text, form.csv, mostRows);
}

ColumnType guessColumn(const QVector<QStringList> &rows, int column, const ImportForm &form)
{
    bool areInts = true;
    bool areNumbers = true;
    bool areBools = true;
    bool isEmpty = true;
    for (int row = firstValueRow(form); row < rows.size(); ++row) {
        const QString cell = rows.at(row).value(column);
        if (cell.isEmpty())
            continue;
        isEmpty = false;
        areInts = areInts && isInteger(cell);
        areNumbers = areNumbers && isNumber(cell);
        areBools = areBools && isBool(cell);
        if (!areInts && !areNumbers && !areBools)
            break;
    }
    if (isEmpty)
        return ColumnType::Text;
    if (areInts)
        return ColumnType::Int;
    if (areNumbers)
        return ColumnType::Double;
    return areBools ? ColumnType::Bool : ColumnType::Text;
}

Result<QVariantList> importedValue(const QVector<QStringList> &rows, const ImportForm &form, VarType type)
{
    const bool keepsRows = type == VarType::Table || form.shape == ImportShape::Rows;
    if (form.shape == ImportShape::Single && !keepsRows) {
        const Result<void> single = checkSingle(rows);
        if (!single)
            return failure(single.error());
    }
    const CellReader cells(rows, form);
    QVariantList values;
    for (int row = firstValueRow(form); row < rows.size(); ++row) {
        const Result<QVariantList> given = valuesOf(rows.at(row), row, cells, form);
        if (!given)
            return failure(given.error());
        if (keepsRows)
            values.append(QVariant(*given));
        else
            values.append(*given);
    }
    return values;
}

Result<QVariantList> importFile(const QString &fileName, VarType type, const QString &options,
                                const QVariantList &present)
{
    const Result<QByteArray> bytes = readInputFile(fileName);
    if (!bytes)
        return failure(bytes.error());
    const auto named = [&fileName](const QString &error) {
        return QStringLiteral("%1: %2").arg(fileName, error);
    };
    const Result<ImportForm> form = chosenForm(options, guessForm(fileName, *bytes, type));
    if (!form)
        return failure(form.error());
    if (!form->isEncodingCertain)
        return failure(named(encodingAdvice(*bytes, *form)));
    return decodeText(*bytes, form->encoding)
        .and_then([&](const QString &text) { return importedRows(text, *form); })
        .and_then([&](const QVector<QStringList> &rows) { return importedValue(rows, *form, type); })
        .map([&](const QVariantList &values) { return form->appends ? present + values : values; })
        .map_error(named);
}
} // namespace StepHost
