#include "host/values/ItemValue.h"
#include "tests/support/ErrorOf.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace StepHost;

Q_DECLARE_METATYPE(StepHost::ItemKind)

class TestItemValue : public QObject
{
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void converts_data();
    void converts();
    void textReadsBack_data();
    void textReadsBack();
    void summaryIsOneShortLine_data();
    void summaryIsOneShortLine();
    void sameTellsTypesApart_data();
    void sameTellsTypesApart();
};

void TestItemValue::parses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ItemKind>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const char *name, const char *text, ItemKind kind, const QVariant &value) {
        QTest::newRow(name) << QString::fromUtf8(text) << kind << value << true;
    };
    const auto refused = [](const char *name, const char *text, ItemKind kind) {
        QTest::newRow(name) << QString::fromUtf8(text) << kind << QVariant() << false;
    };
    row("int", " 7 ", ItemKind::Int, 7);
    row("negative int", "-7", ItemKind::Int, -7);
    row("64-bit int", "2147483648", ItemKind::Int, qlonglong(2147483648));
    refused("int too large", "9223372036854775808", ItemKind::Int);
    refused("fraction as int", "1.5", ItemKind::Int);
    refused("empty int", "", ItemKind::Int);
    row("double", "2.5", ItemKind::Double, 2.5);
    row("whole double", "3", ItemKind::Double, 3.0);
    row("exponent", "1e3", ItemKind::Double, 1000.0);
    refused("word as double", "three", ItemKind::Double);
    row("text keeps blanks", " a ", ItemKind::Text, " a ");
    row("number as text", "007", ItemKind::Text, "007");
    row("true", "TRUE", ItemKind::Bool, true);
    row("false", " false", ItemKind::Bool, false);
    refused("word as bool", "yes", ItemKind::Bool);
    row("list", R"([1, 1.0, "a", [null, true]])", ItemKind::List,
        QVariantList({1, 1.0, "a", QVariant(QVariantList({QVariant(), true}))}));
    refused("text as list", "a, b", ItemKind::List);
    refused("number as list", "1", ItemKind::List);
    row("empty", "anything", ItemKind::Empty, QVariant());
    refused("other", "x", ItemKind::Other);
}

void TestItemValue::parses()
{
    QFETCH(QString, text);
    QFETCH(ItemKind, kind);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    const Result<QVariant> result = ItemValue::parse(text, kind);
    QCOMPARE(bool(result), accepted);
    if (accepted)
        QVERIFY2(ItemValue::same(*result, value), qPrintable(result->toString()));
    else
        QVERIFY(!result.error().isEmpty());
}

void TestItemValue::converts_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<ItemKind>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    const QVariant none;
    QTest::newRow("text to int") << QVariant("7") << ItemKind::Int << QVariant(7) << true;
    QTest::newRow("whole double to int") << QVariant(7.0) << ItemKind::Int << QVariant(7) << true;
    QTest::newRow("fraction to int") << QVariant(7.5) << ItemKind::Int << none << false;
    QTest::newRow("NaN to int") << QVariant(std::nan("")) << ItemKind::Int << none << false;
    QTest::newRow("infinity to int") << QVariant(HUGE_VAL) << ItemKind::Int << none << false;
    QTest::newRow("bool to int") << QVariant(true) << ItemKind::Int << QVariant(1) << true;
    QTest::newRow("bool to double") << QVariant(false) << ItemKind::Double << QVariant(0.0) << true;
    QTest::newRow("int to double") << QVariant(3) << ItemKind::Double << QVariant(3.0) << true;
    QTest::newRow("double to text") << QVariant(3.0) << ItemKind::Text << QVariant("3.0") << true;
    QTest::newRow("negative zero to text") << QVariant(-0.0) << ItemKind::Text << QVariant("-0.0") << true;
    QTest::newRow("infinity to text") << QVariant(HUGE_VAL) << ItemKind::Text << QVariant("inf") << true;
    QTest::newRow("text to bool") << QVariant("true") << ItemKind::Bool << QVariant(true) << true;
    QTest::newRow("word to int") << QVariant("x") << ItemKind::Int << none << false;
    QTest::newRow("int to list") << QVariant(3) << ItemKind::List << QVariant(QVariantList{3}) << true;
    QTest::newRow("list to text") << QVariant(QVariantList{3, "a"}) << ItemKind::Text
                                  << QVariant(R"([3,"a"])") << true;
    QTest::newRow("anything to empty") << QVariant(3) << ItemKind::Empty << QVariant() << true;
    QTest::newRow("the same kind") << QVariant(qlonglong(3)) << ItemKind::Int << QVariant(qlonglong(3))
                                   << true;
}

