#include "hostapi/VariableScope.h"
#include "tests/support/ElementSamples.h"
#include "tests/support/SampleValues.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"

#include <QDateTime>
#include <QtTest>

#include <cmath>
#include <cstring>

/// Every pair of many values through the steps that look for equal elements, compared with what
/// `QVariant::operator==` answers: the values by themselves, in lists of one, and in rows.
namespace
{
using Wrap = QVariant (*)(const QVariant &);

struct Form
{
    const char *name;
    Wrap wrap;
};

constexpr Form forms[] = {
    {"values", [](const QVariant &value) { return value; }},
    {"lists of one", [](const QVariant &value) { return QVariant(QVariantList() << value); }},
    {"rows", [](const QVariant &value) { return QVariant(QVariantList() << "key" << value << 2.5); }},
    {"rows with the value twice",
     [](const QVariant &value) { return QVariant(QVariantList() << value << 7 << value); }},
};

double fromSteps(quint64 steps)
{
    double value = 0;
    std::memcpy(&value, &steps, sizeof value);
    return value;
}

quint64 stepsOf(double value)
{
    quint64 steps = 0;
    std::memcpy(&steps, &value, sizeof steps);
    return steps;
}

// Around powers of two, where integers of one kind wrap around or lose their neighbours as doubles.
QVariantList integersOfEveryKind()
{
    QVariantList values;
    for (int i = -6; i <= 6; ++i)
        values << i << qlonglong(i) << uint(i) << qulonglong(i) << double(i) << QString::number(i);
    for (const int power : {7, 8, 15, 16, 31, 32, 36, 37, 40, 43, 46, 52, 53, 62, 63}) {
        for (int distance = -1; distance <= 1; ++distance) {
            const quint64 number = (Q_UINT64_C(1) << power) + quint64(distance);
            values << int(number) << uint(number) << qlonglong(number) << qulonglong(number) << double(number)
                   << -double(number) << QString::number(number) << qlonglong(0 - number);
        }
    }
    return values;
}

// On both sides of places where doubles may be put apart, near enough to count as equal or just too far.
QVariantList doublesAroundRoundSteps()
{
    QVariantList values;
    for (const double base : {1.0, 1e-7, 12345.678, 3.3e12, 1e200}) {
        for (const int width : {12, 17, 18, 24, 27, 28}) {
            const quint64 round = stepsOf(base) >> width << width;
            for (const int distance : {-9100, -4600, -1, 0, 1, 4600, 9100}) {
                values << fromSteps(round + quint64(qint64(distance)));
                if (distance == 0)
                    values << -fromSteps(round);
            }
        }
    }
    return values;
}

QVariantList spellings()
{
    QVariantList values;
    for (const char *number :
         {"0", "1", "2", "7", "255", "2147483647", "4294967297", "1000000000000", "0.5"}) {
        for (const char *spelling : {"%1", "+%1", "-%1", " %1", "%1 ", "\t%1\n", "0%1", "%1.0", "%1.", "%1e0",
                                     "%1E+00", "%10e-1", "0x%1", "%1,0", "%1\u00a0", "(%1)"})
            values << QString(spelling).replace("%1", number);
    }
    for (const char *word :
         {"true", "false", "TRUE", "False", "yes", "inf", "INF", "+inf", "nan", "NAN", "-nan"})
        values << word;
    return values;
}

// Texts that differ in one place, in front, in the middle or at the end, short and very long.
QVariantList likeTexts()
{
    QVariantList values;
    for (const int size : {1, 4, 8, 9, 16, 33, 511, 512, 513, 514, 700, 3000}) {
        const QString text(size, 'x');
        values << text;
        for (const int place : {0, size / 2, size - 1}) {
            for (const QChar unit : {QChar('y'), QChar(0x0178)})
                values << QString(text).replace(place, 1, unit);
        }
    }
    for (int i = 0; i < 12; ++i)
        values << QString("row-%1.csv").arg(i, 6, 10, QChar('0'))
               << QString("row-%1").arg(i, 6, 10, QChar('0'));
    return values;
}

QVariantList datesAndTimes()
{
    QVariantList values;
    const QVector<QDate> dates{QDate(), QDate(1970, 1, 1), QDate(2024, 2, 29), QDate(2024, 3, 1),
                               QDate(-44, 3, 15)};
    const QVector<QTime> times{QTime(), QTime(0, 0), QTime(1, 2, 3), QTime(1, 2, 3, 4),
                               QTime(23, 59, 59, 999)};
    for (const QTime &time : times)
        values << time << time.toString() << time.toString(Qt::ISODateWithMs);
    for (const QDate &date : dates) {
        values << date << date.toString(Qt::ISODate) << date.toString(Qt::TextDate);
        for (const QTime &time : times) {
            for (const QDateTime &dateTime : {QDateTime(date, time, Qt::UTC), QDateTime(date, time),
                                              QDateTime(date, time, Qt::OffsetFromUTC, 3600)})
                values << dateTime << dateTime.toString(Qt::ISODate) << dateTime.toString(Qt::ISODateWithMs);
        }
    }
    // One moment on two dates.
    const QDateTime lateEvening(QDate(2024, 2, 29), QTime(23, 30), Qt::UTC);
    for (const QDateTime &dateTime : {lateEvening, lateEvening.toOffsetFromUtc(3600)})
        values << dateTime << dateTime.toString(Qt::ISODateWithMs) << dateTime.date() << dateTime.time();
    return values << QDateTime::fromMSecsSinceEpoch(0) << QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
}

// Lists of one length that differ in one place, by value or only by kind.
QVariantList listsOfLength(int size)
{
    QVariantList values;
    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(i);
    values.append(QVariant(list));
    for (const int place : {0, 15, 16, size / 2, size - 17, size - 16, size - 1}) {
        if (place < 0 || place >= size)
            continue;
        for (const QVariant &element :
             {QVariant(QString::number(place)), QVariant(-1), QVariant(place * (1 + 5e-13))}) {
            QVariantList other = list;
            other[place] = element;
            values.append(QVariant(other));
        }
    }
    return values;
}

constexpr int lengths[] = {1, 2, 15, 16, 17, 31, 32, 33, 34, 40};

QVariantList longLists()
{
    QVariantList values;
    for (const int length : lengths)
        values += listsOfLength(length);
    return values;
}

QVariantList nullsOfEveryKind()
{
    QVariantList values;
    for (const auto type :
         {QMetaType::Bool, QMetaType::Int, QMetaType::UInt, QMetaType::LongLong, QMetaType::ULongLong,
          QMetaType::Double, QMetaType::QString, QMetaType::QDate, QMetaType::QTime, QMetaType::QDateTime,
          QMetaType::QVariantList, QMetaType::Float})
        values << ElementSamples::nullVariant(type);
    return values;
}

const QVariantList &values()
{
    static const QVariantList all = ElementSamples::all() + awkwardValues() + integersOfEveryKind()
        + doublesAroundRoundSteps() + spellings() + likeTexts() + datesAndTimes() + longLists()
        + nullsOfEveryKind();
    return all;
}

QVariantList wrapped(const QVariantList &list, Wrap wrap)
{
    QVariantList all;
    for (const QVariant &value : list)
        all.append(wrap(value));
    return all;
}

QVariantList resultOf(const QString &typeId, const QVariantList &a, const QVariantList &b = {})
{
    VariableScope scope;
    scope.set("a", a);
    scope.set("b", b);
    const StepPointer step =
        newStep(typeId,
                typeId == "list.dedup" ? QVariantMap{{"targetVar", "a"}}
                                       : QVariantMap{{"listA", "a"}, {"listB", "b"}, {"targetVar", "a"}});
    step->setVariableScope(&scope);
    step->doOperation();
    return scope.get("a").toList();
}

bool isAmong(const QVariantList &elements, const QVariant &candidate)
{
    return std::any_of(elements.cbegin(), elements.cend(),
                       [&](const QVariant &element) { return candidate == element; });
}

// Whether the two hold the same bytes, be it by sharing them: faster than shown().
bool isSame(const QVariant &left, const QVariant &right)
{
    const int size = QMetaType::sizeOf(left.userType());
    return left.userType() == right.userType()
        && (size == 0 || std::memcmp(left.constData(), right.constData(), size_t(size)) == 0);
}

// Where the results of a scan and of the plain rule first differ; empty when they do not.
QString firstDifference(const QVariantList &actual, const QVariantList &expected)
{
    for (int i = 0; i < qMax(actual.size(), expected.size()); ++i) {
        if (i < qMin(actual.size(), expected.size()) && isSame(actual.at(i), expected.at(i)))
            continue;
        const QString left = i < actual.size() ? shown(actual.at(i)) : QString("nothing");
        const QString right = i < expected.size() ? shown(expected.at(i)) : QString("nothing");
        if (left != right)
            return QString("%1: %2 instead of %3").arg(i).arg(left, right);
    }
    return QString();
}

void addForms()
{
    QTest::addColumn<int>("form");
    for (int form = 0; form < int(std::size(forms)); ++form)
        QTest::newRow(forms[form].name) << form;
}
} // namespace

