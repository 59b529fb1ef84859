#include "operations/ElementScan.h"
#include "operations/ListFunctions.h"
#include "tests/support/ElementSamples.h"
#include "tests/support/ShowValue.h"

#include <QPoint>
#include <QtTest>

namespace
{
// The rule itself, one question after the other.
bool plainContains(const QVariantList &elements, const QVariant &candidate)
{
    for (const QVariant &element : elements) {
        if (candidate == element)
            return true;
    }
    return false;
}

int plainIndexOfEqual(const QVariantList &list, const QVariant &value)
{
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i) == value)
            return i;
    }
    return -1;
}

QVariantList plainDedup(const QVariantList &list)
{
    QVariantList kept;
    for (const QVariant &element : list) {
        if (!plainContains(kept, element))
            kept.append(element);
    }
    return kept;
}

void addGroups()
{
    QTest::addColumn<QVariantList>("samples");
    const auto groups = ElementSamples::groups();
    for (const auto &group : groups)
        QTest::newRow(group.first) << group.second;
}
} // namespace

class TestElementScan : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyScanContainsNothing()
    {
        ElementScan scan;
        const QVariantList samples = ElementSamples::all();
        for (const QVariant &candidate : samples)
            QVERIFY(!scan.contains(candidate));
        QVERIFY(scan.elements().isEmpty());
    }

    void elementsStayInOrder()
    {
        const QVariantList samples = ElementSamples::all();
        QCOMPARE(shown(ElementScan(samples).elements()), shown(samples));
        ElementScan scan(samples.mid(0, 10));
        for (const QVariant &element : samples.mid(10))
            scan.append(element);
        QCOMPARE(shown(scan.elements()), shown(samples));
    }

    void doesNotChangeTheListItStartsWith()
    {
        const QVariantList list{1, 2};
        ElementScan scan(list);
        scan.append(3);
        QCOMPARE(list.size(), 2);
    }

    // Every sample against every other, in both orders; behind another element, for the first one is asked
    // about outright.
    void answersAsTheOperatorForEveryPair()
    {
        const QVariantList samples = ElementSamples::all();
        const QVariant unlikeAll = QPoint(1, 2);
        QVERIFY(!samples.contains(unlikeAll));
        for (const QVariant &element : samples) {
            ElementScan scan({unlikeAll, element});
            for (const QVariant &candidate : samples) {
                const bool equal = candidate == element;
                const int position = element == candidate ? 0 : -1;
                if (scan.contains(candidate) != equal || indexOfEqual({element}, candidate) != position)
                    QFAIL(qPrintable(shown(candidate) + " and " + shown(element)));
            }
        }
    }

    void findsAnElementAtEveryPosition_data()
    {
        QTest::addColumn<QVariant>("filler");
        QTest::addColumn<QVariant>("element");
        QTest::addColumn<QVariant>("candidate");
        QTest::newRow("int") << QVariant(1) << QVariant(2) << QVariant(2);
        QTest::newRow("double") << QVariant(1.0) << QVariant(2.0) << QVariant(2.0 + 1e-13);
        QTest::newRow("text") << QVariant("a") << QVariant("b") << QVariant("b");
        QTest::newRow("text for an int") << QVariant("1") << QVariant("2") << QVariant(2);
        QTest::newRow("int for a text") << QVariant(1) << QVariant(2) << QVariant("2");
        QTest::newRow("bool among ints") << QVariant(5) << QVariant(true) << QVariant(1);
        QTest::newRow("int among bools") << QVariant(false) << QVariant(2) << QVariant(2);
        QTest::newRow("texts with one ending")
            << QVariant("1 of many.txt") << QVariant("2 of many.txt") << QVariant("2 of many.txt");
    }

    void findsAnElementAtEveryPosition()
    {
        QFETCH(QVariant, filler);
        QFETCH(QVariant, element);
        QFETCH(QVariant, candidate);
        for (const int size : {1, 2, 15, 16, 17, 127, 128, 129, 255, 256, 257, 300}) {
            QVariantList list;
            for (int i = 0; i < size; ++i)
                list.append(filler);
            QVERIFY(!ElementScan(list).contains(candidate));
            for (int position = 0; position < size; ++position) {
                list[position] = element;
                QVERIFY2(ElementScan(list).contains(candidate), qPrintable(QString::number(position)));
                QCOMPARE(indexOfEqual(list, candidate), plainIndexOfEqual(list, candidate));
                list[position] = filler;
            }
        }
    }

    void answersAsTheOperatorWhileTheListGrows_data()
    {
        addGroups();
    }

    void answersAsTheOperatorWhileTheListGrows()
    {
        QFETCH(QVariantList, samples);
        for (unsigned seed = 1; seed <= 3; ++seed) {
            const QVariantList list = ElementSamples::drawn(samples, 300, seed);
            const QVariantList candidates = ElementSamples::drawn(ElementSamples::all(), 300, seed + 100);
            ElementScan scan(list.size());
            QVariantList plain;
            for (int i = 0; i < list.size(); ++i) {
                for (const QVariant &candidate : {list.at(i), candidates.at(i)}) {
                    if (scan.contains(candidate) != plainContains(plain, candidate))
                        QFAIL(qPrintable(shown(candidate) + " in " + shown(plain)));
                }
                scan.append(list.at(i));
                plain.append(list.at(i));
            }
        }
    }

    void keepsWhatThePlainRuleKeeps_data()
    {
        addGroups();
    }

    void keepsWhatThePlainRuleKeeps()
    {
        QFETCH(QVariantList, samples);
        for (unsigned seed = 1; seed <= 3; ++seed) {
            const QVariantList list = ElementSamples::drawn(samples, 400, seed);
            ElementScan kept;
            for (const QVariant &element : list) {
                if (!kept.contains(element))
                    kept.append(element);
            }
            QCOMPARE(shown(kept.elements()), shown(plainDedup(list)));
        }
    }

    void findsTheFirstEqualElement_data()
    {
        addGroups();
    }

    void findsTheFirstEqualElement()
    {
        QFETCH(QVariantList, samples);
        const QVariantList list = ElementSamples::drawn(samples, 100, 1);
        const QVariantList values = ElementSamples::all();
        for (const QVariant &value : values) {
            if (indexOfEqual(list, value) != plainIndexOfEqual(list, value))
                QFAIL(qPrintable(shown(value) + " in " + shown(list)));
        }
    }
};

QTEST_GUILESS_MAIN(TestElementScan)
#include "tst_elementscan.moc"
