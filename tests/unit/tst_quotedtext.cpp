#include "host/values/QuotedText.h"

#include <QtTest>

class TestQuotedText : public QObject
{
    Q_OBJECT

private slots:
    void quoted_data();
    void quoted();
    void inOneLine();
};

void TestQuotedText::quoted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << ""
                           << "\"\"";
    QTest::newRow("blanks") << " a  b "
                            << "\" a  b \"";
    QTest::newRow("other scripts") << QString::fromUtf8("列表") << QString::fromUtf8("\"列表\"");
    QTest::newRow("control characters")
        << QString("a\n\t") + QChar(0) + QChar(0x7f) << "\"a\\u000a\\u0009\\u0000\\u007f\"";
    QTest::newRow("pair") << QString::fromUtf8("x😀y") << QString::fromUtf8("\"x😀y\"");
    QTest::newRow("lone halves") << QString(QChar(0xdc00)) + QChar(0xd800) << "\"\\udc00\\ud800\"";
    QTest::newRow("60 characters") << QString(60, 'x') << '"' + QString(60, 'x') + '"';
    QTest::newRow("61 characters") << QString(61, 'x') << '"' + QString(60, 'x') + "\"... (61 characters)";
    QTest::newRow("pair at the end of what is shown") << QString(59, 'x')
            + QString::fromUtf8("😀y") << '"' + QString(59, 'x') + QString::fromUtf8("😀\"... (62 characters)");
}

void TestQuotedText::quoted()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(StepHost::quoted(text), expected);
}

void TestQuotedText::inOneLine()
{
    QCOMPARE(
        StepHost::inOneLine(QString("a\n\r\t") + QChar(0) + QChar(0x1b) + QString::fromUtf8("列表 \"x\"")),
        QString::fromUtf8("a\\n\\r\\t\\u0000\\u001b列表 \"x\""));
    QCOMPARE(StepHost::inOneLine(QString(100000, 'x')).size(), 100000);
}

QTEST_GUILESS_MAIN(TestQuotedText)

#include "tst_quotedtext.moc"