class TestElementImage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPair_data();
    void everyPair();
    void everyPairOfMoments();
    void everyPairOfLists();
    void dedup_data();
    void dedup();
    void intersect_data();
    void intersect();
    void sharedLists();
    void nearDoublesInRows();

private:
    static void subtractEach(const QVariantList &values, Wrap wrap, int others, int stride);
};

void TestElementImage::initTestCase()
{
    QVERIFY2(values().size() >= 1500, qPrintable(QString::number(values().size())));
}

// Subtracts each value, or each of a stride, from all of them. It stands among others that equal none but an
// invalid value.
void TestElementImage::subtractEach(const QVariantList &values, Wrap wrap, int others, int stride)
{
    const QVariantList candidates = wrapped(values, wrap);
    const QVariant other = wrap(QVariant());
    QVariantList elements;
    std::vector<bool> equalsOther;
    for (int i = 0; i <= others; ++i)
        elements.append(other);
    for (const QVariant &candidate : candidates)
        equalsOther.push_back(candidate == other);
    for (int i = 0; i < candidates.size(); i += stride) {
        const QVariant &element = elements[others / 2] = candidates.at(i);
        QVariantList expected;
        for (int j = 0; j < candidates.size(); ++j) {
            if (!equalsOther[size_t(j)] && !(candidates.at(j) == element))
                expected.append(candidates.at(j));
        }
        const QVariantList actual = resultOf("list.subtract", candidates, elements);
        if (!std::equal(actual.cbegin(), actual.cend(), expected.cbegin(), expected.cend(), isSame))
            QFAIL(qPrintable(shown(element) + ": " + firstDifference(actual, expected)));
    }
}

