#include "host/values/QuotedText.h"

#include <QtTest>

class TestQuotedText : public QObject
{
    Q_OBJECT

private slots:
    void quoted_data();
    void quoted();
    void inOneLine();
    void characters_data();
    void characters();
    void bounded_data();
    void bounded();
    void messages();
    void markdown_data();
    void markdown();
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
    QTest::newRow("61 characters") << "-" + QString(59, 'x') + "+"
                                   << "\"-" + QString(39, 'x') + "\"...\"" + QString(19, 'x')
            + "+\" (61 characters)";
    QTest::newRow("pairs at the ends of what is shown")
        << QString(39, 'x') + QString::fromUtf8("😀") + QString(40, 'y') + QString::fromUtf8("😀")
            + QString(19, 'z')
        << '"' + QString(39, 'x') + "\"...\"" + QString(19, 'z') + "\" (102 characters)";
    QTest::newRow("direction of writing") << QString::fromUtf8("a\u202eb\u2066c") << "\"a\\u202eb\\u2066c\"";
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

void TestQuotedText::characters_data()
{
    QTest::addColumn<uint>("codePoint");
    QTest::addColumn<QString>("expected");
    const auto addShown = [](const char *name, uint codePoint) {
        QTest::newRow(name) << codePoint << QString::fromUcs4(&codePoint, 1);
    };
    addShown("letter", 'a');
    addShown("ideograph", 0x5217);
    addShown("emoji", 0x1f600);
    addShown("combining accent", 0x301);
    addShown("no-break space", 0xa0);
    QTest::newRow("escape") << 0x1bu << "\\u001b";
    QTest::newRow("carriage return") << 0xdu << "\\r";
    QTest::newRow("next line") << 0x85u << "\\u0085";
    QTest::newRow("soft hyphen") << 0xadu << "\\u00ad";
    QTest::newRow("zero width space") << 0x200bu << "\\u200b";
    QTest::newRow("zero width joiner") << 0x200du << "\\u200d";
    QTest::newRow("right-to-left mark") << 0x200fu << "\\u200f";
    QTest::newRow("line separator") << 0x2028u << "\\u2028";
    QTest::newRow("paragraph separator") << 0x2029u << "\\u2029";
    QTest::newRow("right-to-left override") << 0x202eu << "\\u202e";
    QTest::newRow("isolate") << 0x2066u << "\\u2066";
    QTest::newRow("end of isolate") << 0x2069u << "\\u2069";
    QTest::newRow("byte order mark") << 0xfeffu << "\\ufeff";
    QTest::newRow("tag") << 0xe0041u << "\\udb40\\udc41";
}

void TestQuotedText::characters()
{
    QFETCH(uint, codePoint);
    QFETCH(QString, expected);
    const uint codePoints[] = {'x', codePoint, 'y'};
    const QString text = QString::fromUcs4(codePoints, 3);
    QCOMPARE(StepHost::inOneLine(text), 'x' + expected + 'y');
    QCOMPARE(StepHost::inOneLine(text.toUtf8()), ('x' + expected + 'y').toUtf8());
    QCOMPARE(StepHost::inLines(text + "\n\t"), 'x' + expected + "y\n\t");
    QCOMPARE(StepHost::messageLine(text), 'x' + expected + 'y');
}

void TestQuotedText::bounded_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("most");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << "" << 3 << "";
    QTest::newRow("as long as may be") << "abc" << 3 << "abc";
    QTest::newRow("longer by one") << "abcdefg" << 6 << "abcd ... (7 characters) ... fg";
    QTest::newRow("pairs at both cuts")
        << QString::fromUtf8("abc😀defg😀h") << 6 << "abc ... (12 characters) ... h";
}

void TestQuotedText::bounded()
{
    QFETCH(QString, text);
    QFETCH(int, most);
    QTEST(StepHost::bounded(text, most), "expected");
}

void TestQuotedText::messages()
{
    QCOMPARE(StepHost::messageLine(QString(2000, 'x')).size(), 2000);
    const QString line = StepHost::messageLine("begin" + QString(10000000, QChar(0x1b)) + "end");
    QVERIFY(line.size() < 6 * 2000 + 100);
    QVERIFY(line.startsWith("begin\\u001b"));
    QVERIFY(line.endsWith("\\u001bend"));
    QVERIFY(line.contains("(10000008 characters)"));
}

void TestQuotedText::markdown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("code");
    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("words") << "a-b (c)."
                           << "a-b (c)."
                           << "`a-b (c).`";
    QTest::newRow("HTML") << "<b>&amp;"
                          << "\\<b\\>\\&amp;"
                          << "`<b>&amp;`";
    QTest::newRow("link") << "![a](b)"
                          << "!\\[a\\](b)"
                          << "`![a](b)`";
    QTest::newRow("emphasis") << "*a* _b_ ~c~"
                              << "\\*a\\* \\_b\\_ \\~c\\~"
                              << "`*a* _b_ ~c~`";
    QTest::newRow("heading") << "# a"
                             << "\\# a"
                             << "`# a`";
    QTest::newRow("cell") << "a|b\\"
                          << "a\\|b\\\\"
                          << "`a|b\\`";
    QTest::newRow("backtick") << "a`b"
                              << "a\\`b"
                              << "``a`b``";
    QTest::newRow("backticks at the ends") << "``a`"
                                           << "\\`\\`a\\`"
                                           << "``` ``a` ```";
    QTest::newRow("line") << "a\nb"
                          << "a\\\\nb"
                          << "`a\\nb`";
    QTest::newRow("direction of writing") << QString::fromUtf8("a\u202eb") << "a\\\\u202eb"
                                          << "`a\\u202eb`";
}

void TestQuotedText::markdown()
{
    QFETCH(QString, text);
    QTEST(StepHost::inMarkdown(text), "plain");
    QTEST(StepHost::markdownCode(text), "code");
}

QTEST_GUILESS_MAIN(TestQuotedText)

#include "tst_quotedtext.moc"
