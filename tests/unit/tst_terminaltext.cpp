#include "host/values/TerminalText.h"

#include <QtTest>

using namespace StepHost;

class TestTerminalText : public QObject
{
    Q_OBJECT

private slots:
    void columns_data();
    void columns();
    void cut_data();
    void cut();
    void colours();
};

void TestTerminalText::columns_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("letters") << "abc" << 3;
    QTest::newRow("ideographs") << QString::fromUtf8("列表") << 4;
    QTest::newRow("syllables") << QString::fromUtf8("한글") << 4;
    QTest::newRow("full width") << QString::fromUtf8("（１）") << 6;
    QTest::newRow("marks") << QString::fromUtf8("e\u0301a") << 2;
    QTest::newRow("pictures") << QString::fromUtf8("😀") << 2;
    QTest::newRow("ideographs of two units") << QString::fromUtf8("𠀀") << 2;
    QTest::newRow("half a pair") << QString(QChar(0xd83d)) << 1;
}

void TestTerminalText::columns()
{
    QFETCH(QString, text);
    QTEST(columnsOf(text), "columns");
}

void TestTerminalText::cut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("expected");
    QTest::newRow("it fits") << QString(20, 'x') << 20 << QString(20, 'x');
    QTest::newRow("one too many") << QString(21, 'x') << 20 << QString(16, 'x') + " (R)";
    QTest::newRow("wide ones fit") << QString::fromUtf8("一二三四五六七八") << 16
                                   << QString::fromUtf8("一二三四五六七八");
    QTest::newRow("no half of a wide one")
        << QString::fromUtf8("一二三四五六七八九") << 15 << QString::fromUtf8("一二三四五 (R)");
    QTest::newRow("no half of a pair")
        << QString::fromUtf8("😀😀😀😀😀😀😀😀") << 15 << QString::fromUtf8("😀😀😀😀😀 (R)");
    QTest::newRow("no room") << QString(21, 'x') << 3 << QString(10, 'x') + " (R)";
    QTest::newRow("less than no room") << QString(21, 'x') << -100 << QString(10, 'x') + " (R)";
}

void TestTerminalText::cut()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QTEST(cutToColumns(text, columns, " (R)"), "expected");
}

void TestTerminalText::colours()
{
    const TextLook colourful{0, true};
    QCOMPARE(coloured("x", TextColour::Good, colourful), QByteArray("\x1b[32mx\x1b[0m"));
    QCOMPARE(coloured("x", TextColour::Caution, colourful), QByteArray("\x1b[33mx\x1b[0m"));
    QCOMPARE(coloured("x", TextColour::Bad, colourful), QByteArray("\x1b[31mx\x1b[0m"));
    QCOMPARE(coloured("x", TextColour::Bad, TextLook()), QByteArray("x"));
}

QTEST_APPLESS_MAIN(TestTerminalText)
#include "tst_terminaltext.moc"
