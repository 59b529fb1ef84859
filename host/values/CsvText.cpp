#include "CsvText.h"

#include "ErrorTexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace StepHost
{
namespace
{
bool isLineBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r');
}

class CsvReader
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::CsvReader)

public:
    CsvReader(const QString &text, const CsvForm &form) : m_text(text), m_form(form) { }

    Result<QVector<QStringList>> read(int mostRows)
    {
        QVector<QStringList> rows;
        QStringList row;
        int cells = 0;
        while (m_position < m_text.size() && rows.size() < mostRows) {
            m_column = row.size() + 1;
            if (++cells > maxCells)
                return refuse(m_line, tr("here are more than %1 cells").arg(maxCells));
            const Result<QString> cell = readCell();
            if (!cell)
                return failure(cell.error());
            row.append(*cell);
            if (takeSeparator()) {
                if (m_position == m_text.size())
                    row.append(QString());
                else
                    continue;
            }
            takeLineBreak();
            rows.append(row);
            row.clear();
        }
        return rows;
    }

private:
    bool atEnd() const
    {
        return m_position >= m_text.size();
    }

    bool atLineBreak() const
    {
        return !atEnd() && isLineBreak(m_text.at(m_position));
    }

    bool atSeparator() const
    {
        return !atEnd() && m_text.at(m_position) == m_form.separator;
    }

    bool takeSeparator()
    {
        if (!atSeparator())
            return false;
        ++m_position;
        return true;
    }

    void takeLineBreak()
    {
        if (!atLineBreak())
            return;
        if (m_text.midRef(m_position, 2) == QLatin1String("\r\n"))
            ++m_position;
        ++m_position;
        ++m_line;
    }

    Result<QString> readCell()
    {
        if (!m_form.quote.isNull() && !atEnd() && m_text.at(m_position) == m_form.quote)
            return readQuotedCell();
        const int start = m_position;
        while (!atEnd() && !atLineBreak() && !atSeparator())
            ++m_position;
        return m_text.mid(start, m_position - start);
    }

    Result<QString> readQuotedCell()
    {
        QString cell;
        const int openedAt = m_line;
        ++m_position;
        while (!atEnd()) {
            const QChar c = m_text.at(m_position++);
            if (c == QLatin1Char('\n'))
                ++m_line;
            if (c != m_form.quote) {
                cell.append(c);
                continue;
            }
            if (!atEnd() && m_text.at(m_position) == m_form.quote) {
                cell.append(c);
                ++m_position;
                continue;
            }
            if (atEnd() || atLineBreak() || atSeparator())
                return cell;
            return refuse(m_line,
                          tr("a separator or the end of the line has to follow the closing quotation mark"));
        }
        return refuse(openedAt, tr("the quotation mark that opens here is never closed"));
    }

    tl::unexpected<QString> refuse(int line, const QString &reason) const
    {
        return failure(
            tr("line %1, column %2: %3").arg(QString::number(line), QString::number(m_column), reason));
    }

    const QString &m_text;
    CsvForm m_form;
    int m_position = 0;
    int m_line = 1;
    int m_column = 1;
};

bool needsQuotes(const QString &cell, const CsvForm &form)
{
    return std::any_of(cell.cbegin(), cell.cend(), [&form](QChar c) {
        return c == form.separator || isLineBreak(c) || (!form.quote.isNull() && c == form.quote);
    });
}

QString inQuotes(QString cell, QChar quote)
{
    cell.replace(quote, QString(2, quote));
    return quote + cell + quote;
}
} // namespace

Result<QVector<QStringList>> parseCsv(const QString &text, const CsvForm &form, int mostRows)
{
    return CsvReader(text, form).read(mostRows);
}

Result<QVector<QStringList>> parseLines(const QString &text, int mostLines)
{
    QVector<QStringList> lines;
    int start = 0;
    while (start < text.size() && lines.size() < mostLines) {
        if (lines.size() == maxCells)
            return failure(
                ErrorTexts::tr("line %1: here are more than %2 lines").arg(lines.size() + 1).arg(maxCells));
        int end = text.indexOf(QLatin1Char('\n'), start);
        const int next = end < 0 ? text.size() : end + 1;
        if (end < 0)
            end = text.size();
        else if (end > start && text.at(end - 1) == QLatin1Char('\r'))
            --end;
        lines.append(QStringList(text.mid(start, end - start)));
        start = next;
    }
    return lines;
}

QChar guessSeparator(const QString &text)
{
    constexpr int shownRows = 50;
    constexpr int shownSize = 100000;
    const QString start = text.left(shownSize);
    QChar best = QLatin1Char(',');
    int mostColumns = 1;
    for (const char separator : {',', ';', '\t', '|'}) {
        const auto rows = parseCsv(start, {QLatin1Char(separator), QLatin1Char('"')}, shownRows);
        if (!rows || rows->isEmpty())
            continue;
        const int columns = rows->first().size();
        const bool isCutOff = rows->size() > 1 && start.size() < text.size();
        const bool isEven = std::all_of(rows->cbegin(), rows->cend() - (isCutOff ? 1 : 0),
                                        [columns](const QStringList &row) { return row.size() == columns; });
        if (isEven && columns > mostColumns) {
            mostColumns = columns;
            best = QLatin1Char(separator);
        }
    }
    return best;
}

Result<QString> formatCsv(const QVector<QStringList> &rows, const CsvForm &form)
{
    QString text;
    for (int row = 0; row < rows.size(); ++row) {
        const QStringList &cells = rows.at(row);
        for (int column = 0; column < cells.size(); ++column) {
            if (column > 0)
                text.append(form.separator);
            const QString &cell = cells.at(column);
            if (!needsQuotes(cell, form)) {
                text.append(cell);
            } else if (!form.quote.isNull()) {
                text.append(inQuotes(cell, form.quote));
            } else {
                return failure(
                    ErrorTexts::tr("row %1, column %2 holds a separator or a line break, which this form "
                                   "of text cannot; choose a .csv file")
                        .arg(row + 1)
                        .arg(column + 1));
            }
        }
        text.append(QLatin1Char('\n'));
    }
    return text;
}
} // namespace StepHost
