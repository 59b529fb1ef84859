#include "ValueFile.h"

#include "CsvText.h"
#include "InputFile.h"
#include "ItemValue.h"
#include "OutputFile.h"

#include <QFileInfo>

namespace StepHost
{
namespace
{
/// The lines of a file, or its rows of cells, as one row of texts for each line.
QString readRows(const QString &fileName, QVector<QStringList> &rows)
{
    const InputFile file = readInputFile(fileName);
    if (!file)
        return file.error;
    const LinesResult lines = readLines(file.bytes);
    if (!lines)
        return QStringLiteral("%1: %2").arg(fileName, lines.error);
    if (ValueFile::formOf(fileName) == ValueFile::Form::Csv) {
        QString error;
        QString text = QString::fromUtf8(file.bytes);
        return parseCsv(text, rows, error) ? QString() : QStringLiteral("%1: %2").arg(fileName, error);
    }
    rows.reserve(lines.lines.size());
    for (const QVariant &line : lines.lines)
        rows.append(QStringList(line.toString()));
    return QString();
}

QStringList rowTexts(const QVariant &row)
{
    if (ItemValue::kind(row) != ItemKind::List)
        return {ItemValue::editText(row)};
    QStringList texts;
    const QVariantList cells = row.toList();
    for (const QVariant &cell : cells)
        texts.append(ItemValue::editText(cell));
    return texts;
}
} // namespace

ValueFile::Form ValueFile::formOf(const QString &fileName)
{
    const bool isCsv = QFileInfo(fileName).suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0;
    return isCsv ? Form::Csv : Form::Lines;
}

QString ValueFile::readList(const QString &fileName, QVariantList &list)
{
    QVector<QStringList> rows;
    const QString error = readRows(fileName, rows);
    if (!error.isEmpty())
        return error;
    QVariantList items;
    for (const QStringList &row : qAsConst(rows)) {
        for (const QString &cell : row)
            items.append(cell);
    }
    list = items;
    return QString();
}

QString ValueFile::readTable(const QString &fileName, QVariantList &rows)
{
    QVector<QStringList> texts;
    const QString error = readRows(fileName, texts);
    if (!error.isEmpty())
        return error;
    QVariantList table;
    table.reserve(texts.size());
    for (const QStringList &row : qAsConst(texts)) {
        QVariantList cells;
        for (const QString &cell : row)
            cells.append(cell);
        table.append(QVariant(cells));
    }
    rows = table;
    return QString();
}

QString ValueFile::writeList(const QString &fileName, const QVariantList &list)
{
    QVector<QStringList> rows;
    rows.reserve(list.size());
    for (const QVariant &item : list)
        rows.append(QStringList(ItemValue::editText(item)));
    if (formOf(fileName) == Form::Csv)
        return replaceFile(fileName, formatCsv(rows).toUtf8());
    QString text;
    for (int i = 0; i < rows.size(); ++i) {
        const QString &line = rows.at(i).first();
        if (line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')))
            return tr("Item %1 has a line break, which a text file with one item a line cannot hold. "
                      "Choose a .csv file.")
                .arg(i);
        text.append(line).append(QLatin1Char('\n'));
    }
    return replaceFile(fileName, text.toUtf8());
}

QString ValueFile::writeTable(const QString &fileName, const QVariantList &rows)
{
    QVector<QStringList> texts;
    texts.reserve(rows.size());
    for (const QVariant &row : rows)
        texts.append(rowTexts(row));
    return replaceFile(fileName, formatCsv(texts).toUtf8());
}
} // namespace StepHost
