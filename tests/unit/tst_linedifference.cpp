#include "tools/workbench/document/LineDifference.h"

#include <QtTest>

using namespace Workbench;

class TestLineDifference : public QObject
{
    Q_OBJECT

private slots:
    void finds_data();
    void finds();
    void longTexts();
};

namespace
{
QStringList letters(const QString &text)
{
    QStringList lines;
    for (const QChar letter : text)
        lines.append(letter);
    return lines;
}

QString shown(const QVector<DifferenceLine> &lines)
{
    QString text;
    for (const DifferenceLine &line : lines)
        text += QStringLiteral(" -+").at(line.side) + line.text;
    return text;
}
} // namespace

void TestLineDifference::finds_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("difference");
    QTest::newRow("none") << "ab"
                          << "ab"
                          << " a b";
    QTest::newRow("both empty") << ""
                                << ""
                                << "";
    QTest::newRow("all new") << ""
                             << "ab"
                             << "+a+b";
    QTest::newRow("all gone") << "ab"
                              << ""
                              << "-a-b";
    QTest::newRow("one changed") << "abc"
                                 << "axc"
                                 << " a-b+x c";
    QTest::newRow("one inserted") << "ac"
                                  << "abc"
                                  << " a+b c";
    QTest::newRow("one removed") << "abc"
                                 << "ac"
                                 << " a-b c";
    QTest::newRow("one repeated") << "aa"
                                  << "aaa"
                                  << " a a+a";
    QTest::newRow("two places") << "abcde"
                                << "xbcdy"
                                << "-a+x b c d-e+y";
    QTest::newRow("moved") << "abcd"
                           << "bcda"
                           << "-a b c d+a";
}

void TestLineDifference::finds()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QTEST(shown(lineDifference(letters(first), letters(second))), "difference");
}

void TestLineDifference::longTexts()
{
    QStringList first;
    QStringList second;
    for (int i = 0; i < 3000; ++i) {
        first.append(QString::number(i));
        second.append(QString::number(-i));
    }
    const QVector<DifferenceLine> lines = lineDifference(first, second);
    QCOMPARE(lines.size(), 5999);
    QCOMPARE(lines.first().side, DifferenceLine::Both);
    QCOMPARE(lines.at(2999).side, DifferenceLine::First);
    QCOMPARE(lines.at(3000).side, DifferenceLine::Second);
}

QTEST_APPLESS_MAIN(TestLineDifference)
#include "tst_linedifference.moc"
