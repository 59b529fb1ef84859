#include "hostapi/VariableScope.h"
#include "operations/ElementScan.h"
#include "operations/ListFunctions.h"
#include "tests/support/SampleValues.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"

#include <QRandomGenerator>
#include <QtTest>

namespace
{
// Notes every comparison that it is asked for.
struct Traced
{
    int id = 0;
    bool equal = false;
};
QStringList &trace()
{
    static QStringList asked;
    return asked;
}
bool operator==(const Traced &left, const Traced &right)
{
    trace() += QString("%1=%2").arg(left.id).arg(right.id);
    return left.equal && right.equal;
}
bool operator<(const Traced &left, const Traced &right)
{
    return left.id < right.id;
}
} // namespace
Q_DECLARE_METATYPE(Traced)

namespace
{
QVariant traced(int id, bool equal = false)
{
    static const bool registered = QMetaType::registerComparators<Traced>()
        && QMetaType::registerConverter<int, Traced>([](int number) { return Traced{number}; });
    Q_UNUSED(registered)
    return QVariant::fromValue(Traced{id, equal});
}

QVariantList tracedList(int size)
{
    QVariantList list;
    for (int id = 1; id <= size; ++id)
        list.append(traced(id));
    return list;
}

// What a scan for each of a list's elements among those before it asks when no two are equal.
QStringList everyPairOnce(int size)
{
    QStringList asked;
    for (int candidate = 2; candidate <= size; ++candidate) {
        for (int kept = 1; kept < candidate; ++kept)
            asked += QString("%1=%2").arg(candidate).arg(kept);
    }
    return asked;
}

QStringList takeTrace()
{
    QStringList asked;
    asked.swap(trace());
    return asked;
}
} // namespace

class TestElementsEqual : public QObject
{
    Q_OBJECT

private slots:
    void knownPairs_data();
    void knownPairs();
    void crossProduct();
    void orderMatters();
    void scansLikeAPlainLoop();
    void randomLists();
    void scansInOrderAndStop();
    void stepsAskInOrder_data();
    void stepsAskInOrder();
};

void TestElementsEqual::knownPairs_data()
{
    QTest::addColumn<QVariant>("candidate");
    QTest::addColumn<QVariant>("other");
    QTest::addColumn<bool>("equal");

    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto row = [](const char *name, const QVariant &candidate, const QVariant &other, bool equal) {
        QTest::newRow(name) << candidate << other << equal;
    };
    row("int and double", 1, 1.0, true);
    row("double and int", 3.0, 3, true);
    row("int and 64 bit", -1, -1ll, true);
    row("int and text", 1, "1", true);
    row("text and int", "1", 1, true);
    row("int and text 1.0", 1, "1.0", false);
    row("text 1.0 and int", "1.0", 1, false);
    row("double and text 1.0", 1.0, "1.0", true);
    row("true and x", true, "x", true);
    row("x and true", "x", true, false);
    row("true and 1", true, 1, true);
    row("blank text and empty text", " ", "", false);
    row("case", "a", "A", false);
    row("fuzzy doubles", 1.0, 1.0 + 1e-13, true);
    row("less fuzzy doubles", 1.0, 1.0 + 1e-11, false);
    row("nan", notANumber, notANumber, false);
    row("zeros", 0.0, -0.0, true);
    row("invalid", QVariant(), QVariant(), true);
    row("invalid and empty text", QVariant(), "", false);
    row("null and empty text", QString(), "", true);
    row("equal lists", QVariantList{1, "a"}, QVariantList{1, "a"}, true);
    row("lists of equal elements", QVariantList{1}, QVariantList{1.0}, true);
    row("lists in another order", QVariantList{1, 2}, QVariantList{2, 1}, false);
    row("list and its element", QVariantList{1}, 1, false);
    row("equal user values", QVariant::fromValue(Numbered{1}), QVariant::fromValue(Numbered{1}), true);
    row("other user values", QVariant::fromValue(Numbered{1}), QVariant::fromValue(Numbered{2}), false);
}

void TestElementsEqual::knownPairs()
{
    QFETCH(QVariant, candidate);
    QFETCH(QVariant, other);
    QFETCH(bool, equal);
    awkwardValues(); // registers the user type's comparison
    QCOMPARE(::elementsEqual(candidate, other), equal);
}

void TestElementsEqual::crossProduct()
{
    const QVariantList values = awkwardValues();
    for (const QVariant &candidate : values) {
        for (const QVariant &other : values) {
            if (::elementsEqual(candidate, other) != (candidate == other))
                QFAIL(qPrintable(shown(candidate) + " == " + shown(other)));
        }
    }
}

// The sample has pairs that tell the two orders apart; without them crossProduct() could not see a swap.
void TestElementsEqual::orderMatters()
{
    const QVariantList values = awkwardValues();
    int asymmetric = 0;
    for (const QVariant &left : values) {
        for (const QVariant &right : values)
            asymmetric += (left == right) != (right == left);
    }
    QVERIFY(asymmetric >= 10);
}

void TestElementsEqual::scansLikeAPlainLoop()
{
    const QVariantList values = awkwardValues();
    for (const QVariant &value : values) {
        int first = -1;
        bool any = false;
        for (int i = 0; i < values.size(); ++i) {
            if (first < 0 && values.at(i) == value)
                first = i;
            any = any || value == values.at(i);
        }
        QVERIFY2(::indexOfEqual(values, value) == first, qPrintable(shown(value)));
        QVERIFY2(::equalsAny(value, values) == any, qPrintable(shown(value)));
        for (const QVariant &element : values) {
            QCOMPARE(::indexOfEqual({element}, value), element == value ? 0 : -1);
            QCOMPARE(::equalsAny(value, {element}), value == element);
        }
        QCOMPARE(::indexOfEqual({}, value), -1);
        QVERIFY(!::equalsAny(value, {}));
    }
}

