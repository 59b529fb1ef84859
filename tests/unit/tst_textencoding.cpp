#include "host/files/TextEncoding.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(StepHost::TextEncoding)

class TestTextEncoding : public QObject
{
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void refuses_data();
    void refuses();
    void guesses_data();
    void guesses();
    void hasNames();
};

void TestTextEncoding::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &bytes, TextEncoding encoding, const char *text) {
        QTest::newRow(name) << bytes << encoding << QString::fromUtf8(text);
    };
    // QString::fromUtf8() drops the first one, too.
    const char *const twoMarks = "\xEF\xBB\xBF\xEF\xBB\xBF b";
    row("nothing", "", TextEncoding::Utf8, "");
    row("UTF-8", "a\xC3\xA9\xE6\x9D\x8E\xF0\x9F\x98\x80", TextEncoding::Utf8, "aé李😀");
    row("byte order mark alone", "\xEF\xBB\xBF", TextEncoding::Utf8, "");
    row("two byte order marks", twoMarks, TextEncoding::Utf8, twoMarks);
    row("GB 2312", "\xC0\xEE\xC0\xD7,a\n", TextEncoding::Gb18030, "李雷,a\n");
    row("GBK", "\x96\x7C\x81\x40", TextEncoding::Gb18030, "東丂");
    row("four bytes", "\x81\x39\xEE\x39", TextEncoding::Gb18030, "㐀");
    row("GB18030 with a byte order mark",
        "\x84\x31\x95\x33"
        "a",
        TextEncoding::Gb18030, "a");
    row("UTF-16, little end first",
        QByteArray("\xFF\xFE"
                   "a\0\x4E\x67",
                   6),
        TextEncoding::Utf16, "a\u674e");
    row("UTF-16, big end first", QByteArray("\xFE\xFF\0a\x67\x4E", 6), TextEncoding::Utf16, "a\u674e");
    row("UTF-16 without a mark", QByteArray("\0a\0\n", 4), TextEncoding::Utf16, "a\n");
    row("surrogates", QByteArray("\xFF\xFE\x3D\xD8\0\xDE", 6), TextEncoding::Utf16, "😀");
    row("Latin-1", "caf\xE9", TextEncoding::Latin1, "café");
}

void TestTextEncoding::decodes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(TextEncoding, encoding);
    const auto text = decodeText(bytes, encoding);
    QVERIFY2(text, qPrintable(errorOf(text)));
    QTEST(*text, "text");
}

void TestTextEncoding::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &bytes, TextEncoding encoding, const char *error) {
        QTest::newRow(name) << bytes << encoding << error;
    };
    row("first line", "\xff\nb\n", TextEncoding::Utf8, "line 1, character 1 is not UTF-8 text");
    row("third line", "a\n\n\xC3\xA9\xe6\x9d\nb", TextEncoding::Utf8,
        "line 3, character 2 is not UTF-8 text");
    row("cut off at the end", "a\n\xe6\x9d", TextEncoding::Utf8, "line 2, character 1 is not UTF-8 text");
    row("too long", "a\n\xC0\x80\n", TextEncoding::Utf8, "line 2, character 1 is not UTF-8 text");
    row("three bytes, too long", "\xE0\x80\x80", TextEncoding::Utf8, "line 1, character 1 is not UTF-8 text");
    row("four bytes, too long", "\xF0\x80\x80\x80", TextEncoding::Utf8,
        "line 1, character 1 is not UTF-8 text");
    row("beyond the last", "\xF4\x90\x80\x80", TextEncoding::Utf8, "line 1, character 1 is not UTF-8 text");
    row("surrogate", "\xED\xA0\x80", TextEncoding::Utf8, "line 1, character 1 is not UTF-8 text");
    row("Latin-1", "a\nb\ncaf\xe9\n", TextEncoding::Utf8, "line 3, character 4 is not UTF-8 text");
    row("GB18030, half a pair", "\xC0\xEE\xC0", TextEncoding::Gb18030,
        "line 1, character 2 is not GB18030 text");
    row("GB18030, no second byte", "a\n\xC0\xEE\xC0\n", TextEncoding::Gb18030,
        "line 2, character 2 is not GB18030 text");
    row("GB18030, no first byte", "\x80", TextEncoding::Gb18030, "line 1, character 1 is not GB18030 text");
    row("GB18030, three bytes of four", "\x81\x39\xEF", TextEncoding::Gb18030,
        "line 1, character 1 is not GB18030 text");
    row("GB18030, no such character", "\xC0\xEE\n\xC0\xEE\xFE\x39\xFE\x39", TextEncoding::Gb18030,
        "line 2, character 2 is not GB18030 text");
    row("UTF-16, odd",
        QByteArray("\xFF\xFE"
                   "a\0\n\0b",
                   7),
        TextEncoding::Utf16, "line 2, character 1 is not UTF-16 text");
    row("UTF-16, half a pair",
        QByteArray("\xFF\xFE\x3D\xD8"
                   "a\0",
                   6),
        TextEncoding::Utf16, "line 1, character 2 is not UTF-16 text");
    row("UTF-16, other half", QByteArray("\xFF\xFE\0\xDE", 4), TextEncoding::Utf16,
        "line 1, character 2 is not UTF-16 text");
}

void TestTextEncoding::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(TextEncoding, encoding);
    QTEST(errorOf(decodeText(bytes, encoding)), "error");
}

void TestTextEncoding::guesses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<bool>("isCertain");
    const auto row = [](const char *name, const QByteArray &bytes, TextEncoding encoding, bool isCertain) {
        QTest::newRow(name) << bytes << encoding << isCertain;
    };
    row("nothing", "", TextEncoding::Utf8, true);
    row("ASCII", "a,b\n", TextEncoding::Utf8, true);
    row("UTF-8", "\xE6\x9D\x8E", TextEncoding::Utf8, true);
    row("GB 2312", "a,\xC0\xEE\xC0\xD7\n", TextEncoding::Gb18030, false);
    row("GB18030 with a mark",
        "\x84\x31\x95\x33"
        "a",
        TextEncoding::Gb18030, true);
    row("Latin-1", "caf\xE9\n", TextEncoding::Latin1, false);
    row("Latin-1 that could be GBK",
        "Stra\xDF"
        "e",
        TextEncoding::Latin1, false);
    row("UTF-16 with a mark", QByteArray("\xFE\xFF\x67\x4E", 4), TextEncoding::Utf16, true);
    row("UTF-16", QByteArray("a\0,\0b\0\n\0", 8), TextEncoding::Utf16, false);
    row("a NUL among ASCII", QByteArray("a\0bcdefg", 8), TextEncoding::Utf8, true);
}

void TestTextEncoding::guesses()
{
    QFETCH(QByteArray, bytes);
    const EncodingGuess guess = guessEncoding(bytes);
    QTEST(guess.encoding, "encoding");
    QTEST(guess.isCertain, "isCertain");
}

void TestTextEncoding::hasNames()
{
    const QVector<TextEncoding> encodings = textEncodings();
    for (const TextEncoding encoding : encodings)
        QVERIFY(encodingNamed(encodingName(encoding).toUpper()).value() == encoding);
    QCOMPARE(
        errorOf(encodingNamed("big5")),
        QString("there is no encoding \"big5\"; there are \"utf-8\", \"gb18030\", \"utf-16\", \"latin-1\""));
}

QTEST_GUILESS_MAIN(TestTextEncoding)
#include "tst_textencoding.moc"
