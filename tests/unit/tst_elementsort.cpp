#include "operations/ElementSort.h"
#include "operations/MergeSort.h"
#include "tests/support/ElementSamples.h"
#include "tests/support/ShowValue.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <vector>

namespace
{
// The rule itself, with all its questions.
bool plainIsNumeric(const QVariant &value)
{
    return value.canConvert(QMetaType::Double) && value.type() != QVariant::String;
}

bool plainLess(const QVariant &left, const QVariant &right)
{
    if (plainIsNumeric(left) && plainIsNumeric(right))
        return left.toDouble() < right.toDouble();
    return left.toString() < right.toString();
}

using Relation = std::function<bool(int, int)>;

// Counts itself, so that a test can tell how many there were at a time.
class Counted
{
public:
    explicit Counted(int value = -1) : m_value(value)
    {
        enter();
    }
    Counted(Counted &&other) noexcept : m_value(other.m_value)
    {
        other.m_value = -1;
        enter();
    }
    Counted &operator=(Counted &&other) noexcept
    {
        m_value = other.m_value;
        other.m_value = -1;
        return *this;
    }
    ~Counted()
    {
        --s_now;
    }

    int value() const
    {
        return m_value;
    }

    static int s_now;
    static int s_most;

private:
    static void enter()
    {
        s_most = std::max(s_most, ++s_now);
    }

    int m_value;
};

int Counted::s_now = 0;
int Counted::s_most = 0;
} // namespace

Q_DECLARE_METATYPE(Relation)

class TestElementSort : public QObject
{
    Q_OBJECT

private slots:
    void lessAnswersAsTheRuleForEveryPair()
    {
        const QVariantList samples = ElementSamples::all();
        for (const QVariant &left : samples) {
            for (const QVariant &right : samples) {
                if (elementLess(left, right) != plainLess(left, right))
                    QFAIL(qPrintable(shown(left) + " and " + shown(right)));
            }
        }
    }

    void orders_data()
    {
        QTest::addColumn<QVariantList>("list");
        QTest::addColumn<QVariantList>("sorted");
        QTest::newRow("empty") << QVariantList() << QVariantList();
        QTest::newRow("one") << QVariantList{1} << QVariantList{1};
        QTest::newRow("ints") << QVariantList{10, 9, 100} << QVariantList{9, 10, 100};
        QTest::newRow("extreme ints")
            << QVariantList{INT_MAX, 0, INT_MIN, -1} << QVariantList{INT_MIN, -1, 0, INT_MAX};
        QTest::newRow("digits as texts") << QVariantList{"10", "9", "100"} << QVariantList{"10", "100", "9"};
        QTest::newRow("letters") << QVariantList{"b", "B", "a", "A"} << QVariantList{"A", "B", "a", "b"};
        QTest::newRow("numbers") << QVariantList{2.5, 1, 3} << QVariantList{1, 2.5, 3};
        QTest::newRow("booleans") << QVariantList{2, true, -1, false} << QVariantList{-1, false, true, 2};
        QTest::newRow("equal numbers keep their order")
            << QVariantList{1, 0.5, 1.0, true, 0} << QVariantList{0, 0.5, 1, 1.0, true};
        QTest::newRow("zeros keep their order")
            << QVariantList{0.0, -0.0, -1.0, 0.0} << QVariantList{-1.0, 0.0, -0.0, 0.0};
        QTest::newRow("empty texts keep their order")
            << QVariantList{"a", "", QString(), ""} << QVariantList{"", QString(), "", "a"};
        QTest::newRow("what has no text comes first") << QVariantList{"a", QVariantList{1}, "", QVariant()}
                                                      << QVariantList{QVariantList{1}, "", QVariant(), "a"};
    }

    void orders()
    {
        QFETCH(QVariantList, list);
        QFETCH(QVariantList, sorted);
        sortList(list);
        QCOMPARE(shown(list), shown(sorted));
    }

    void sortsAsThePlainRule_data()
    {
        QTest::addColumn<QVariantList>("samples");
        const auto groups = ElementSamples::groups();
        for (const auto &group : groups)
            QTest::newRow(group.first) << group.second;
    }

