#include "stepkit/ValueTexts.h"
#include "tests/support/ShowValue.h"

#include <QtTest>

#include <climits>
#include <limits>

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

QVariant list(const QVariantList &elements)
{
    return QVariant(elements);
}
} // namespace

class TestValueTexts : public QObject
{
    Q_OBJECT

private slots:
    void parseBoolText_data();
    void parseBoolText();
    void parseListLiteral_data();
    void parseListLiteral();
    void parseTableJson_data();
    void parseTableJson();
    void parseIndexText_data();
    void parseIndexText();
};

void TestValueTexts::parseBoolText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("recognised");
    QTest::addColumn<bool>("truth");
    for (const char *text : {"true", "TRUE", "True", "1", "yes", "YES", "是", "y", "Y", " true ", "\t是\n"})
        QTest::newRow(text) << text << true << true;
    for (const char *text : {"false", "FALSE", "0", "no", "No", "否", "n", "N", "", "   ", "\n", " false "})
        QTest::addRow("'%s'", text) << text << true << false;
    for (const char *text :
         {"maybe", "2", "-1", "1.0", "0.0", "10", "t", "f", "on", "off", "ｙ", "true false", "不"})
        QTest::newRow(text) << text << false << false;
}

void TestValueTexts::parseBoolText()
{
    QFETCH(QString, text);
    QFETCH(bool, recognised);
    QFETCH(bool, truth);
    for (const bool before : {false, true}) {
        bool out = before;
        QCOMPARE(::parseBoolText(text, &out), recognised);
        QCOMPARE(out, recognised ? truth : before);
    }
    QCOMPARE(::parseBoolText(text, nullptr), recognised);
}

void TestValueTexts::parseListLiteral_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasBrackets");
    QTest::addColumn<QVariantList>("elements");
    QTest::newRow("mixed") << "[1, a, ,2]" << true << QVariantList{1.0, "a", 2.0};
    QTest::newRow("empty") << "[]" << true << QVariantList();
    QTest::newRow("blanks inside") << "[  \t ]" << true << QVariantList();
    QTest::newRow("commas only") << "[,,, ,]" << true << QVariantList();
    QTest::newRow("blanks around") << " \n[ x ]\t" << true << QVariantList{"x"};
    QTest::newRow("numbers") << "[-2.5,1e3,+7,.5]" << true << QVariantList{-2.5, 1000.0, 7.0, 0.5};
    QTest::newRow("nan and inf") << "[nan,inf]" << true << QVariantList{notANumber, infinity};
    QTest::newRow("texts that look like others")
        << "[true,0x10,null]" << true << QVariantList{"true", "0x10", "null"};
    QTest::newRow("no quoting") << "[\"a\",'b,c']" << true << QVariantList{"\"a\"", "'b", "c'"};
    QTest::newRow("no nesting") << "[[1,2],[3]]" << true << QVariantList{"[1", "2]", "[3]"};
    QTest::newRow("inner blanks stay") << "[a b , c]" << true << QVariantList{"a b", "c"};
    QTest::newRow("no reference") << "[$a]" << true << QVariantList{"$a"};
    QTest::newRow("wide comma") << "[1，2]" << true << QVariantList{"1，2"};
    for (const char *text : {"", " ", "[", "]", "[1", "1]", "1,2", "][", "[1]x", "x[1]", "(1)"})
        QTest::addRow("no brackets: '%s'", text) << text << false << QVariantList();
}

void TestValueTexts::parseListLiteral()
{
    QFETCH(QString, text);
    QFETCH(bool, hasBrackets);
    QFETCH(QVariantList, elements);
    QVariantList out{"before"};
    QCOMPARE(::parseListLiteral(text, &out), hasBrackets);
    QCOMPARE(shown(out), shown(hasBrackets ? elements : QVariantList{"before"}));
    QCOMPARE(::parseListLiteral(text, nullptr), hasBrackets);
}

void TestValueTexts::parseTableJson_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariantList>("rows");
    const QVariantList none;
    QTest::newRow("rows") << R"([["a","b"],["c"]])" << QVariantList{list({"a", "b"}), list({"c"})};
    QTest::newRow("blanks around") << " \n[[\"a\"]]\t " << QVariantList{list({"a"})};
    QTest::newRow("wide blanks around") << "　[[\"a\"]]　" << QVariantList{list({"a"})};
    QTest::newRow("cells that are no texts")
        << R"([[1,1.5,true,null,{"a":"b"},["c"],"d"]])" << QVariantList{list({"", "", "", "", "", "", "d"})};
    QTest::newRow("empty rows") << "[[],[]]" << QVariantList{list({}), list({})};
    QTest::newRow("no rows") << "[]" << none;
    QTest::newRow("escapes") << R"([["\u5217\n","表"]])" << QVariantList{list({"列\n", "表"})};
    QTest::newRow("a late element that is no row") << R"([["a"],["b"],5])" << none;
    QTest::newRow("a first element that is no row") << R"(["a",["b"]])" << none;
    QTest::newRow("an object as a row") << R"([["a"],{"0":"b"}])" << none;
    QTest::newRow("null as a row") << R"([["a"],null])" << none;
    for (const char *text :
         {"", "   ", "abc", "{}", R"({"a":[["b"]]})", "5", "\"a\"", "[[1]", "[[1],]", "[['a']]", "[[1]]x"})
        QTest::addRow("no table: '%s'", text) << text << none;
}

void TestValueTexts::parseTableJson()
{
    QFETCH(QString, text);
    QFETCH(QVariantList, rows);
    const QVariantList parsed = ::parseTableJson(text);
    QCOMPARE(parsed.size(), rows.size());
    QCOMPARE(parsed, rows);
    for (const QVariant &row : parsed) {
        QCOMPARE(row.userType(), int(QMetaType::QVariantList));
        for (const QVariant &cell : row.toList())
            QCOMPARE(cell.userType(), int(QMetaType::QString));
    }
}

void TestValueTexts::parseIndexText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    QTest::newRow("0") << "0" << true << 0;
    QTest::newRow("blanks around") << " \t2\n" << true << 2;
    QTest::newRow("plus sign") << "+3" << true << 3;
    QTest::newRow("minus sign") << "-5" << true << -5;
    QTest::newRow("leading zeros") << "007" << true << 7;
    QTest::newRow("greatest") << "2147483647" << true << INT_MAX;
    QTest::newRow("least") << "-2147483648" << true << INT_MIN;
    for (const char *text : {"", " ", "1.5", "1.0", "abc", "$i", "0x10", "1e3", "2147483648", "-2147483649",
                             "1 2", "１", "--1", "1,000"})
        QTest::addRow("'%s'", text) << text << false << 0;
}

void TestValueTexts::parseIndexText()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    int out = 99;
    QCOMPARE(::parseIndexText(text, out), isNumber);
    QCOMPARE(out, number);
}

QTEST_GUILESS_MAIN(TestValueTexts)
#include "tst_valuetexts.moc"
