#pragma once

#include <QByteArray>
#include <QChar>
#include <QDate>
#include <QDateTime>
#include <QMetaType>
#include <QUrl>
#include <QUuid>
#include <QVariant>

#include <climits>
#include <limits>

/// A user type that compares by its number.
struct Numbered
{
    int number = 0;
};
inline bool operator==(const Numbered &left, const Numbered &right)
{
    return left.number == right.number;
}
inline bool operator<(const Numbered &left, const Numbered &right)
{
    return left.number < right.number;
}
Q_DECLARE_METATYPE(Numbered)

/// A user type that Qt knows nothing about but its name.
struct Opaque
{
};
Q_DECLARE_METATYPE(Opaque)

/// Values of every kind that a list can hold, chosen where comparing, converting and ordering are most
/// likely to go wrong.
inline QVariantList awkwardValues()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto nested = [](const QVariantList &elements) { return QVariant(elements); };
    static const bool registered = QMetaType::registerComparators<Numbered>();
    Q_UNUSED(registered)

    QVariantList values;
    values << 0 << 1 << -1 << 2 << 9 << 10 << INT_MAX << INT_MIN;
    values << 0u << 1u << UINT_MAX << 0ll << 1ll << LLONG_MAX << LLONG_MIN << 0ull << 1ull << ULLONG_MAX;
    values << QVariant::fromValue(short(1)) << QVariant::fromValue(ushort(65535)) << QVariant::fromValue(1l)
           << QVariant::fromValue('1') << QVariant::fromValue(static_cast<signed char>(-1))
           << QVariant::fromValue(uchar(255));
    values << 0.0 << -0.0 << 1.0 << 1.0 + 1e-13 << 1.0 + 1e-11 << 1.0 - 1e-13 << 1e-13 << 1e-320 << 1e300
           << -1e300;
    values << 9007199254740992.0 << 9007199254740993ll << 9223372036854775808.0 << 2.5 << 0.1 << 0.1f << 1.0f
           << 2.5f;
    values << std::numeric_limits<double>::quiet_NaN() << -std::numeric_limits<double>::quiet_NaN()
           << infinity << -infinity << std::numeric_limits<float>::infinity()
           << std::numeric_limits<float>::quiet_NaN();
    values << true << false;
    for (const char *text : {"",
                             " ",
                             "0",
                             "1",
                             "-1",
                             "1.0",
                             "01",
                             " 1",
                             "9",
                             "10",
                             "100",
                             "1e0",
                             "0x1",
                             "1e300",
                             "nan",
                             "inf",
                             "true",
                             "false",
                             "TRUE",
                             "yes",
                             "x",
                             "a",
                             "B",
                             "b",
                             "ab",
                             "是",
                             "否",
                             "表",
                             "[1]",
                             "2020-01-02",
                             "\xf0\x9f\x98\x80"})
        values << QString(text);
    values << QString() << QString(QChar(0xffff)) << QString(QChar(0xd800)) << QString("a") + QChar(0)
           << QChar('1') << QChar('a') << QChar(0x8868);
    values << QByteArray() << QByteArray("") << QByteArray("1") << QByteArray("1.0") << QByteArray("a")
           << QByteArray("true") << QByteArray("\xff");
    values << QVariant() << QVariant(QVariant::Int) << QVariant(QVariant::Double)
           << QVariant(QVariant::String) << QVariant(QVariant::Bool) << QVariant(QVariant::List)
           << QVariant::fromValue(nullptr);
    values << nested({}) << nested({1}) << nested({1.0}) << nested({"1"}) << nested({1, 2})
           << nested({"a", "b"}) << nested({nested({1})}) << nested({QVariant()})
           << nested({std::numeric_limits<double>::quiet_NaN()});
    values << QStringList() << QStringList("1") << QStringList("a") << QStringList({"a", "b"});
    values << QVariantMap() << QVariantMap{{"a", 1}} << QVariantMap{{"a", 1.0}} << QVariantHash{{"a", 1}};
    values << QDate(2020, 1, 2) << QDate() << QTime(1, 2, 3)
           << QDateTime(QDate(2020, 1, 2), QTime(1, 2, 3), Qt::UTC) << QUrl("a")
           << QVariant::fromValue(QUuid());
    values << QVariant::fromValue(Numbered{1}) << QVariant::fromValue(Numbered{1})
           << QVariant::fromValue(Numbered{2}) << QVariant::fromValue(Opaque());
    return values;
}