void TestItemValue::converts()
{
    QFETCH(QVariant, from);
    QFETCH(ItemKind, kind);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    Result<QVariant> result = ItemValue::convert(from, kind);
    QCOMPARE(bool(result), accepted);
    if (!accepted) {
        QVERIFY(!result.error().isEmpty());
        return;
    }
    if (kind == ItemKind::Text)
        result = result->toString().remove(QLatin1Char(' '));
    QVERIFY2(ItemValue::same(*result, value), qPrintable(result->toString()));
}

void TestItemValue::textReadsBack_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << QVariant(-7);
    QTest::newRow("64-bit int") << QVariant(std::numeric_limits<qlonglong>::min());
    QTest::newRow("double") << QVariant(0.1);
    QTest::newRow("double of 17 digits") << QVariant(0.1 + 0.2);
    QTest::newRow("whole double") << QVariant(1.0);
    QTest::newRow("large double") << QVariant(1e300);
    QTest::newRow("infinity") << QVariant(-HUGE_VAL);
    QTest::newRow("NaN") << QVariant(std::nan(""));
    QTest::newRow("text") << QVariant(QString::fromUtf8(" 名 \"x\"\n"));
    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("list") << QVariant(QVariantList{1, 1.0, "1", true, QVariant(), QVariant(QVariantList{})});
}

void TestItemValue::textReadsBack()
{
    QFETCH(QVariant, value);
    const Result<QVariant> back = ItemValue::parse(ItemValue::editText(value), ItemValue::kind(value));
    QVERIFY2(back, qPrintable(errorOf(back)));
    QVERIFY2(ItemValue::same(*back, value), qPrintable(ItemValue::editText(value)));
}

void TestItemValue::summaryIsOneShortLine_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("summary");
    QTest::newRow("text that deceives")
        << QVariant(QString::fromUtf8("a\u202eb\u200b\u001b")) << "a\\u202eb\\u200b\\u001b";
    QTest::newRow("empty") << QVariant() << QString();
    QTest::newRow("empty in a list") << QVariant(QVariantList{QVariant(), 1}) << "[null, 1]";
    QTest::newRow("double") << QVariant(2.0) << "2.0";
    QTest::newRow("lines") << QVariant("a\nb") << QString::fromUtf8("a↵b");
    QTest::newRow("nested") << QVariant(QVariantList{QVariant(QVariantList{true}), "x"}) << "[[true], x]";
    QVariantList many;
    for (int i = 0; i < 100000; ++i)
        many.append(i);
    QTest::newRow("many items") << QVariant(many) << QString();
    QTest::newRow("long text") << QVariant(QString(100000, QLatin1Char('x'))) << QString();
    QVariantList deep;
    for (int i = 0; i < 1000; ++i)
        deep = QVariantList{QVariant(deep)};
    QTest::newRow("deep") << QVariant(deep) << QString();
}

void TestItemValue::summaryIsOneShortLine()
{
    QFETCH(QVariant, value);
    QFETCH(QString, summary);
    const QString line = ItemValue::summary(value);
    QVERIFY(line.size() < 400);
    QVERIFY(!line.contains(QLatin1Char('\n')));
    if (!summary.isEmpty() || !value.isValid())
        QCOMPARE(line, summary);
    else
        QVERIFY(line.contains(QChar(0x2026)));
}

void TestItemValue::sameTellsTypesApart_data()
{
    QTest::addColumn<QVariant>("a");
    QTest::addColumn<QVariant>("b");
    QTest::addColumn<bool>("same");
    QTest::newRow("equal") << QVariant(1) << QVariant(1) << true;
    QTest::newRow("int and double") << QVariant(1) << QVariant(1.0) << false;
    QTest::newRow("int and text") << QVariant(1) << QVariant("1") << false;
    QTest::newRow("close doubles") << QVariant(1.0) << QVariant(1.0 + 1e-15) << false;
    QTest::newRow("NaN") << QVariant(std::nan("")) << QVariant(std::nan("")) << true;
    QTest::newRow("lists") << QVariant(QVariantList{1, "a"}) << QVariant(QVariantList{1, "a"}) << true;
    QTest::newRow("lists of other types")
        << QVariant(QVariantList{1}) << QVariant(QVariantList{1.0}) << false;
    QTest::newRow("lists of other lengths")
        << QVariant(QVariantList{1}) << QVariant(QVariantList{1, 1}) << false;
    QTest::newRow("invalid") << QVariant() << QVariant() << true;
}

void TestItemValue::sameTellsTypesApart()
{
    QFETCH(QVariant, a);
    QFETCH(QVariant, b);
    QFETCH(bool, same);
    QCOMPARE(ItemValue::same(a, b), same);
    QCOMPARE(ItemValue::same(b, a), same);
}

QTEST_GUILESS_MAIN(TestItemValue)
#include "tst_itemvalue.moc"
