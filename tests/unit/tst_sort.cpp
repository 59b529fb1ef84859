#include "hostapi/VariableScope.h"
#include "operations/ElementSort.h"
#include "operations/ListSortOperation.h"
#include "tests/support/SampleValues.h"
#include "tests/support/ShowValue.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace
{
// Counts as a number; the id tells equal ones apart.
struct Keyed
{
    double key = 0;
    int id = 0;
};

// Counts as a number too, but another one each time it is asked.
struct Fickle
{
};

int conversions = 0;

constexpr int sizes[] = {0, 1, 2, 3, 15, 16, 17, 31, 32, 33, 63, 64, 65, 1000};
} // namespace
Q_DECLARE_METATYPE(Keyed)
Q_DECLARE_METATYPE(Fickle)

class TestSort : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void order_data();
    void order();
    void sizesOfNumbers_data();
    void sizesOfNumbers();
    void texts();
    void equalElementsKeepTheirOrder_data();
    void equalElementsKeepTheirOrder();
    void mixedListsKeepTheirElements();
    void fickleRelationEnds_data();
    void fickleRelationEnds();
    void comparisons_data();
    void comparisons();
    void otherHoldersSeeNothing();

private:
    static void addSizes();
    static QVariantList sorted(const QVariantList &list, bool ascending);
};

void TestSort::initTestCase()
{
    QVERIFY((QMetaType::registerConverter<Keyed, double>([](const Keyed &keyed) {
        ++conversions;
        return keyed.key;
    })));
    QVERIFY((QMetaType::registerConverter<Fickle, double>([](const Fickle &) {
        static QRandomGenerator random(7);
        ++conversions;
        return double(random.bounded(3));
    })));
}

void TestSort::addSizes()
{
    QTest::addColumn<int>("size");
    for (const int size : sizes)
        QTest::addRow("%d elements", size) << size;
}

QVariantList TestSort::sorted(const QVariantList &list, bool ascending)
{
    VariableScope scope;
    scope.set("names", list);
    ListSortOperation step;
    step.setTargetVar("names");
    step.setAscending(ascending);
    step.setVariableScope(&scope);
    step.doOperation();
    return scope.get("names").toList();
}

void TestSort::order_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("greater");

    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const auto row = [](const char *name, const QVariant &left, const QVariant &right, bool less,
                        bool greater) { QTest::newRow(name) << left << right << less << greater; };
    row("integers", 9, 10, true, false);
    row("int and double", 2, 2.5, true, false);
    row("equal numbers", 1, 1.0, false, false);
    row("fuzzy doubles are not equal here", 1.0, 1.0 + 1e-13, true, false);
    row("booleans", false, true, true, false);
    row("true and 1", true, 1, false, false);
    row("true and 2", true, 2, true, false);
    row("infinities", -infinity, infinity, true, false);
    row("zeros", -0.0, 0.0, false, false);
    row("nan and number", notANumber, 1, false, false);
    row("nan and nan", notANumber, notANumber, false, false);
    row("nan and infinity", notANumber, -infinity, false, false);
    row("64 bit, one double", 9007199254740992ll, 9007199254740993ll, false, false);
    row("64 bit", LLONG_MIN, LLONG_MAX, true, false);
    row("unsigned", 1, UINT_MAX, true, false);
    row("byte arrays are numbers", QByteArray("9"), QByteArray("10"), true, false);
    row("a byte array that is no number is 0", QByteArray("x"), 1, true, false);

    row("digits as texts", "10", "9", true, false);
    row("number and text", 10, "9", true, false);
    row("text and number", "9", 9, false, false);
    row("text 1.0 and number", "1.0", 1, false, true);
    row("true and text", true, "u", true, false);
    row("nan and text", notANumber, "o", true, false);
    row("case", "B", "a", true, false);
    row("prefix", "a", "ab", true, false);
    row("empty text", "", "a", true, false);
    row("equal texts", "a", "a", false, false);
    row("code units, not code points", "\U0001F600", QString(QChar(0xffff)), true, false);
    row("wide texts", "一", "丁", true, false);
    row("nul", QString("a"), QString("a") + QChar(0), true, false);

    row("invalid and text", QVariant(), "a", true, false);
    row("invalid and empty text", QVariant(), "", false, false);
    row("invalid and number", QVariant(), -5, true, false);
    row("invalid and invalid", QVariant(), QVariant(), false, false);
    row("list and text", QVariantList{9}, "a", true, false);
    row("list and number", QVariantList{9}, 1, true, false);
    row("list and list", QVariantList{1}, QVariantList{2}, false, false);
    row("map and invalid", QVariantMap{{"a", 1}}, QVariant(), false, false);
    row("string list of one is its text", QStringList("b"), "c", true, false);
    row("dates as texts", QDate(2020, 1, 2), QDate(2020, 1, 10), true, false);
}

void TestSort::order()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(bool, less);
    QFETCH(bool, greater);
    QCOMPARE(::elementLess(left, right), less);
    QCOMPARE(::elementLess(right, left), greater);

    const QVariantList ascending =
        greater ? QVariantList() << right << left : QVariantList() << left << right;
    const QVariantList descending =
        greater ? QVariantList() << left << right : QVariantList() << right << left;
    QCOMPARE(shown(sorted(QVariantList() << left << right, true)), shown(ascending));
    QCOMPARE(shown(sorted(QVariantList() << left << right, false)), shown(descending));
}

void TestSort::sizesOfNumbers_data()
{
    addSizes();
}