void TestElementsEqual::randomLists()
{
    const QVariantList values = awkwardValues();
    QRandomGenerator random(1201);
    for (int round = 0; round < 5000; ++round) {
        QVariantList list;
        for (int i = random.bounded(12); i > 0; --i)
            list.append(values.at(random.bounded(values.size())));
        const QVariant value = values.at(random.bounded(values.size()));
        int first = -1;
        bool any = false;
        for (int i = 0; i < list.size(); ++i) {
            if (first < 0 && list.at(i) == value)
                first = i;
            any = any || value == list.at(i);
        }
        const QString pair = shown(value) + " in " + shown(list);
        QVERIFY2(::indexOfEqual(list, value) == first, qPrintable(pair));
        QVERIFY2(::equalsAny(value, list) == any, qPrintable(pair));
    }
}

void TestElementsEqual::scansInOrderAndStop()
{
    const QVariantList list{traced(1), traced(2), "7", traced(3, true), traced(4, true)};
    takeTrace();
    QCOMPARE(::indexOfEqual(list, traced(9, true)), 3);
    QCOMPARE(takeTrace(), QStringList({"1=9", "2=9", "3=9"}));
    QVERIFY(::equalsAny(traced(9, true), list));
    QCOMPARE(takeTrace(), QStringList({"9=1", "9=2", "9=3"}));
    QCOMPARE(::indexOfEqual(list, traced(9)), -1);
    QCOMPARE(takeTrace(), QStringList({"1=9", "2=9", "3=9", "4=9"}));
    QVERIFY(!::equalsAny(traced(9), list));
    QCOMPARE(takeTrace(), QStringList({"9=1", "9=2", "9=3", "9=4"}));
}

void TestElementsEqual::stepsAskInOrder_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantList>("listA");
    QTest::addColumn<QVariantList>("listB");
    QTest::addColumn<QStringList>("asked");

    const auto row = [](const char *name, const char *typeId, const QVariantList &a, const QVariantList &b,
                        const QStringList &asked) {
        QTest::addRow("%s: %s", typeId, name) << QString(typeId) << a << b << asked;
    };
    const auto nested = [](const QVariantList &elements) { return QVariant(elements); };

    for (const int size : {0, 1, 2, 10, 100, 300})
        row(qPrintable(QString("%1 unlike").arg(size)), "list.dedup", tracedList(size), {},
            everyPairOnce(size));
    row("up to the first equal one", "list.dedup",
        {traced(1), traced(2, true), traced(3), traced(4, true), traced(5)}, {},
        {"2=1", "3=1", "3=2", "4=1", "4=2", "5=1", "5=2", "5=3"});
    row("between other kinds", "list.dedup", {"x", traced(1), 2.5, traced(2), "y", QVariant(), traced(3)}, {},
        {"2=1", "3=1", "3=2"});
    row("in lists", "list.dedup", {nested({7, traced(1)}), nested({7, traced(2)}), nested({7, traced(3)})},
        {}, {"2=1", "3=1", "3=2"});
    row("in lists, beside a number", "list.dedup",
        {nested({traced(1), 7}), nested({7, traced(2)}), nested({traced(3), 7})}, {}, {"1=7", "3=1", "3=7"});
    // An int is converted to the user type and stands on the right.
    row("a number, found first", "list.dedup", {5, traced(1), 5}, {}, {"1=5"});
    row("a number, found between others", "list.subtract", {5}, {4, traced(1), 5, traced(2)}, {"1=5"});
    row("a number, found behind others", "list.subtract", {5}, {traced(1), 4, traced(2), 5, traced(3)},
        {"1=5", "2=5"});
    row("a number, not found", "list.subtract", {5}, {traced(1), 4, traced(2), 6}, {"1=5", "2=5"});

    row("unlike", "list.subtract", {traced(9)}, {traced(1), traced(2)}, {"9=1", "9=2"});
    row("up to the first equal one", "list.subtract", {traced(9, true), traced(8)},
        {traced(1), traced(2, true), traced(3, true)}, {"9=1", "9=2", "8=1", "8=2", "8=3"});
    row("unlike", "list.intersect", {traced(9)}, {traced(1), traced(2)}, {"9=1", "9=2"});
    row("list B first, then the result", "list.intersect", {traced(9, true), traced(8, true), traced(7)},
        {traced(1), traced(2, true)}, {"9=1", "9=2", "8=1", "8=2", "8=9", "7=1", "7=2"});
}

void TestElementsEqual::stepsAskInOrder()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantList, listA);
    QFETCH(QVariantList, listB);
    QFETCH(QStringList, asked);
    VariableScope scope;
    scope.set("a", listA);
    scope.set("b", listB);
    const QVariantMap settings = typeId == "list.dedup"
        ? QVariantMap{{"targetVar", "a"}}
        : QVariantMap{{"listA", "a"}, {"listB", "b"}, {"targetVar", "a"}};
    const StepPointer step = newStep(typeId, settings);
    step->setVariableScope(&scope);
    takeTrace();
    step->doOperation();
    QCOMPARE(takeTrace(), asked);
}

QTEST_GUILESS_MAIN(TestElementsEqual)
#include "tst_elementsequal.moc"
