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
    void readsForms_data();
    void readsForms();
    void readsTheFirstRows();
    void readsLines_data();
    void readsLines();
    void refuses_data();
    void refuses();
    void refusesMoreCellsThanAreRead();
    void guessesSeparators_data();
    void guessesSeparators();
    void readsBack();
    void refusesToWriteWhatCannotBeReadBack();
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

void TestCsvText::readsForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QChar>("separator");
    QTest::addColumn<QChar>("quote");
    QTest::addColumn<QStringList>("row");
    const auto row = [](const char *text, char separator, char quote, const QStringList &cells) {
        QTest::newRow(text) << QString(text) << QChar(separator) << QChar(quote) << cells;
    };
    row("a;\"b;c\"", ';', '"', {"a", "b;c"});
    row("a,b;'c;''d'", ';', '\'', {"a,b", "c;'d"});
    row("a\t\"b", '\t', '\0', {"a", "\"b"});
}

void TestCsvText::readsForms()
{
    QFETCH(QString, text);
    QFETCH(QChar, separator);
    QFETCH(QChar, quote);
    QFETCH(QStringList, row);
    const auto result = parseCsv(text, {separator, quote});
    QVERIFY2(result, qPrintable(errorOf(result)));
    QCOMPARE(*result, QVector<QStringList>{row});
}

void TestCsvText::readsTheFirstRows()
{
    const QVector<QStringList> rows{{"a"}, {"b"}};
    QCOMPARE(parseCsv("a\nb\n\"never closed", CsvForm(), 2).value_or(QVector<QStringList>()), rows);
    QCOMPARE(parseLines("a\nb\nc\n", 2).value_or(QVector<QStringList>()), rows);
}

void TestCsvText::readsLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("nothing") << QString() << QStringList{};
    QTest::newRow("one line") << "a" << QStringList{"a"};
    QTest::newRow("one line, ended") << "a\n" << QStringList{"a"};
    QTest::newRow("empty line") << "\n" << QStringList{""};
    QTest::newRow("empty lines") << "a\n\n\nb\n\n" << QStringList{"a", "", "", "b", ""};
    QTest::newRow("CR LF") << "a\r\n\r\nb\r\n" << QStringList{"a", "", "b"};
    QTest::newRow("CR inside") << "a\rb\r\r\n" << QStringList{"a\rb\r"};
    QTest::newRow("CR at the end") << "a\r" << QStringList{"a\r"};
    QTest::newRow("blanks") << " a \n\t\n" << QStringList{" a ", "\t"};
    QTest::newRow("NUL") << QString("a") + QChar(0) + "b\n" << QStringList{QString("a") + QChar(0) + "b"};
    QTest::newRow("separators and quotation marks") << "a,\"b\n" << QStringList{"a,\"b"};
}

void TestCsvText::readsLines()
{
    QFETCH(QString, text);
    QFETCH(QStringList, lines);
    QVector<QStringList> rows;
    for (const QString &line : lines)
        rows.append({line});
    const auto result = parseLines(text);
    QVERIFY2(result, qPrintable(errorOf(result)));
    QCOMPARE(*result, rows);
}

void TestCsvText::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("never closed") << "a\nb,\"c\nd"
                                  << "line 2, column 2: the quotation mark that opens here is never closed";
    QTest::newRow("text behind the mark")
        << "a\nx,\"b\nc\"d"
        << "line 3, column 2: a separator or the end of the line has to follow the closing quotation mark";
}

void TestCsvText::refuses()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    const auto result = parseCsv(text);
    QVERIFY(!result);
    QCOMPARE(result.error(), error);
}

// The bound holds in the middle of a row, too: nothing else would end it.
void TestCsvText::refusesMoreCellsThanAreRead()
{
    const QString row(maxCells, ',');
    QCOMPARE(errorOf(parseCsv("a\n" + row)),
             QString("line 2, column 10000000: here are more than 10000000 cells"));
}

void TestCsvText::guessesSeparators_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QChar>("separator");
    const auto row = [](const char *text, char separator) {
        QTest::newRow(text) << QString(text) << QChar(separator);
    };
    row("", ',');
    row("a,b\nc,d\n", ',');
    row("a;b\nc;d\n", ';');
    row("a\tb,c\nd\te\n", '\t');
    row("a|b|c", '|');
    row("1,5;2,5\n3,5;4\n", ';');
    row("\"a;b\",c\nd,e\n", ',');
    row("no,two;lines\nare alike\n", ',');
    row("a;b\n\"cut off", ',');
}

void TestCsvText::guessesSeparators()
{
    QFETCH(QString, text);
    QTEST(guessSeparator(text), "separator");
}

void TestCsvText::refusesToWriteWhatCannotBeReadBack()
{
    const CsvForm form{'\t', QChar()};
    QCOMPARE(formatCsv({{"a", "\"b,"}}, form).value_or("refused"), QString("a\t\"b,\n"));
    for (const char *cell : {"b\tc", "b\n", "\rb"}) {
        QCOMPARE(
            errorOf(formatCsv({{"a"}, {"a", cell}}, form)),
            QString(
                "row 2, column 2 holds a separator or a line break, which this form of text cannot; choose a "
                ".csv file"));
    }
}

void TestCsvText::readsBack()
{
    const QVector<QStringList> rows{{"a", "b,c", "d\"e"}, {""}, {"", ""}, {"f\ng", "h\r\ni", "\"k"}, {" j "}};
    const auto back = parseCsv(*formatCsv(rows));
    QVERIFY(back);
    QCOMPARE(*back, rows);
}

QTEST_GUILESS_MAIN(TestCsvText)
#include "tst_csvtext.moc"