void TestSort::sizesOfNumbers()
{
    QFETCH(int, size);
    QRandomGenerator random(31);
    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(i % 3 ? QVariant(random.bounded(size)) : QVariant(random.bounded(double(size))));
    QVariantList expected = list;
    std::stable_sort(expected.begin(), expected.end(), [](const QVariant &left, const QVariant &right) {
        return left.toDouble() < right.toDouble();
    });
    QCOMPARE(shown(sorted(list, true)), shown(expected));
    std::reverse(expected.begin(), expected.end());
    QCOMPARE(shown(sorted(list, false)), shown(expected));
}

void TestSort::texts()
{
    QRandomGenerator random(32);
    QStringList list;
    for (int i = 0; i < 1000; ++i) {
        QString text;
        for (int length = random.bounded(4); length > 0; --length)
            text += QChar(u"019aAbB表一"[random.bounded(9)]);
        list.append(text);
    }
    QVariantList unsortedList;
    for (const QString &text : qAsConst(list))
        unsortedList.append(text);
    list.sort();
    QVariantList expected;
    for (const QString &text : qAsConst(list))
        expected.append(text);
    QCOMPARE(shown(sorted(unsortedList, true)), shown(expected));
}

void TestSort::equalElementsKeepTheirOrder_data()
{
    addSizes();
}

void TestSort::equalElementsKeepTheirOrder()
{
    QFETCH(int, size);
    for (const int keys : {1, 2, 5}) {
        QRandomGenerator random(33);
        QVariantList list;
        for (int id = 0; id < size; ++id)
            list.append(QVariant::fromValue(Keyed{double(random.bounded(keys)), id}));
        const QVariantList ascending = sorted(list, true);
        QCOMPARE(ascending.size(), size);
        for (int i = 1; i < size; ++i) {
            const Keyed before = ascending.at(i - 1).value<Keyed>();
            const Keyed after = ascending.at(i).value<Keyed>();
            QVERIFY(before.key < after.key || (!(after.key < before.key) && before.id < after.id));
        }
        const QVariantList descending = sorted(list, false);
        QCOMPARE(descending.size(), size);
        for (int i = 0; i < size; ++i)
            QCOMPARE(descending.at(i).value<Keyed>().id, ascending.at(size - 1 - i).value<Keyed>().id);
    }
}

// On lists that mix numbers, texts and NaN the relation contradicts itself.
void TestSort::mixedListsKeepTheirElements()
{
    const QVariantList values = awkwardValues();
    QRandomGenerator random(34);
    for (int round = 0; round < 3000; ++round) {
        QVariantList list;
        for (int i = round % 10 ? random.bounded(40) : random.bounded(200); i > 0; --i)
            list.append(values.at(random.bounded(values.size())));
        const QVariantList ascending = sorted(list, true);
        const QVariantList descending = sorted(list, false);
        QStringList before;
        QStringList after;
        for (const QVariant &element : qAsConst(list))
            before += shown(element);
        for (const QVariant &element : ascending)
            after += shown(element);
        QStringList mirrored;
        for (const QVariant &element : descending)
            mirrored.prepend(shown(element));
        QCOMPARE(mirrored, after);
        before.sort();
        after.sort();
        QCOMPARE(after, before);
    }
}

void TestSort::fickleRelationEnds_data()
{
    addSizes();
}

void TestSort::fickleRelationEnds()
{
    QFETCH(int, size);
    for (int round = 0; round < 20; ++round) {
        QVariantList list;
        for (int id = 0; id < size; ++id)
            list.append(id % 4 ? QVariant::fromValue(Fickle())
                               : QVariant::fromValue(Keyed{double(id % 5), id}));
        conversions = 0;
        const QVariantList ascending = sorted(list, true);
        QVERIFY(conversions <= 2 * size * (std::ceil(std::log2(size + 1)) + 1));
        QCOMPARE(ascending.size(), size);
        QList<int> ids;
        for (const QVariant &element : ascending) {
            if (element.userType() == qMetaTypeId<Keyed>())
                ids.append(element.value<Keyed>().id);
            else
                QCOMPARE(element.userType(), qMetaTypeId<Fickle>());
        }
        std::sort(ids.begin(), ids.end());
        QCOMPARE(ids.size(), (size + 3) / 4);
        for (int i = 0; i < ids.size(); ++i)
            QCOMPARE(ids.at(i), 4 * i);
    }
}

void TestSort::comparisons_data()
{
    QTest::addColumn<QString>("arrangement");
    for (const char *arrangement : {"random", "ascending", "descending", "constant", "organ pipe", "saw"})
        QTest::newRow(arrangement) << arrangement;
}

// A comparison converts two elements.
void TestSort::comparisons()
{
    QFETCH(QString, arrangement);
    QRandomGenerator random(35);
    for (const int size : {100, 1000, 20000}) {
        QVariantList list;
        for (int i = 0; i < size; ++i) {
            const double key = arrangement == "random" ? random.bounded(size)
                : arrangement == "ascending"           ? i
                : arrangement == "descending"          ? -i
                : arrangement == "constant"            ? 0
                : arrangement == "organ pipe"          ? std::min(i, size - i)
                                                       : i % 17;
            list.append(QVariant::fromValue(Keyed{key, i}));
        }
        conversions = 0;
        QVariantList sortedList = list;
        ::sortList(sortedList);
        QVERIFY(conversions <= 2 * size * (std::log2(size) + 1));
        for (int i = 1; i < size; ++i)
            QVERIFY(!(sortedList.at(i).value<Keyed>().key < sortedList.at(i - 1).value<Keyed>().key));
    }
}

void TestSort::otherHoldersSeeNothing()
{
    const QVariantList held{3, "b", 1, QVariantList{2, 1}};
    const QString before = shown(held);
    QVariantList list = held;
    ::sortList(list);
    QCOMPARE(shown(held), before);
    QVERIFY(shown(list) != before);
}

QTEST_GUILESS_MAIN(TestSort)
#include "tst_sort.moc"
