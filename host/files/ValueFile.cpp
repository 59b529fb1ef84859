#include "ValueFile.h"

#include "OutputFile.h"
#include "host/values/CsvText.h"
#include "host/values/ErrorTexts.h"
#include "host/values/ItemValue.h"
#include "host/values/JsonValue.h"

#include <QDir>
#include <QFileInfo>

namespace StepHost
{
namespace
{
enum class Form { Lines, Csv, Tsv, Json };

Form formOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("csv"))
        return Form::Csv;
    if (suffix == QLatin1String("tsv"))
        return Form::Tsv;
    return suffix == QLatin1String("json") ? Form::Json : Form::Lines;
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

Result<QByteArray> rowsText(const QVariantList &rows, const CsvForm &form)
{
    QVector<QStringList> texts;
    texts.reserve(rows.size());
    for (const QVariant &row : rows)
        texts.append(rowTexts(row));
    return formatCsv(texts, form).map([](const QString &text) { return text.toUtf8(); });
}

Result<QByteArray> linesText(const QVariantList &list)
{
    QString text;
    for (int i = 0; i < list.size(); ++i) {
        const QString line = ItemValue::editText(list.at(i));
        if (line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')))
            return failure(
                ErrorTexts::tr("Item %1 has a line break, which a text file with one item a line cannot "
                               "hold. Choose a .csv file.")
                    .arg(i));
        text.append(line).append(QLatin1Char('\n'));
    }
    return text.toUtf8();
}

Result<QString> write(const QString &fileName, const Result<QByteArray> &bytes)
{
    const auto named = [&fileName](const QString &message) {
        return ErrorTexts::tr("%1: %2").arg(QDir::toNativeSeparators(fileName), message);
    };
    const Result<QString> written =
        bytes.and_then([&](const QByteArray &all) { return writeOutputFile(fileName, all); });
    if (!written)
        return failure(named(written.error()));
    return written->isEmpty() ? QString() : named(*written);
}

Result<QByteArray> jsonText(const QVariantList &values)
{
    return valueToJson(QVariant(values)).map([](const QByteArray &json) { return json + '\n'; });
}

constexpr QChar tabulator = QLatin1Char('\t');
} // namespace

Result<QString> writeList(const QString &fileName, const QVariantList &list)
{
    switch (formOf(fileName)) {
    case Form::Csv:
        return write(fileName, rowsText(list, CsvForm()));
    case Form::Tsv:
        return write(fileName, rowsText(list, {tabulator, CsvForm().quote}));
    case Form::Json:
        return write(fileName, jsonText(list));
    case Form::Lines:
        break;
    }
    return write(fileName, linesText(list));
}

Result<QString> writeTable(const QString &fileName, const QVariantList &rows)
{
    switch (formOf(fileName)) {
    case Form::Csv:
        return write(fileName, rowsText(rows, CsvForm()));
    case Form::Json:
        return write(fileName, jsonText(rows));
    case Form::Tsv:
    case Form::Lines:
        break;
    }
    return write(fileName, rowsText(rows, {tabulator, QChar()}));
}
} // namespace StepHost
