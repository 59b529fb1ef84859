#include "ValueFile.h"

#include "InputFile.h"
#include "OutputFile.h"
#include "host/values/CsvText.h"
#include "host/values/ItemValue.h"

#include <QDir>
#include <QFileInfo>

namespace StepHost
{
namespace
{
// What `read` makes of the bytes of a file.
template<typename Values>
Result<Values> readFile(const QString &fileName, Result<Values> (*read)(const QByteArray &))
{
    return readInputFile(fileName).and_then([&](const QByteArray &bytes) {
        return read(bytes).map_error(
            [&](const QString &error) { return QStringLiteral("%1: %2").arg(fileName, error); });
    });
}

Result<QVector<QStringList>> readCsv(const QByteArray &utf8)
{
    return readText(utf8).and_then(parseCsv);
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

Result<QVariantList> ValueFile::readList(const QString &fileName)
{
    if (formOf(fileName) == Form::Lines)
        return readFile(fileName, readLines);
    return readFile(fileName, readCsv).map([](const QVector<QStringList> &rows) {
        QVariantList items;
        for (const QStringList &row : rows) {
            for (const QString &cell : row)
                items.append(cell);
        }
        return items;
    });
}

Result<QVariantList> ValueFile::readTable(const QString &fileName)
{
    if (formOf(fileName) == Form::Lines) {
        return readFile(fileName, readLines).map([](QVariantList lines) {
            for (QVariant &line : lines)
                line = QVariantList{line};
            return lines;
        });
    }
    return readFile(fileName, readCsv).map([](const QVector<QStringList> &rows) {
        QVariantList table;
        for (const QStringList &row : rows)
            table.append(QVariant(QVariant(row).toList()));
        return table;
    });
}

Result<QString> ValueFile::write(const QString &fileName, const QString &text)
{
    const Result<QString> written = writeOutputFile(fileName, text.toUtf8());
    const auto named = [&fileName](const QString &message) {
        return tr("%1: %2").arg(QDir::toNativeSeparators(fileName), message);
    };
    if (!written)
        return failure(named(written.error()));
    return written->isEmpty() ? QString() : named(*written);
}

Result<QString> ValueFile::writeList(const QString &fileName, const QVariantList &list)
{
    QVector<QStringList> rows;
    rows.reserve(list.size());
    for (const QVariant &item : list)
        rows.append(QStringList(ItemValue::editText(item)));
    if (formOf(fileName) == Form::Csv)
        return write(fileName, formatCsv(rows));
    QString text;
    for (int i = 0; i < rows.size(); ++i) {
        const QString &line = rows.at(i).first();
        if (line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')))
            return failure(tr("Item %1 has a line break, which a text file with one item a line cannot hold. "
                              "Choose a .csv file.")
                               .arg(i));
        text.append(line).append(QLatin1Char('\n'));
    }
    return write(fileName, text);
}

Result<QString> ValueFile::writeTable(const QString &fileName, const QVariantList &rows)
{
    QVector<QStringList> texts;
    texts.reserve(rows.size());
    for (const QVariant &row : rows)
        texts.append(rowTexts(row));
    return write(fileName, formatCsv(texts));
}
} // namespace StepHost