void TestElementImage::everyPair_data()
{
    addForms();
}

void TestElementImage::everyPair()
{
    QFETCH(int, form);
#ifdef QUILLMAP_SANITIZED
    constexpr int stride = 13; // which takes a part of every group of values
#elif defined(Q_OS_WIN)
    const int stride = form < 3 ? 3 : 13; // slow under Wine
#else
    const int stride = form < 3 ? 1 : 9;
#endif
    subtractEach(values(), forms[form].wrap, 8, stride);
}

// Moments are looked for in long lists only.
void TestElementImage::everyPairOfMoments()
{
    subtractEach(datesAndTimes(), forms[0].wrap, 150, 1);
}

// Apart from each other, for a scan tells only so many forms of lists apart.
void TestElementImage::everyPairOfLists()
{
    for (const int length : lengths)
        subtractEach(listsOfLength(length), forms[0].wrap, 8, 1);
}

void TestElementImage::dedup_data()
{
    addForms();
}

void TestElementImage::dedup()
{
    QFETCH(int, form);
    for (unsigned seed = 1; seed <= 3; ++seed) {
        const QVariantList list =
            wrapped(ElementSamples::drawn(values(), values().size(), seed), forms[form].wrap);
        QVariantList expected;
        for (const QVariant &candidate : list) {
            if (!isAmong(expected, candidate))
                expected.append(candidate);
        }
        const QString difference = firstDifference(resultOf("list.dedup", list), expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
}

void TestElementImage::intersect_data()
{
    addForms();
}

void TestElementImage::intersect()
{
    QFETCH(int, form);
    for (unsigned seed = 1; seed <= 3; ++seed) {
        const QVariantList a = wrapped(ElementSamples::drawn(values(), 700, seed), forms[form].wrap);
        const QVariantList b = wrapped(ElementSamples::drawn(values(), 700, seed + 10), forms[form].wrap);
        QVariantList expected;
        for (const QVariant &candidate : a) {
            if (isAmong(b, candidate) && !isAmong(expected, candidate))
                expected.append(candidate);
        }
        const QString difference = firstDifference(resultOf("list.intersect", a, b), expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
}

// A list equals itself whatever it holds, a NaN or a value of a type that knows no comparison.
void TestElementImage::sharedLists()
{
    for (const Form &form : forms) {
        const QVariantList lists = wrapped(wrapped(values(), form.wrap), forms[1].wrap);
        QCOMPARE(shown(resultOf("list.subtract", lists, lists)), QString("[]"));
    }
}

// Doubles that count as equal, on both sides of a place where they may be put apart, in some columns of a row.
void TestElementImage::nearDoublesInRows()
{
    for (const double base : {1.0, 1e-7, 12345.678, 3.3e12, 1e200}) {
        for (int width = 10; width <= 30; ++width) {
            const quint64 round = stepsOf(base) >> width << width;
            const double below = fromSteps(round - 1);
            const double above = fromSteps(round + 1);
            QVERIFY(QVariant(below) == QVariant(above));
            QVariantList rows;
            for (const double first : {below, above}) {
                for (const double second : {below, above}) {
                    for (const double third : {below, above, 7.0})
                        rows.append(QVariant(QVariantList{first, second, "key", third}));
                }
            }
            for (const QVariant &row : qAsConst(rows)) {
                QVariantList elements;
                for (int i = 0; i < 9; ++i)
                    elements.append(QVariant(QVariantList{i, i, i, i}));
                elements.append(row);
                QVariantList expected;
                for (const QVariant &candidate : qAsConst(rows)) {
                    if (!isAmong(elements, candidate))
                        expected.append(candidate);
                }
                QCOMPARE(shown(resultOf("list.subtract", rows, elements)), shown(expected));
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestElementImage)
#include "tst_elementimage.moc"
