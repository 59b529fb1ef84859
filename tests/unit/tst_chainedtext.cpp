#include "operations/ChainedText.h"

#include "operations/ListAddOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"

#include <QRandomGenerator>
#include <QtTest>

class TestChainedText : public QObject
{
    Q_OBJECT

private slots:
    void isWhatQtMakes();
    void numbers_data();
    void numbers();
    void length_data();
    void length();
    void steps();
};

namespace
{
QString randomText(QRandomGenerator &random, int parts)
{
    static const QStringList pieces{"%",   "%%",  "%L",      "%0",  "%1",         "%2",   "%3",   "%4",
                                    "%L1", "%L2", "%L3",     "%12", "%99",        "%123", "%L45", "1",
                                    "x",   "$",   "%\u0663", "列",  "\U0001F600", "%n"};
    QString text;
    for (int i = random.bounded(parts); i > 0; --i)
        text += pieces.at(random.bounded(pieces.size()));
    return text;
}
} // namespace

void TestChainedText::isWhatQtMakes()
{
    QRandomGenerator random(16);
    const QStringList patterns{"%1: %2 <- %3", "%1: %2[%3] -> %4", "%2%1", "%3 %1 %3"};
    for (int i = 0; i < 20000; ++i) {
        const QString pattern = patterns.at(random.bounded(patterns.size()));
        const QStringList texts{randomText(random, 12), randomText(random, 12), randomText(random, 12)};
        // Without a marker left, Qt says so on the warning log.
        const QString marked = pattern + "%97%98%99";
        const int number = random.bounded(3);
        QCOMPARE(ChainedText(marked).arg(texts[0]).arg(texts[1]).arg(texts[2]).arg(number).toString(),
                 marked.arg(texts[0]).arg(texts[1]).arg(texts[2]).arg(number));
    }
}

void TestChainedText::numbers_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("number");
    QTest::newRow("plain") << "%1" << 1234567;
    QTest::newRow("of the locale") << "%L1 %1" << 1234567;
    QTest::newRow("lowest") << "%1" << std::numeric_limits<int>::min();
}

void TestChainedText::numbers()
{
    QFETCH(QString, pattern);
    QFETCH(int, number);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(ChainedText(pattern).arg(number).toString(), pattern.arg(number));
    QLocale::setDefault(QLocale::c());
}

void TestChainedText::length_data()
{
    constexpr int most = ChainedText::maxLength;
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<int>("expected"); // -1: too long
    QTest::newRow("longest") << "%1" << QStringList{QString(most, 'x')} << most;
    QTest::newRow("longer by one") << "%1" << QStringList{QString(most + 1, 'x')} << -1;
    QTest::newRow("longest of several") << "%1%1" << QStringList{QString(most / 2, 'x')} << most;
    QTest::newRow("longer, of several") << "-%1%1" << QStringList{QString(most / 2, 'x')} << -1;
    QTest::newRow("longest through a marker")
        << "%1%2" << QStringList{QString("%2").repeated(999), QString(most / 1000, 'x')} << most;
    QTest::newRow("longer through a marker")
        << "%1%2" << QStringList{QString("%2").repeated(1000), QString(most / 1000, 'x')} << -1;
    QTest::newRow("percent signs that are no markers")
        << "%1 %2" << QStringList{QString(100000, '%') + "x", QString(1000, 'y')} << 101002;
    QTest::newRow("markers of another number")
        << "%1 %2" << QStringList{QString("%3").repeated(100000), QString(1000, 'y')} << 201001;
    QTest::newRow("more than 32 bits")
        << "%1%2" << QStringList{QString("%2").repeated(65536), QString(65536, 'x')} << -1;
    QTest::newRow("texts behind one that is too long")
        << "%1%2%3" << QStringList{QString(most + 1, 'x'), "a", "b"} << -1;
}

void TestChainedText::length()
{
    QFETCH(QString, pattern);
    QFETCH(QStringList, texts);
    QFETCH(int, expected);
    ChainedText chain(pattern);
    for (const QString &text : texts)
        chain.arg(text);
    const QString text = chain.toString();
    if (expected < 0)
        QCOMPARE(text, ChainedText::tooLong());
    else
        QCOMPARE(text.size(), expected);
}

// Settings of a few kilobytes whose texts would have gigabytes.
void TestChainedText::steps()
{
    ListAddOperation add;
    add.setTargetVar(QString("%3").repeated(65536));
    add.setValue(QString(65536, 'A'));
    QCOMPARE(add.toString(), ChainedText::tooLong());
    QCOMPARE(add.description().size(), 4 + 1 + 131072 + 5 + 65536);

    ListMergeOperation merge;
    merge.setListA(QString("%3").repeated(800));
    merge.setListB(QString("%4").repeated(800));
    merge.setTargetVar(QString(800, 'x'));
    QCOMPARE(merge.toString(), ChainedText::tooLong());

    ListRemoveOperation remove;
    remove.setTargetVar(QString("%3").repeated(4999999));
    remove.setMode(1234567);
    QCOMPARE(remove.toString(), ChainedText::tooLong());
}

QTEST_GUILESS_MAIN(TestChainedText)

#include "tst_chainedtext.moc"
