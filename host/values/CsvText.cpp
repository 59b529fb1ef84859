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

    bool read(QVector<QStringList> &rows, QString &error)
    {
        QStringList row;
        while (m_position < m_text.size()) {
            QString cell;
            if (!readCell(cell, error))
                return false;
            row.append(cell);
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
        return true;
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

    bool readCell(QString &cell, QString &error)
    {
        if (!atEnd() && m_text.at(m_position) == QLatin1Char('"'))
            return readQuotedCell(cell, error);
        const int start = m_position;
        while (!atEnd() && !atLineBreak() && m_text.at(m_position) != QLatin1Char(','))
            ++m_position;
        cell = m_text.mid(start, m_position - start);
        return true;
    }

    bool readQuotedCell(QString &cell, QString &error)
    {
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
                return true;
            error = tr("line %1: a comma or the end of the line has to follow the closing quotation mark")
                        .arg(m_line);
            return false;
        }
        error = tr("line %1: the quotation mark that opens here is never closed").arg(openedAt);
        return false;
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

bool parseCsv(const QString &text, QVector<QStringList> &rows, QString &error)
{
    QVector<QStringList> result;
    if (!CsvReader(text).read(result, error))
        return false;
    rows = result;
    return true;
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
