#pragma once

#include <QDate>
#include <QPair>
#include <QVariant>
#include <QVector>

#include <cfloat>
#include <climits>
#include <limits>
#include <random>

/// A value that numbers and texts convert to, but that converts to neither.
struct Tag
{
    int number;
};
Q_DECLARE_METATYPE(Tag)

inline bool operator==(const Tag &left, const Tag &right)
{
    return left.number == right.number;
}

inline bool operator<(const Tag &left, const Tag &right)
{
    return left.number < right.number;
}

/// Elements that are close to the borders of the rules for equality and order, grouped by what they try.
namespace ElementSamples
{
inline QVariant nullVariant(QMetaType::Type type)
{
    return QVariant(static_cast<QVariant::Type>(type));
}

inline QVariant tag(int number)
{
    static const bool registered = QMetaType::registerComparators<Tag>()
        && QMetaType::registerConverter<int, Tag>([](int value) { return Tag{value}; })
        && QMetaType::registerConverter<double, Tag>([](double value) {
                                       return Tag{qAbs(value) < INT_MAX ? int(value) : 0};
                                   })
        && QMetaType::registerConverter<QString, Tag>([](const QString &value) { return Tag{value.size()}; });
    Q_UNUSED(registered)
    return QVariant::fromValue(Tag{number});
}

inline QVariantList integers()
{
    return {0, 1, -1, 2, 7, 10, 255, 256, 65536, -65536, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1};
}

/// Doubles around the relative distance of 1e-12, up to which two of them count as equal.
inline QVariantList closeDoubles()
{
    QVariantList values;
    for (const double base : {1.0, -1.0, 0.1, 3.0, 1e-5, 123456.789, 2147483647.0, 1e300, -1e-300}) {
        values += base;
        for (const double distance : {2e-16, 1e-13, 9.99e-13, 9.999999e-13, 1e-12, 1.0000001e-12, 1.001e-12,
                                      1.9e-12, 2.1e-12, 1e-11}) {
            values += base * (1 + distance);
            values += base * (1 - distance);
        }
    }
    return values;
}

inline QVariantList extremeDoubles()
{
    const double least = std::numeric_limits<double>::denorm_min();
    const double infinity = std::numeric_limits<double>::infinity();
    QVariantList values = {0.0,
                           -0.0,
                           infinity,
                           -infinity,
                           std::numeric_limits<double>::quiet_NaN(),
                           DBL_MAX,
                           -DBL_MAX,
                           DBL_MAX * (1 - 1e-13),
                           DBL_MIN,
                           -DBL_MIN,
                           DBL_MIN * (1 - 1e-13),
                           1e-320};
    for (const double base : {0.0, 1e-312, 4.94e-312, 4.95e-312, 9.9e-312, 1e-311, 1e-310}) {
        for (int steps = 1; steps < 4; ++steps) {
            values += base + steps * least;
            values += -base - steps * least;
        }
    }
    return values;
}

/// Doubles beside integers, near and far, and out of their range.
inline QVariantList nearIntegers()
{
    QVariantList values = {0.0, 0.4, 0.5, -0.5, 1.5, 2147483648.0, -2147483649.0, 4294967297.0, 1e18};
    for (const int number : {1, -1, 7, 65536, INT_MAX, INT_MIN}) {
        for (const double distance : {0.0, 1e-15, 9e-13, 1.1e-12, 1e-9, 0.001})
            values << number * (1 + distance) << number * (1 - distance);
    }
    return values;
}

inline QVariantList texts()
{
    QVariantList values = {QString(),
                           "",
                           "a",
                           "A",
                           "b",
                           "ab",
                           "ba",
                           QString(QChar(0)),
                           QString(2, QChar(0)),
                           QString("a") + QChar(0),
                           QString(QChar(0)) + "a",
                           "12345678",
                           "112345678",
                           "212345678",
                           "12345679",
                           "report 1 of a long row.txt",
                           "report 2 of a long row.txt",
                           "Report 1 of a long row.txt",
                           "report 1 of a long row.tx",
                           "eport 1 of a long row.txt",
                           QString::fromUtf8("列表"),
                           QString::fromUtf8("列表一"),
                           QString::fromUtf8("表列"),
                           QString::fromUtf8("é"),
                           QString::fromUtf8("e\xcc\x81"),
                           QString::fromUtf8("😀"),
                           QString(QChar(0xd83d)),
                           QString(QChar(0xde00)),
                           QString(QChar(0xffff))};
    // The same low bytes in every code unit.
    values << QString(QChar(0x0161)) << QString(QChar(0x0261)) << QString(8, QChar(0x0161))
           << QString(8, QChar(0x0261)) << QString(9, QChar(0x0261));
    return values;
}

/// Texts that read as numbers, nearly do, or look like the text of one.
inline QVariantList numberTexts()
{
    return {"0",
            "-0",
            "+0",
            "1",
            "+1",
            " 1",
            "1 ",
            "01",
            "1.0",
            "1e0",
            "-1",
            "7",
            "7.0",
            "0.1",
            ".1",
            "0.10",
            "0.5",
            "1e300",
            "3",
            "nan",
            "NaN",
            "inf",
            "-inf",
            "infinity",
            "1e400",
            "1e-400",
            "0x10",
            "255",
            "true",
            "false",
            "1,5",
            "2147483647",
            "-2147483648",
            "2147483648",
            "4294967296",
            "4294967297",
            "1e+18",
            "1.0000000000000002",
            QString::fromUtf8("１"),
            "5e-324",
            "2147483647.001"};
}

/// Lists that are equal but for their length, their first element or one behind it. One with a NaN equals itself
/// alone: lists that share their elements are not compared any further.
inline QVariantList lists()
{
    const QVariantList firsts = {1,           2,
                                 1.0,         1.0 + 1e-13,
                                 1.0 + 1e-11, "1",
                                 "",          "a",
                                 "b",         std::numeric_limits<double>::quiet_NaN(),
                                 1u,          '1',
                                 QVariant(),  QVariantList{1},
                                 true};
    QVariantList values = {QVariant(QVariantList()), QStringList{"1"}, QStringList{"1", "2"}};
    for (const QVariant &first : firsts) {
        values.append(QVariant(QVariantList{first}));
        values.append(QVariant(QVariantList{first, 2}));
        values.append(QVariant(QVariantList{first, 3}));
    }
    return values;
}

/// One value or two of many other types, and null values of the common ones.
inline QVariantList otherKinds()
{
    return {QVariant(),
            true,
            false,
            nullVariant(QMetaType::Int),
            nullVariant(QMetaType::Double),
            nullVariant(QMetaType::QString),
            nullVariant(QMetaType::Bool),
            nullVariant(QMetaType::QVariantList),
            1u,
            UINT_MAX,
            qlonglong(1),
            qlonglong(4294967297),
            LLONG_MIN,
            qulonglong(1),
            ULLONG_MAX,
            1.0f,
            0.1f,
            QVariant::fromValue<short>(1),
            QVariant::fromValue<char>('1'),
            QChar('1'),
            QByteArray("1"),
            QByteArray("a"),
            QVariantList(),
            QVariantList{1, "a"},
            QVariantList{1.0, "a"},
            QVariantList{QVariantList{1}},
            QStringList{"1"},
            QVariantMap{{"a", 1}},
            QDate(2024, 2, 29),
            QTime(1, 2, 3),
            QVariant::fromValue(qMakePair(1, 2)),
            QVariant::fromValue(static_cast<QObject *>(nullptr)),
            tag(1),
            tag(7)};
}

inline QVariantList all()
{
    return integers() + closeDoubles() + extremeDoubles() + nearIntegers() + texts() + numberTexts() + lists()
        + otherKinds();
}

/// The groups, and mixtures of them, by name.
inline QVector<QPair<const char *, QVariantList>> groups()
{
    return {{"integers", integers()},
            {"close doubles", closeDoubles()},
            {"extreme doubles", extremeDoubles()},
            {"doubles near integers", integers() + nearIntegers()},
            {"texts", texts() + numberTexts()},
            {"integers and texts", integers() + texts() + numberTexts()},
            {"doubles and texts", closeDoubles() + extremeDoubles() + numberTexts()},
            {"lists", lists()},
            {"other kinds", otherKinds()},
            {"all", all()}};
}

/// \a count elements drawn from \a samples, the same for every run with the same \a seed.
inline QVariantList drawn(const QVariantList &samples, int count, unsigned seed)
{
    std::mt19937 random(seed);
    QVariantList list;
    list.reserve(count);
    for (int i = 0; i < count; ++i)
        list.append(samples.at(int(random() % unsigned(samples.size()))));
    return list;
}
} // namespace ElementSamples
