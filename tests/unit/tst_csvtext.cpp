#include "host/values/CsvText.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

using namespace StepHost;

Q_DECLARE_METATYPE(QVector<QStringList>)

class TestCsvText : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void readsBack();
};

void TestCsvText::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<QStringList>>("rows");
    const auto row = [](const char *name, const char *text, const QVector<QStringList> &rows) {
        QTest::newRow(name) << QString::fromUtf8(text) << rows;
    };
    row("empty", "", {});
    row("one cell", "a", {{"a"}});
    row("line break at the end", "a\n", {{"a"}});
    row("ragged rows", "a,b\nc\n", {{"a", "b"}, {"c"}});
    row("CR LF and CR", "a\r\nb\rc", {{"a"}, {"b"}, {"c"}});
    row("empty cells", ",a,\n,", {{"", "a", ""}, {"", ""}});
    row("empty line", "a\n\nb\n", {{"a"}, {""}, {"b"}});
    row("blanks stay", " a , b ", {{" a ", " b "}});
    row("quoted separators", "\"a,b\",\"c\nd\"\n", {{"a,b", "c\nd"}});
    row("quoted quotation mark", "\"a\"\"b\"", {{"a\"b"}});
    row("quoted empty", "\"\",\"\"", {{"", ""}});
    row("quotation mark within a plain cell", "a\"b,c", {{"a\"b", "c"}});
}

void TestCsvText::reads()
{
    QFETCH(QString, text);
    QFETCH(QVector<QStringList>, rows);
    const auto result = parseCsv(text);
    QVERIFY2(result, qPrintable(errorOf(result)));
    QCOMPARE(*result, rows);
}

void TestCsvText::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("never closed") << "a\nb,\"c\nd"
                                  << "line 2: the quotation mark that opens here is never closed";
    QTest::newRow("text behind the mark")
        << "a\n\"b\nc\"d"
        << "line 3: a comma or the end of the line has to follow the closing quotation mark";
}

void TestCsvText::refuses()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    const auto result = parseCsv(text);
    QVERIFY(!result);
    QCOMPARE(result.error(), error);
}

void TestCsvText::readsBack()
{
    const QVector<QStringList> rows{{"a", "b,c", "d\"e"}, {""}, {"", ""}, {"f\ng", "h\r\ni", "\"k"}, {" j "}};
    const auto back = parseCsv(formatCsv(rows));
    QVERIFY(back);
    QCOMPARE(*back, rows);
}

QTEST_GUILESS_MAIN(TestCsvText)
#include "tst_csvtext.moc"
