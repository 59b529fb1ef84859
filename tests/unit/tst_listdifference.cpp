#include "host/values/ListDifference.h"

#include <QtTest>

#include <cmath>

using namespace StepHost;

class TestListDifference : public QObject
{
    Q_OBJECT

private slots:
    void compares_data();
    void compares();
    void tellsTypesApart();
    void comparesManyOfOneHash();
    void comparesLongLists();
};

namespace
{
QVariantList letters(const QString &text)
{
    QVariantList list;
    for (const QChar letter : text)
        list.append(QString(letter));
    return list;
}

// One letter for each kind, then the positions.
QString shown(const std::vector<Difference> &differences)
{
    QStringList words;
    for (const Difference &each : differences) {
        words.append(QString("%1%2:%3").arg(QChar("=+x~>"[int(each.kind)])).arg(each.before).arg(each.after));
        words.last().replace("-1", "");
    }
    return words.join(' ');
}
} // namespace

void TestListDifference::compares_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("differences");
    const auto row = [](const char *before, const char *after, const char *differences) {
        QTest::addRow("%s to %s", before, after) << before << after << differences;
    };
    row("", "", "");
    row("ab", "ab", "=0:0 =1:1");
    row("", "ab", "+:0 +:1");
    row("ab", "", "x0: x1:");
    row("ab", "axb", "=0:0 +:1 =1:2");
    row("axb", "ab", "=0:0 x1: =2:1");
    row("axb", "ayb", "=0:0 ~1:1 =2:2");
    row("axyb", "azb", "=0:0 ~1:1 x2: =3:2");
    row("abcd", "bcda", "=1:0 =2:1 =3:2 >0:3");
    row("abc", "cba", ">2:0 >1:1 =0:2");
    row("abab", "baba", ">1:0 =0:1 >3:2 =2:3");
    row("aab", "ba", ">2:0 =0:1 x1:");
    row("aab", "aaab", "=0:0 =1:1 +:2 =2:3");
    row("abcde", "xecba", "+:0 >4:1 >2:2 >1:3 =0:4 x3:");
    row("aa", "aaaa", "=0:0 =1:1 +:2 +:3");
}

void TestListDifference::compares()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QTEST(shown(listDifference(letters(before), letters(after))), "differences");
}

void TestListDifference::tellsTypesApart()
{
    const QVariantList before{1, 1.0, "1", true, QVariant(), std::nan(""), QVariant(QVariantList{1}), 0.0};
    QVariantList after = before;
    std::reverse(after.begin(), after.end());
    after[0] = -0.0;
    const std::vector<Difference> differences = listDifference(before, after);
    QCOMPARE(int(differences.size()), before.size());
    for (const Difference &each : differences)
        QCOMPARE(each.before, before.size() - 1 - each.after);
}

// Values whose hash says nothing but their type.
void TestListDifference::comparesManyOfOneHash()
{
    QVariantList before;
    for (int i = 0; i < 2000; ++i)
        before.append(QVariantMap{{"n", i}});
    QVariantList after = before;
    std::reverse(after.begin(), after.end());
    QVERIFY(listDifference(before, after).size() >= 2000);
}

void TestListDifference::comparesLongLists()
{
    constexpr int count = 100000;
    QVariantList before;
    for (int i = 0; i < count; ++i)
        before.append(QString("item %1").arg(qint64(i) * 7919 % 100003));
    QVariantList after = before;
    std::sort(after.begin(), after.end(),
              [](const QVariant &a, const QVariant &b) { return a.toString() < b.toString(); });
    std::vector<Difference> differences = listDifference(before, after);
    QCOMPARE(int(differences.size()), count);
    for (const Difference &each : differences)
        QCOMPARE(before.at(each.before), after.at(each.after));
    QVariantList others;
    for (int i = 0; i < count; ++i)
        others.append(1);
    differences = listDifference(before, others);
    QCOMPARE(int(differences.size()), count);
    QVERIFY(std::all_of(differences.begin(), differences.end(), [](const Difference &each) {
        return each.kind == DifferenceKind::Changed && each.before == each.after;
    }));
}

QTEST_GUILESS_MAIN(TestListDifference)
#include "tst_listdifference.moc"
