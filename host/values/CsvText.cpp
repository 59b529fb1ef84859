#include "CsvText.h"

#include <QCoreApplication>

#include <algorithm>

namespace StepHost
{
namespace
{
class CsvReader
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::CsvReader)

public:
    explicit CsvReader(const QString &text) : m_text(text) { }

    Result<QVector<QStringList>> read()
    {
        QVector<QStringList> rows;
        QStringList row;
        while (m_position < m_text.size()) {
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
        return !atEnd()
            && (m_text.at(m_position) == QLatin1Char('\n') || m_text.at(m_position) == QLatin1Char('\r'));
    }

    bool takeSeparator()
    {
        if (atEnd() || m_text.at(m_position) != QLatin1Char(','))
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
        if (!atEnd() && m_text.at(m_position) == QLatin1Char('"'))
            return readQuotedCell();
        const int start = m_position;
        while (!atEnd() && !atLineBreak() && m_text.at(m_position) != QLatin1Char(','))
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
            if (c != QLatin1Char('"')) {
                cell.append(c);
                continue;
            }
            if (!atEnd() && m_text.at(m_position) == QLatin1Char('"')) {
                cell.append(c);
                ++m_position;
                continue;
            }
            if (atEnd() || atLineBreak() || m_text.at(m_position) == QLatin1Char(','))
                return cell;
            return failure(
                tr("line %1: a comma or the end of the line has to follow the closing quotation mark")
                    .arg(m_line));
        }
        return failure(tr("line %1: the quotation mark that opens here is never closed").arg(openedAt));
    }

    const QString &m_text;
    int m_position = 0;
    int m_line = 1;
};

QString formatCell(const QString &cell)
{
    const bool needsQuotes = std::any_of(cell.cbegin(), cell.cend(), [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\n')
            || c == QLatin1Char('\r');
    });
    if (!needsQuotes)
        return cell;
    QString escaped = cell;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}
} // namespace

Result<QVector<QStringList>> parseCsv(const QString &text)
{
    return CsvReader(text).read();
}

QString formatCsv(const QVector<QStringList> &rows)
{
    QString text;
    for (const QStringList &row : rows) {
        for (int i = 0; i < row.size(); ++i) {
            if (i > 0)
                text.append(QLatin1Char(','));
            text.append(formatCell(row.at(i)));
        }
        text.append(QLatin1Char('\n'));
    }
    return text;
}
} // namespace StepHost
