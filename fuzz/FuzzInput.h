#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What every fuzz target defines; libFuzzer and the replay program call it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Ends the program when \a holds is false, which is how a target reports a finding.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "finding: %s\n", what);
    std::abort();
}

/// An input, read line by line, so that seeds are texts that can be read and edited.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_rest(QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size)))
    {
    }

    bool atEnd() const
    {
        return m_rest.isEmpty();
    }

    /// The next line without its line break; empty at the end.
    QByteArray line()
    {
        const int length = m_rest.indexOf('\n');
        const QByteArray line = m_rest.left(length);
        m_rest = length < 0 ? QByteArray() : m_rest.mid(length + 1);
        return line;
    }

    /// The next line as a text. One that begins with byte 1 holds UTF-16 code units, so that texts with
    /// lone surrogates occur too; any other is UTF-8.
    QString text()
    {
        return toText(line());
    }

    /// Everything that is left.
    QByteArray rest() const
    {
        return m_rest;
    }

    /// The next element: a line whose first character tells its type and whose rest its value. A row has its
    /// cells, elements that take one line, in the line itself.
    QVariant element(int depth = 0)
    {
        const QByteArray whole = line();
        if (whole.startsWith('['))
            return depth < maximumDepth ? elements(depth + 1) : QVariantList();
        if (!whole.startsWith('r'))
            return cell(whole);
        QVariantList row;
        const QList<QByteArray> cells = whole.mid(1).split('|');
        for (const QByteArray &text : cells)
            row.append(cell(text));
        return row;
    }

    /// The element that \a whole, a line or a part of one, tells of.
    static QVariant cell(const QByteArray &whole)
    {
        const QByteArray value = whole.mid(1);
        switch (whole.isEmpty() ? '\0' : whole.front()) {
        case 'i':
            return static_cast<int>(value.toLongLong());
        case 'u':
            return static_cast<uint>(value.toULongLong());
        case 'l':
            return value.toLongLong();
        case 'L':
            return value.toULongLong();
        case 'd':
            return value.toDouble();
        case 'f':
            return value.toFloat();
        case 'b':
            return value == "1";
        case 's':
            return toText(value);
        case 'c':
            return toText(value).isEmpty() ? QChar() : toText(value).front();
        case 'y':
            return QByteArray(value.constData(), value.size());
        case 'q':
            return toText(value).split('|');
        case 'v': {
            QVector<double> numbers;
            const QList<QByteArray> parts = value.split('|');
            for (const QByteArray &number : parts)
                numbers.append(number.toDouble());
            return QVariant::fromValue(numbers);
        }
        case 'm':
            return QVariantMap{{toText(value), toText(value)}};
        case 't':
            return QDate::fromJulianDay(value.toLongLong());
        case 'h':
            return QTime::fromMSecsSinceStartOfDay(value.toInt());
        case 'w':
            return QDateTime::fromMSecsSinceEpoch(value.toLongLong(), Qt::UTC);
        case 'o':
            return QVariant::fromValue(object());
        case 'z':
            return QVariant(value.isEmpty() ? QVariant::String : QVariant::Int);
        default:
            return QVariant();
        }
    }

    /// The elements up to a line that begins with "]" or to the end.
    QVariantList elements(int depth = 0)
    {
        QVariantList list;
        while (!atEnd()) {
            if (m_rest.startsWith(']')) {
                line();
                break;
            }
            const QVariant next = element(depth);
            if (list.size() < maximumLength)
                list.append(next);
        }
        return list;
    }

    /// An object with the properties that a plain QObject has.
    static QObject *object()
    {
        static QObject object;
        return &object;
    }

private:
    static constexpr int maximumDepth = 8;
    static constexpr int maximumLength = 100;

    static QString toText(const QByteArray &bytes)
    {
        if (!bytes.startsWith('\1'))
            return QString::fromUtf8(bytes);
        QString text;
        for (int i = 1; i + 1 < bytes.size(); i += 2)
            text.append(QChar(static_cast<uchar>(bytes[i]), static_cast<uchar>(bytes[i + 1])));
        return text;
    }

    QByteArray m_rest;
};