    void sortsAsThePlainRule()
    {
        QFETCH(QVariantList, samples);
        for (int size = 0; size <= 200; size += size < 40 ? 1 : 37) {
            QVariantList list = ElementSamples::drawn(samples, size, unsigned(size));
            QVariantList expected = list;
            mergeSort(
                expected.begin(), expected.end(), [](const QVariant &element) { return &element; },
                [](const QVariant *left, const QVariant *right) { return plainLess(*left, *right); });
            sortList(list);
            QCOMPARE(shown(list), shown(expected));
        }
    }

    // Where the relation is an order, the standard library is a second opinion.
    void sortsAsTheStandardLibrary_data()
    {
        QTest::addColumn<QVariantList>("samples");
        QTest::newRow("integers") << ElementSamples::integers();
        QTest::newRow("doubles") << ElementSamples::closeDoubles();
        QTest::newRow("numbers") << ElementSamples::integers() + ElementSamples::nearIntegers();
        QTest::newRow("texts") << ElementSamples::texts() + ElementSamples::numberTexts();
    }

    void sortsAsTheStandardLibrary()
    {
        QFETCH(QVariantList, samples);
        for (int size = 0; size <= 400; size += size < 40 ? 1 : 37) {
            QVariantList list = ElementSamples::drawn(samples, size, unsigned(size));
            QVariantList expected = list;
            std::stable_sort(expected.begin(), expected.end(), plainLess);
            sortList(list);
            QCOMPARE(shown(list), shown(expected));
        }
    }

    void leavesOtherHoldersOfTheListAlone()
    {
        const QVariantList list{3, 1, 2};
        QVariantList sorted = list;
        sortList(sorted);
        QCOMPARE(shown(list), shown(QVariantList{3, 1, 2}));
    }

    void endsWhateverTheRelationAnswers_data()
    {
        QTest::addColumn<Relation>("less");
        QTest::newRow("less") << Relation(std::less<int>());
        QTest::newRow("greater") << Relation(std::greater<int>());
        QTest::newRow("always") << Relation([](int, int) { return true; });
        QTest::newRow("never") << Relation([](int, int) { return false; });
        QTest::newRow("in circles") << Relation([](int a, int b) { return (a - b + 300) % 3 == 1; });
        QTest::newRow("at random") << Relation(
            [random = std::mt19937(1)](int, int) mutable { return random() % 2 == 0; });
    }

    void endsWhateverTheRelationAnswers()
    {
        QFETCH(Relation, less);
        constexpr int border = 3;
        for (int size = 0; size <= 100; ++size) {
            std::vector<int> order(size);
            std::iota(order.begin(), order.end(), 0);
            std::shuffle(order.begin(), order.end(), std::mt19937(unsigned(size)));

            std::vector<Counted> elements;
            elements.reserve(unsigned(size + 2 * border));
            for (int i = 0; i < border; ++i)
                elements.emplace_back(1000 + i);
            for (const int value : order)
                elements.emplace_back(value);
            for (int i = 0; i < border; ++i)
                elements.emplace_back(2000 + i);

            Counted::s_most = Counted::s_now;
            const int before = Counted::s_now;
            int comparisons = 0;
            mergeSort(
                elements.begin() + border, elements.end() - border,
                [](const Counted &element) { return &element; },
                [&](const Counted *left, const Counted *right) {
                    ++comparisons;
                    return less(left->value(), right->value());
                });

            // Half a list in the buffer, and one element in hand.
            QVERIFY(Counted::s_most - before <= size / 2 + 1);
            QVERIFY(comparisons <= size * (std::log2(size + 1) + 2));
            for (int i = 0; i < border; ++i) {
                QCOMPARE(elements[unsigned(i)].value(), 1000 + i);
                QCOMPARE(elements[unsigned(border + size + i)].value(), 2000 + i);
            }
            std::vector<int> values;
            for (int i = 0; i < size; ++i)
                values.push_back(elements[unsigned(border + i)].value());
            std::sort(values.begin(), values.end());
            std::sort(order.begin(), order.end());
            QVERIFY(values == order);
        }
    }
};

QTEST_GUILESS_MAIN(TestElementSort)
#include "tst_elementsort.moc"
