#include "ValueTexts.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

QVariant literalValue(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? QVariant(number) : QVariant(text);
}

bool parseBoolText(const QString &text, bool *out)
{
    static const char *const trueTexts[] = {"true", "1", "yes", "是", "y"};
    static const char *const falseTexts[] = {"false", "0", "no", "否", "n", ""};

    const QString word = text.trimmed().toLower();
    const auto isWord = [&word](const char *candidate) { return word == QString::fromUtf8(candidate); };
    const bool isTrue = std::any_of(std::begin(trueTexts), std::end(trueTexts), isWord);
    if (!isTrue && std::none_of(std::begin(falseTexts), std::end(falseTexts), isWord))
        return false;
    if (out)
        *out = isTrue;
    return true;
}

bool parseListLiteral(const QString &text, QVariantList *out)
{
    const QString trimmed = text.trimmed();
    if (!trimmed.startsWith(QLatin1Char('[')) || !trimmed.endsWith(QLatin1Char(']')))
        return false;
    QVariantList list;
    const QString inner = trimmed.mid(1, trimmed.size() - 2);
    const auto parts = inner.splitRef(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QStringRef &part : parts) {
        const QStringRef item = part.trimmed();
        if (!item.isEmpty())
            list.append(literalValue(item.toString()));
    }
    if (out)
        *out = list;
    return true;
}

QVariantList parseTableJson(const QString &text)
{
    QVariantList rows;
    const QJsonArray table = QJsonDocument::fromJson(text.trimmed().toUtf8()).array();
    for (const QJsonValue &line : table) {
        if (!line.isArray())
            return QVariantList();
        QVariantList row;
        const QJsonArray cells = line.toArray();
        for (const QJsonValue &cell : cells)
            row.append(QVariant(cell.toString()));
        rows.append(QVariant(row));
    }
    return rows;
}

bool parseIndexText(const QString &text, int &out)
{
    bool isNumber = false;
    out = text.trimmed().toInt(&isNumber);
    return isNumber;
}
