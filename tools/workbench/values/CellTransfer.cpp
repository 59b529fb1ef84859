#include "CellTransfer.h"

#include "host/files/ValueImport.h"
#include "host/values/ItemValue.h"
#include "host/values/JsonValue.h"
#include "host/values/ValueReader.h"

#include <QMimeData>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
const QLatin1String typedForm("application/x-quillmap-cells");

Cells rowsOf(const QVariantList &rows)
{
    Cells cells;
    cells.reserve(rows.size());
    for (const QVariant &row : rows)
        cells.append(row.toList());
    return cells;
}

Cells cellsOfText(const QString &text)
{
    StepHost::ImportForm form;
    form.shape = StepHost::ImportShape::Rows;
    form.csv.separator = QLatin1Char('\t');
    form.types = {StepHost::ColumnType::Auto};
    auto rows = importedRows(text, form);
    if (!rows) {
        // A quotation mark that is a character like any other.
        form.csv.quote = QChar();
        rows = importedRows(text, form);
    }
    if (!rows)
        return {};
    const auto value = importedValue(*rows, form, VarType::Table);
    return value ? rowsOf(*value) : Cells();
}
} // namespace

QMimeData *mimeOfCells(const Cells &cells)
{
    QVariantList rows;
    QVector<QStringList> texts;
    for (const QVariantList &row : cells) {
        rows.append(QVariant(row));
        texts.append(QStringList());
        for (const QVariant &cell : row)
            texts.last().append(ItemValue::editText(cell));
    }
    auto *mime = new QMimeData;
    if (const auto json = StepHost::valueToJson(rows))
        mime->setData(typedForm, *json);
    StepHost::CsvForm form;
    form.separator = QLatin1Char('\t');
    QString text = formatCsv(texts, form).value_or(QString());
    text.chop(1); // A line of text is pasted as such, without its end.
    mime->setText(text);
    return mime;
}

Cells cellsOfMime(const QMimeData &mime)
{
    if (mime.hasFormat(typedForm)) {
        const auto rows = StepHost::valueFromJson(mime.data(typedForm));
        if (rows)
            return rowsOf(rows->toList());
    }
    return cellsOfText(mime.text());
}

QVariant fittingCell(const QVariant &cell, const QVariant &present)
{
    const ItemKind kind = ItemValue::kind(present);
    const bool hasType = kind != ItemKind::Empty && kind != ItemKind::Other && kind != ItemKind::List;
    if (!hasType || ItemValue::kind(cell) == ItemKind::Empty)
        return cell;
    return ItemValue::convert(cell, kind).value_or(cell);
}
} // namespace Workbench
