#include "SettingValues.h"

#include "host/values/QuotedText.h"

#include <QBitArray>
#include <QDataStream>
#include <QDateTime>
#include <QLine>
#include <QMetaEnum>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QUrl>
#include <QUuid>

#include <cmath>
#include <cstring>
#include <limits>

namespace StepHost
{
namespace
{
template<typename Number>
QVariantList numbers()
{
    using Limits = std::numeric_limits<Number>;
    QVariantList values{QVariant::fromValue(Limits::lowest()), QVariant::fromValue(Limits::max())};
    for (const int number : {0, 1, 7, 100})
        values.append(QVariant::fromValue(Number(number)));
    if (!Limits::is_signed)
        values.append(QVariant::fromValue(Number(Limits::max() - 1)));
    else
        values.append(QVariant::fromValue(Number(-1)));
    return values;
}

// One more than a double holds exactly, and one more than 32 bits.
template<typename Number>
QVariantList wideNumbers()
{
    return numbers<Number>() << QVariant::fromValue(Number((Number(1) << 53) + 1))
                             << QVariant::fromValue(Number((Number(1) << 32) + 5));
}

template<typename Number>
QVariantList reals()
{
    using Limits = std::numeric_limits<Number>;
    QVariantList values;
    for (const Number number : {Number(0.1), Number(-1234.56789), Limits::lowest(), Limits::denorm_min(),
                                Limits::epsilon(), Limits::infinity(), Number(0)})
        values.append(QVariant::fromValue(number));
    return values;
}

QVariantList texts()
{
    // What each text differs in is dropped or changed by one careless step or another.
    static const char16_t *const plain[] = {u"x",
                                            u"",
                                            u"  both  ends  ",
                                            u"a\tb",
                                            u"line\nline\n",
                                            u"return\r\nline\rline",
                                            u"\u00e9",
                                            u"e\u0301",
                                            u"ÄäSsß İiIı",
                                            u"\ufeffmark",
                                            u"a\u200bb\u00adc\u202ed",
                                            u"$name",
                                            u"$$name",
                                            u"$a.b.c",
                                            u"%1 %2 %%",
                                            u"a\\n\\\\b",
                                            u"\"quoted\" 'too'",
                                            u"<b>&amp;</b>",
                                            u"0x10",
                                            u" 1 ",
                                            u"1,5",
                                            u"007",
                                            u"12345678901234567890123",
                                            u"-0.00000000000000000001",
                                            u"2147483648",
                                            u"true",
                                            u"[1, \"2\"]",
                                            u"null",
                                            u"ﬁ ①",
                                            u"\U0001f600",
                                            u"日本語 中文",
                                            u"a;b|c,d",
                                            u"/a//b/../c/",
                                            u"\u2028\u0085"};
    QVariantList values;
    for (const char16_t *text : plain)
        values.append(QString::fromUtf16(text));
    values.append(QString(QChar(0xd800)));
    values.append(QString(QChar(0xdc00)) + QLatin1Char('x') + QChar(0xdbff));
    values.append(QLatin1Char('a') + QString(QChar(0)) + QLatin1Char('b'));
    values.append(QString(100000, QLatin1Char('y')));
    return values;
}

QVariantList moments()
{
    const QDate day(2024, 2, 29);
    const QTime time(23, 59, 59, 999);
    return {QDateTime(day, time, Qt::UTC), QDateTime(day, time, Qt::OffsetFromUTC, 5 * 3600 + 45 * 60),
            QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC), QDateTime(QDate(9999, 12, 31), time, Qt::UTC)};
}

QVariantList enumerators(const QMetaEnum &metaEnum)
{
    QVariantList values;
    for (int i = 0; i < metaEnum.keyCount(); ++i) {
        if (!values.contains(metaEnum.value(i)))
            values.append(metaEnum.value(i));
    }
    return values;
}

QVariantList variants()
{
    return {1,
            QVariant::fromValue<qlonglong>(1),
            1.0,
            QStringLiteral("1"),
            true,
            QByteArray("1"),
            QDate(2024, 2, 29)};
}

QVariantList textLists()
{
    return {QStringList{QStringLiteral("a"), QStringLiteral("b")}, QStringList{},
            QStringList{QString(QLatin1String(""))},
            QStringList{QString(QLatin1String("")), QStringLiteral("a"), QStringLiteral("a"),
                        QString(QLatin1String(""))},
            QStringList{QStringLiteral("a,b"), QStringLiteral(" c "), QStringLiteral("d;e|f\n")}};
}

bool isSameReal(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

bool isEnumeration(int type)
{
    return (QMetaType::typeFlags(type) & QMetaType::IsEnumeration) != 0;
}

int storedType(const QMetaProperty &setting)
{
    return setting.isEnumType() ? int(QMetaType::UnknownType) : setting.userType();
}
} // namespace

QVariantList storableValues(const QMetaProperty &setting)
{
    if (setting.isEnumType())
        return enumerators(setting.enumerator());
    switch (storedType(setting)) {
    case QMetaType::QString:
        return texts();
    case QMetaType::Bool:
        return {true, false};
    case QMetaType::Int:
        return numbers<int>();
    case QMetaType::UInt:
        return numbers<uint>();
    case QMetaType::LongLong:
        return wideNumbers<qlonglong>();
    case QMetaType::ULongLong:
        return wideNumbers<qulonglong>();
    case QMetaType::Long:
        return numbers<long>();
    case QMetaType::ULong:
        return numbers<ulong>();
    case QMetaType::Short:
        return numbers<short>();
    case QMetaType::UShort:
        return numbers<ushort>();
    case QMetaType::Double:
        return reals<double>();
    case QMetaType::Float:
        return reals<float>();
    case QMetaType::QChar:
        return {QChar(0), QChar(0x20), QChar(0xe9), QChar(0xd800), QChar(0xffff)};
    case QMetaType::QStringList:
        return textLists();
    case QMetaType::QVariantList:
        return {QVariantList{}, QVariantList{1, 1.5, QStringLiteral("a"), QVariant(), QVariantList{2}}};
    case QMetaType::QVariantMap:
        return {QVariantMap{}, QVariantMap{{QStringLiteral("b"), 1}, {QStringLiteral("a"), QVariantList{2}}}};
    case QMetaType::QVariant:
        return variants();
    case QMetaType::QByteArray:
        return {QByteArray("bytes"),        QByteArray(""),         QByteArray("a\0b", 3),
                QByteArray("\xff\xfe\x80"), QByteArray("line\r\n"), QByteArray(10000, '\x7f')};
    case QMetaType::QDate:
        return {QDate(2024, 2, 29), QDate(1899, 12, 31), QDate(1, 1, 1), QDate(9999, 12, 31), QDate()};
    case QMetaType::QTime:
        return {QTime(0, 0), QTime(23, 59, 59, 999), QTime(12, 30)};
    case QMetaType::QDateTime:
        return moments();
    case QMetaType::QUrl:
        return {QUrl(QStringLiteral("https://example.com/a%20b?c=d#e")),
                QUrl(QStringLiteral("file:///tmp/x")), QUrl()};
    case QMetaType::QUuid:
        return {QUuid(QStringLiteral("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}")), QUuid()};
    case QMetaType::QSize:
        return {QSize(3, 4), QSize(), QSize(-5, 7)};
    case QMetaType::QSizeF:
        return {QSizeF(3.25, 4.5), QSizeF(0, 0)};
    case QMetaType::QPoint:
        return {QPoint(3, -4), QPoint()};
    case QMetaType::QPointF:
        return {QPointF(3.25, -4.5), QPointF()};
    case QMetaType::QRect:
        return {QRect(1, 2, 3, 4), QRect()};
    case QMetaType::QRectF:
        return {QRectF(1.5, 2.5, 3.5, 4.5), QRectF()};
    case QMetaType::QBitArray:
        return {QBitArray(9, true), QBitArray()};
    default:
        return {};
    }
}

bool isSameValue(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    if (isEnumeration(a.userType()))
        return a.toInt() == b.toInt();
    // Nobody can tell values of such a type apart.
    if (a.userType() >= int(QMetaType::User) && !QMetaType::hasRegisteredComparators(a.userType()))
        return true;
    switch (a.userType()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return isSameReal(a.toDouble(), b.toDouble());
    case QMetaType::QDateTime:
        return a == b && a.toDateTime().timeSpec() == b.toDateTime().timeSpec()
            && a.toDateTime().offsetFromUtc() == b.toDateTime().offsetFromUtc();
    case QMetaType::QVariantList: {
        const QVariantList first = a.toList();
        const QVariantList second = b.toList();
        return std::equal(first.begin(), first.end(), second.begin(), second.end(), isSameValue);
    }
    default:
        // QVariant compares texts that read like numbers as numbers only where the types differ.
        return a == b;
    }
}

QString shownValue(const QVariant &value)
{
    if (value.userType() == QMetaType::QString)
        return quoted(value.toString());
    if (value.userType() == QMetaType::QStringList) {
        const QStringList list = value.toStringList();
        return QStringLiteral("%1 texts, %2").arg(list.size()).arg(quoted(list.join(QLatin1Char('|'))));
    }
    if (value.userType() == QMetaType::QByteArray)
        return QStringLiteral("%1 bytes, %2")
            .arg(value.toByteArray().size())
            .arg(quoted(QString::fromLatin1(value.toByteArray())));
    if (value.userType() == QMetaType::QVariantList)
        return QStringLiteral("a list of %1").arg(value.toList().size());
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return QStringLiteral("%1 (%2)")
            .arg(value.toDouble(), 0, 'g', 17)
            .arg(QString::fromUtf8(value.typeName()));
    return QStringLiteral("%1 (%2)").arg(bounded(value.toString(), 60), QString::fromUtf8(value.typeName()));
}
} // namespace StepHost
