#include "host/scripts/VariableEdits.h"
#include "host/values/CsvText.h"
#include "host/values/ItemValue.h"
#include "host/values/ValueFile.h"
#include "tests/support/TestPaths.h"
#include "tools/workbench/document/LogModel.h"
#include "tools/workbench/look/Language.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/values/ListValueModel.h"
#include "tools/workbench/values/ModelRows.h"
#include "tools/workbench/values/TableValueModel.h"
#include "tools/workbench/variables/VariablesModel.h"
#include "tools/workbench/window/RecentFiles.h"

#include <QAbstractItemModelTester>
#include <QXmlStreamReader>
#include <QtTest>

#include <cmath>

using namespace StepHost;
using namespace Workbench;

Q_DECLARE_METATYPE(StepHost::ItemKind)
Q_DECLARE_METATYPE(VarType)
Q_DECLARE_METATYPE(QVector<QStringList>)

class TestWorkbenchModels : public QObject
{
    Q_OBJECT

private slots:
    void itemParses_data();
    void itemParses();
    void itemConverts_data();
    void itemConverts();
    void itemTextReadsBack_data();
    void itemTextReadsBack();
    void summaryIsOneShortLine_data();
    void summaryIsOneShortLine();
    void sameTellsTypesApart_data();
    void sameTellsTypesApart();

    void csvReads_data();
    void csvReads();
    void csvRefuses_data();
    void csvRefuses();
    void csvReadsBack();

    void listIsEdited();
    void listRefusesWhatIsNoValue();
    void listRowsMove_data();
    void listRowsMove();
    void listRemovesScatteredRows();
    void listSorts_data();
    void listSorts();
    void listSortKeepsPersistentIndexes();
    void listConvertsWhatItCan();

    void tableIsEdited();
    void tableColumns();
    void tableRefusesWhatIsNoValue();

    void variableEdits_data();
    void variableEdits();
    void variableRetypes_data();
    void variableRetypes();
    void variableTexts_data();
    void variableTexts();
    void variablesModelAsksForChanges();
    void variablesModelRefuses();
    void variablesModelKeepsIndexes();
    void variablesModelMarksChanges();

    void valueFileLists_data();
    void valueFileLists();
    void valueFileTables();
    void valueFileErrorsChangeNothing_data();
    void valueFileErrorsChangeNothing();
    void valueFileRefusesLineBreaks();

    void logDropsTheOldest();
    void recentFilesAreBounded();
    void toolTipsShowTextsAsTheyStand();
    void languageOfTheSystem_data();
    void languageOfTheSystem();
    void translationIsComplete();
};

void TestWorkbenchModels::itemParses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ItemKind>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const char *name, const char *text, ItemKind kind, const QVariant &value) {
        QTest::newRow(name) << QString::fromUtf8(text) << kind << value << true;
    };
    const auto refused = [](const char *name, const char *text, ItemKind kind) {
        QTest::newRow(name) << QString::fromUtf8(text) << kind << QVariant("untouched") << false;
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

void TestWorkbenchModels::itemParses()
{
    QFETCH(QString, text);
    QFETCH(ItemKind, kind);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    QVariant result("untouched");
    QString error;
    QCOMPARE(ItemValue::parse(text, kind, result, error), accepted);
    QVERIFY2(ItemValue::same(result, value), qPrintable(result.toString()));
    QCOMPARE(error.isEmpty(), accepted);
}

void TestWorkbenchModels::itemConverts_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<ItemKind>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    const QVariant none("untouched");
    QTest::newRow("text to int") << QVariant("7") << ItemKind::Int << QVariant(7) << true;
    QTest::newRow("whole double to int") << QVariant(7.0) << ItemKind::Int << QVariant(7) << true;
    QTest::newRow("fraction to int") << QVariant(7.5) << ItemKind::Int << none << false;
    QTest::newRow("NaN to int") << QVariant(std::nan("")) << ItemKind::Int << none << false;
    QTest::newRow("infinity to int") << QVariant(HUGE_VAL) << ItemKind::Int << none << false;
    QTest::newRow("bool to int") << QVariant(true) << ItemKind::Int << QVariant(1) << true;
    QTest::newRow("bool to double") << QVariant(false) << ItemKind::Double << QVariant(0.0) << true;
    QTest::newRow("int to double") << QVariant(3) << ItemKind::Double << QVariant(3.0) << true;
    QTest::newRow("double to text") << QVariant(3.0) << ItemKind::Text << QVariant("3.0") << true;
    QTest::newRow("text to bool") << QVariant("true") << ItemKind::Bool << QVariant(true) << true;
    QTest::newRow("word to int") << QVariant("x") << ItemKind::Int << none << false;
    QTest::newRow("int to list") << QVariant(3) << ItemKind::List << QVariant(QVariantList{3}) << true;
    QTest::newRow("list to text") << QVariant(QVariantList{3, "a"}) << ItemKind::Text
                                  << QVariant(R"([3,"a"])") << true;
    QTest::newRow("anything to empty") << QVariant(3) << ItemKind::Empty << QVariant() << true;
    QTest::newRow("the same kind") << QVariant(qlonglong(3)) << ItemKind::Int << QVariant(qlonglong(3))
                                   << true;
}

void TestWorkbenchModels::itemConverts()
{
    QFETCH(QVariant, from);
    QFETCH(ItemKind, kind);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    QVariant result("untouched");
    QString error;
    QCOMPARE(ItemValue::convert(from, kind, result, error), accepted);
    if (accepted && kind == ItemKind::Text)
        result = result.toString().remove(QLatin1Char(' '));
    QVERIFY2(ItemValue::same(result, value), qPrintable(result.toString()));
    QCOMPARE(error.isEmpty(), accepted);
}

void TestWorkbenchModels::itemTextReadsBack_data()
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

void TestWorkbenchModels::itemTextReadsBack()
{
    QFETCH(QVariant, value);
    QVariant back;
    QString error;
    QVERIFY2(ItemValue::parse(ItemValue::editText(value), ItemValue::kind(value), back, error),
             qPrintable(error));
    QVERIFY2(ItemValue::same(back, value), qPrintable(ItemValue::editText(value)));
}

void TestWorkbenchModels::summaryIsOneShortLine_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("summary");
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

void TestWorkbenchModels::summaryIsOneShortLine()
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

void TestWorkbenchModels::sameTellsTypesApart_data()
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

void TestWorkbenchModels::sameTellsTypesApart()
{
    QFETCH(QVariant, a);
    QFETCH(QVariant, b);
    QFETCH(bool, same);
    QCOMPARE(ItemValue::same(a, b), same);
    QCOMPARE(ItemValue::same(b, a), same);
}

void TestWorkbenchModels::csvReads_data()
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

void TestWorkbenchModels::csvReads()
{
    QFETCH(QString, text);
    QFETCH(QVector<QStringList>, rows);
    QVector<QStringList> result;
    QString error;
    QVERIFY2(parseCsv(text, result, error), qPrintable(error));
    QCOMPARE(result, rows);
}

void TestWorkbenchModels::csvRefuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("never closed") << "a\nb,\"c\nd"
                                  << "line 2: the quotation mark that opens here is never closed";
    QTest::newRow("text behind the mark")
        << "a\n\"b\nc\"d"
        << "line 3: a comma or the end of the line has to follow the closing quotation mark";
}

void TestWorkbenchModels::csvRefuses()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    const QVector<QStringList> before{{"untouched"}};
    QVector<QStringList> rows = before;
    QString message;
    QVERIFY(!parseCsv(text, rows, message));
    QCOMPARE(message, error);
    QCOMPARE(rows, before);
}

void TestWorkbenchModels::csvReadsBack()
{
    const QVector<QStringList> rows{{"a", "b,c", "d\"e"}, {""}, {"", ""}, {"f\ng", "h\r\ni", "\"k"}, {" j "}};
    QVector<QStringList> back;
    QString error;
    QVERIFY(parseCsv(formatCsv(rows), back, error));
    QCOMPARE(back, rows);
}

void TestWorkbenchModels::listIsEdited()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setItems({"a", 2, 1.5, true, QVariant(), QVariant(QVariantList{1})});
    QCOMPARE(model.rowCount(), 6);
    QCOMPARE(model.index(1, ListValueModel::ValueColumn).data().toString(), QString("2"));
    QCOMPARE(model.index(1, ListValueModel::TypeColumn).data().toString(), QString("Integer"));
    QCOMPARE(model.index(5, ListValueModel::ValueColumn).data().toString(), QString("[1]"));

    QVERIFY(model.setData(model.index(0, ListValueModel::ValueColumn), "b", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, ListValueModel::TypeColumn), int(ItemKind::Text), Qt::EditRole));
    QVERIFY(model.insertRows(6, 2));
    QVERIFY(model.removeRows(2, 2));
    QVERIFY(ItemValue::same(model.items(),
                            QVariantList({"b", "2", QVariant(), QVariant(QVariantList{1}), "", ""})));

    QVERIFY(!model.insertRows(7, 1));
    QVERIFY(!model.removeRows(5, 2));
    QVERIFY(!model.flags(model.index(2, ListValueModel::ValueColumn)).testFlag(Qt::ItemIsEditable));
    QVERIFY(model.flags(model.index(2, ListValueModel::TypeColumn)).testFlag(Qt::ItemIsEditable));
}

void TestWorkbenchModels::listRefusesWhatIsNoValue()
{
    ListValueModel model;
    model.setItems({7});
    const QSignalSpy refused(&model, &ListValueModel::refused);
    QVERIFY(!model.setData(model.index(0, ListValueModel::ValueColumn), "seven", Qt::EditRole));
    QCOMPARE(refused.count(), 1);
    QVERIFY(refused.first().first().toString().contains("seven"));
    QCOMPARE(model.items(), QVariantList{7});
}

void TestWorkbenchModels::listRowsMove_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("items");
    QTest::newRow("down") << 0 << 2 << 3 << "cabd";
    QTest::newRow("to the end") << 1 << 1 << 4 << "acdb";
    QTest::newRow("up") << 2 << 2 << 0 << "cdab";
    QTest::newRow("nowhere") << 1 << 2 << 1 << "abcd";
    QTest::newRow("into itself") << 1 << 2 << 2 << "abcd";
    QTest::newRow("out of range") << 3 << 2 << 0 << "abcd";
    QTest::newRow("beyond the start") << 0 << 1 << -1 << "abcd";
}

void TestWorkbenchModels::listRowsMove()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(int, target);
    QFETCH(QString, items);
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setItems({"a", "b", "c", "d"});
    QCOMPARE(model.moveRows(QModelIndex(), row, count, QModelIndex(), target), items != "abcd");
    QString result;
    const QVariantList moved = model.items();
    for (const QVariant &item : moved)
        result += item.toString();
    QCOMPARE(result, items);
}

void TestWorkbenchModels::listRemovesScatteredRows()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setItems({0, 1, 2, 3, 4, 5, 6});
    const QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    removeModelRows(model, {4, 1, 5, 0});
    QCOMPARE(model.items(), QVariantList({2, 3, 6}));
    QCOMPARE(removed.count(), 2);
}

void TestWorkbenchModels::listSorts_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QVariantList>("sorted");
    const QVariant list(QVariantList{1});
    QTest::newRow("by value") << int(ListValueModel::ValueColumn) << Qt::AscendingOrder
                              << QVariantList{QVariant(), false, true, 1.5, 2, 10, "A", "b", list};
    QTest::newRow("by value, descending")
        << int(ListValueModel::ValueColumn) << Qt::DescendingOrder
        << QVariantList{list, "b", "A", 10, 2, 1.5, true, false, QVariant()};
    QTest::newRow("by type") << int(ListValueModel::TypeColumn) << Qt::AscendingOrder
                             << QVariantList{QVariant(), 10, 2, 1.5, "b", "A", true, false, list};
}

void TestWorkbenchModels::listSorts()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QVariantList, sorted);
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setItems({"b", 10, QVariant(), true, 2, QVariant(QVariantList{1}), "A", 1.5, false});
    model.sort(column, order);
    QVERIFY2(ItemValue::same(model.items(), sorted), qPrintable(ItemValue::summary(model.items())));
}

void TestWorkbenchModels::listSortKeepsPersistentIndexes()
{
    ListValueModel model;
    model.setItems({3, 1, 2});
    const QPersistentModelIndex three(model.index(0, ListValueModel::ValueColumn));
    model.sort(ListValueModel::ValueColumn, Qt::AscendingOrder);
    QCOMPARE(three.row(), 2);
    QCOMPARE(three.data().toString(), QString("3"));
}

void TestWorkbenchModels::listConvertsWhatItCan()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setItems({"1", "x", "3", "y"});
    const QSignalSpy refused(&model, &ListValueModel::refused);
    model.convertRows({0, 1, 2}, ItemKind::Int);
    QVERIFY(ItemValue::same(model.items(), QVariantList({1, "x", 3, "y"})));
    QCOMPARE(refused.count(), 1);
    QVERIFY(refused.first().first().toString().contains(QString::fromUtf8("“x”")));
}

void TestWorkbenchModels::tableIsEdited()
{
    TableValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setRows({QVariant(QVariantList{"a", 1}), QVariant(QVariantList{}), "lone"});
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.index(0, 1).data(TableValueModel::KindRole).toInt(), int(ItemKind::Int));

    QVERIFY(model.setData(model.index(1, 1), "new", Qt::EditRole));
    QVERIFY(model.setData(model.index(0, 1), int(ItemKind::Text), TableValueModel::KindRole));
    QVERIFY(model.setData(model.index(2, 0), "x", Qt::EditRole));
    // Leaving a cell behind the end of its row empty does not make the row longer.
    QVERIFY(!model.setData(model.index(2, 1), "", Qt::EditRole));
    QVERIFY(ItemValue::same(
        model.rows(),
        QVariantList({QVariant(QVariantList{"a", "1"}), QVariant(QVariantList{QVariant(), "new"}),
                      QVariant(QVariantList{"x"})})));
    QVERIFY(model.insertRows(3, 1));
    QVERIFY(model.removeRows(0, 2));
    QVERIFY(ItemValue::same(
        model.rows(),
        QVariantList({QVariant(QVariantList{"x"}), QVariant(QVariantList{QVariant(), QVariant()})})));
    QVERIFY(model.removeRows(1, 1));
    QCOMPARE(model.columnCount(), 1);
    QVERIFY(!model.removeRows(0, 2));
}

void TestWorkbenchModels::tableColumns()
{
    TableValueModel model;
    const QAbstractItemModelTester tester(&model);
    QVERIFY(model.insertColumn(0));
    QVERIFY(ItemValue::same(model.rows(), QVariantList{QVariant(QVariantList{QVariant()})}));

    model.setRows({QVariant(QVariantList{1, 2, 3}), QVariant(QVariantList{4})});
    QVERIFY(model.insertColumn(2));
    QVERIFY(model.insertColumn(4));
    QCOMPARE(model.columnCount(), 5);
    QVERIFY(ItemValue::same(
        model.rows(),
        QVariantList({QVariant(QVariantList{1, 2, QVariant(), 3, QVariant()}), QVariant(QVariantList{4})})));
    QVERIFY(model.removeColumns(0, 2));
    QVERIFY(ItemValue::same(
        model.rows(),
        QVariantList({QVariant(QVariantList{QVariant(), 3, QVariant()}), QVariant(QVariantList{})})));
    QCOMPARE(model.columnCount(), 3);
    QVERIFY(!model.insertColumn(4));
    QVERIFY(!model.removeColumns(2, 2));
}

void TestWorkbenchModels::tableRefusesWhatIsNoValue()
{
    TableValueModel model;
    model.setRows({QVariant(QVariantList{7, "x"})});
    const QSignalSpy refused(&model, &TableValueModel::refused);
    QVERIFY(!model.setData(model.index(0, 0), "seven", Qt::EditRole));
    model.convertCells({model.index(0, 0), model.index(0, 1)}, ItemKind::Double);
    QCOMPARE(refused.count(), 2);
    QVERIFY(ItemValue::same(model.rows(), QVariantList{QVariant(QVariantList{7.0, "x"})}));
}

void TestWorkbenchModels::variableEdits_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("renamed");
    QTest::newRow("new") << "c" << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("with the mark") << "$c" << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("blanks around") << " c " << true << QStringList{"a", "b", "c"} << QStringList{"c", "b"};
    QTest::newRow("taken") << "b" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("taken, with the mark") << "$b" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("empty") << "" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("the mark alone") << "$" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("two marks") << "$$c" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
    QTest::newRow("two marks alone") << "$$" << false << QStringList{"a", "b"} << QStringList{"a", "b"};
}

void TestWorkbenchModels::variableEdits()
{
    QFETCH(QString, name);
    QFETCH(bool, accepted);
    QFETCH(QStringList, added);
    QFETCH(QStringList, renamed);
    VariableScope scope;
    scope.declare("a", VarType::List);
    scope.set("a", QVariantList{1});
    scope.set("b", "text");
    QString error;

    VariableScope more = scope;
    QCOMPARE(VariableEdits::add(more, name, VarType::Bool, error), accepted);
    QCOMPARE(error.isEmpty(), accepted);
    QCOMPARE(more.names(), added);
    if (accepted)
        QCOMPARE(more.typeOf("c"), VarType::Bool);

    VariableScope other = scope;
    QCOMPARE(VariableEdits::rename(other, "a", name, error), accepted);
    QCOMPARE(other.names(), renamed);
    QCOMPARE(other.typeOf(renamed.first()), VarType::List);
    QCOMPARE(other.get(renamed.first()), QVariant(QVariantList{1}));
    QCOMPARE(other.get("b"), QVariant("text"));
    QVERIFY(!scope.contains(VariableEdits::freeName(scope)));
}

void TestWorkbenchModels::variableRetypes_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QVariant>("to");
    const QVariant list(QVariantList{1, "a"});
    const QVariant table(QVariantList{QVariant(QVariantList{1})});
    QTest::newRow("int to double") << QVariant(3) << VarType::Double << QVariant(3.0);
    QTest::newRow("text to int") << QVariant("12") << VarType::Int << QVariant(12);
    QTest::newRow("word to int") << QVariant("word") << VarType::Int << QVariant(0);
    QTest::newRow("bool to text") << QVariant(true) << VarType::String << QVariant("true");
    QTest::newRow("text to bool") << QVariant("no") << VarType::Bool << QVariant(false);
    QTest::newRow("table to list") << table << VarType::List << table;
    QTest::newRow("rows to table") << table << VarType::Table << table;
    QTest::newRow("list to table") << list << VarType::Table << QVariant(QVariantList{});
    QTest::newRow("text to list") << QVariant("x") << VarType::List << QVariant(QVariantList{});
    QTest::newRow("list to int") << list << VarType::Int << QVariant(0);
}

void TestWorkbenchModels::variableRetypes()
{
    QFETCH(QVariant, from);
    QFETCH(VarType, type);
    QFETCH(QVariant, to);
    VariableScope scope;
    scope.set("x", from);
    scope.set("y", 1);
    VariableEdits::retype(scope, "x", type);
    QCOMPARE(scope.typeOf("x"), type);
    QVERIFY2(ItemValue::same(scope.get("x"), to), qPrintable(ItemValue::summary(scope.get("x"))));
    QCOMPARE(scope.names(), QStringList({"x", "y"}));
}

void TestWorkbenchModels::variableTexts_data()
{
    QTest::addColumn<VarType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << VarType::Int << "5" << QVariant(5);
    QTest::newRow("no int") << VarType::Int << "5.5" << QVariant();
    QTest::newRow("double") << VarType::Double << "5" << QVariant(5.0);
    QTest::newRow("text") << VarType::String << " 5" << QVariant(" 5");
    QTest::newRow("bool") << VarType::Bool << "true" << QVariant(true);
    QTest::newRow("no bool") << VarType::Bool << "2" << QVariant();
    QTest::newRow("list") << VarType::List << "[1]" << QVariant();
}

void TestWorkbenchModels::variableTexts()
{
    QFETCH(VarType, type);
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    VariableScope scope;
    scope.declare("x", type);
    const QVariant before = scope.get("x");
    QString error;
    QCOMPARE(VariableEdits::setText(scope, "x", text, error), value.isValid());
    QCOMPARE(error.isEmpty(), value.isValid());
    QVERIFY(ItemValue::same(scope.get("x"), value.isValid() ? value : before));
}

namespace
{
VariableScope exampleVariables()
{
    VariableScope scope;
    scope.declare("names", VarType::List);
    scope.set("names", QVariantList{"a", "b"});
    scope.declare("count", VarType::Int);
    return scope;
}
} // namespace

void TestWorkbenchModels::variablesModelAsksForChanges()
{
    VariablesModel model;
    const QAbstractItemModelTester tester(&model);
    model.setVariables(exampleVariables());
    connect(&model, &VariablesModel::changeRequested, &model, &VariablesModel::setVariables);
    QCOMPARE(model.index(0, VariablesModel::NameColumn).data().toString(), QString("names"));
    QCOMPARE(model.index(0, VariablesModel::TypeColumn).data().toString(), QString("List"));
    QVERIFY(model.index(0, VariablesModel::ValueColumn).data().toString().endsWith("[a, b]"));
    QVERIFY(!model.flags(model.index(0, VariablesModel::ResultColumn)).testFlag(Qt::ItemIsEditable));

    const QPersistentModelIndex count(model.index(1, VariablesModel::ValueColumn));
    QVERIFY(model.setData(model.index(1, VariablesModel::NameColumn), "n", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, VariablesModel::ValueColumn), "5", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, VariablesModel::TypeColumn), int(VarType::Double), Qt::EditRole));
    QVERIFY(count.isValid());
    QCOMPARE(count.data().toString(), QString("5.0"));
    QCOMPARE(model.variables().names(), QStringList({"names", "n"}));

    int requests = 0;
    connect(&model, &VariablesModel::changeRequested, this, [&requests] { ++requests; });
    QVERIFY(model.setData(model.index(1, VariablesModel::NameColumn), "n", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, VariablesModel::ValueColumn), "5", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, VariablesModel::TypeColumn), int(VarType::Double), Qt::EditRole));
    QCOMPARE(requests, 0);
}

void TestWorkbenchModels::variablesModelRefuses()
{
    VariablesModel model;
    model.setVariables(exampleVariables());
    int requests = 0;
    connect(&model, &VariablesModel::changeRequested, this, [&requests] { ++requests; });
    const QSignalSpy refused(&model, &VariablesModel::refused);
    QVERIFY(!model.setData(model.index(1, VariablesModel::NameColumn), "names", Qt::EditRole));
    QVERIFY(!model.setData(model.index(1, VariablesModel::ValueColumn), "many", Qt::EditRole));
    QVERIFY(!model.setData(model.index(0, VariablesModel::ValueColumn), "[1]", Qt::EditRole));
    QVERIFY(!model.flags(model.index(0, VariablesModel::ValueColumn)).testFlag(Qt::ItemIsEditable));
    QVERIFY(model.flags(model.index(1, VariablesModel::ValueColumn)).testFlag(Qt::ItemIsEditable));
    QCOMPARE(refused.count(), 2);
    QCOMPARE(requests, 0);
}

void TestWorkbenchModels::variablesModelKeepsIndexes()
{
    VariablesModel model;
    const QAbstractItemModelTester tester(&model);
    VariableScope scope = exampleVariables();
    model.setVariables(scope);
    const QPersistentModelIndex count(model.index(1, 0));
    scope.set("new", 1);
    model.setVariables(scope);
    QCOMPARE(model.rowCount(), 3);
    scope.remove("names");
    model.setVariables(scope);
    QCOMPARE(count.row(), 0);
    QCOMPARE(model.name(0), QString("count"));
    QCOMPARE(model.rowOf("new"), 1);
    model.setVariables(VariableScope());
    QCOMPARE(model.rowCount(), 0);
}

void TestWorkbenchModels::variablesModelMarksChanges()
{
    VariablesModel model;
    const QAbstractItemModelTester tester(&model);
    const VariableScope before = exampleVariables();
    VariableScope after = before;
    after.set("count", 2);
    after.set("made", "by the run");
    model.setVariables(before);
    model.setResult(before, after);
    QCOMPARE(model.rowCount(), 3);
    const auto changed = [&model](int row) {
        return model.index(row, VariablesModel::ResultColumn).data(VariablesModel::ChangedRole).toBool();
    };
    QVERIFY(!changed(0));
    QVERIFY(changed(1));
    QVERIFY(changed(2));
    QVERIFY(!model.isOfScript(2));
    QVERIFY(!model.flags(model.index(2, VariablesModel::NameColumn)).testFlag(Qt::ItemIsEditable));
    QCOMPARE(model.index(1, VariablesModel::ResultColumn).data().toString(), QString("2"));
    QCOMPARE(model.index(1, VariablesModel::ValueColumn).data().toString(), QString("0"));
    model.clearResult();
    QCOMPARE(model.rowCount(), 2);
    QVERIFY(!changed(1));
}

namespace
{
QString writeTemporary(const QTemporaryDir &folder, const QString &name, const QByteArray &content)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(content);
    return file.fileName();
}
} // namespace

void TestWorkbenchModels::valueFileLists_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QVariantList>("list");
    QTest::newRow("lines") << "a.txt" << QByteArray("007\n\xE5\x90\x8D\n\nlast")
                           << QVariantList{"007", "名", "", "last"};
    QTest::newRow("byte order mark") << "a.txt"
                                     << QByteArray("\xEF\xBB\xBF"
                                                   "a\r\nb\r\n")
                                     << QVariantList{"a", "b"};
    QTest::newRow("CSV") << "a.CSV" << QByteArray("a,\"b,c\"\nd\n") << QVariantList{"a", "b,c", "d"};
    QTest::newRow("CSV with byte order mark")
        << "a.csv" << QByteArray("\xEF\xBB\xBF\"a\"\n") << QVariantList{"a"};
    QTest::newRow("empty") << "a.txt" << QByteArray() << QVariantList{};
}

void TestWorkbenchModels::valueFileLists()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QVariantList, list);
    const QTemporaryDir folder;
    QVariantList result;
    QCOMPARE(ValueFile::readList(writeTemporary(folder, name, content), result), QString());
    QCOMPARE(result, list);

    const QString copy = folder.filePath("copy-" + name);
    QCOMPARE(ValueFile::writeList(copy, list), QString());
    QVariantList back;
    QCOMPARE(ValueFile::readList(copy, back), QString());
    QCOMPARE(back, list);
}

void TestWorkbenchModels::valueFileTables()
{
    const QTemporaryDir folder;
    const QVariantList rows{QVariant(QVariantList{"a", "b,c"}), QVariant(QVariantList{"1"})};
    QCOMPARE(ValueFile::writeTable(folder.filePath("t.csv"), rows), QString());
    QVariantList back;
    QCOMPARE(ValueFile::readTable(folder.filePath("t.csv"), back), QString());
    QVERIFY(ItemValue::same(back, rows));
    QCOMPARE(ValueFile::readTable(writeTemporary(folder, "t.txt", "a,b\nc\n"), back), QString());
    QVERIFY(
        ItemValue::same(back, QVariantList({QVariant(QVariantList{"a,b"}), QVariant(QVariantList{"c"})})));
}

void TestWorkbenchModels::valueFileErrorsChangeNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QString() << QByteArray();
    QTest::newRow("no UTF-8") << "a.txt" << QByteArray("a\n\xFF\n");
    QTest::newRow("no UTF-8 in CSV") << "a.csv" << QByteArray("a\n\xFF\n");
    QTest::newRow("broken CSV") << "a.csv" << QByteArray("\"a\n");
}

void TestWorkbenchModels::valueFileErrorsChangeNothing()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString fileName =
        name.isEmpty() ? folder.filePath("missing.txt") : writeTemporary(folder, name, content);
    QVariantList list{"untouched"};
    QVERIFY(ValueFile::readList(fileName, list).contains(QFileInfo(fileName).fileName()));
    QVERIFY(ValueFile::readTable(fileName, list).contains(QFileInfo(fileName).fileName()));
    QCOMPARE(list, QVariantList{"untouched"});
}

void TestWorkbenchModels::valueFileRefusesLineBreaks()
{
    const QTemporaryDir folder;
    const QString fileName = writeTemporary(folder, "a.txt", "old");
    QVERIFY(ValueFile::writeList(fileName, {"a", "b\nc"}).contains("1"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("old"));
    QVERIFY(!ValueFile::writeList(folder.filePath("no folder/a.txt"), {"a"}).isEmpty());
}

void TestWorkbenchModels::logDropsTheOldest()
{
    LogModel log;
    log.append("first");
    for (int i = 0; i < 10000; ++i)
        log.appendWarning(QString::number(i), i, "step");
    QCOMPARE(log.rowCount(), 9001);
    const QModelIndex last = log.index(log.rowCount() - 1, LogModel::MessageColumn);
    QCOMPARE(last.data().toString(), QString("9999"));
    QCOMPARE(last.data(LogModel::StepRole).toInt(), 9999);
    QVERIFY(last.data(LogModel::WarningRole).toBool());
    QCOMPARE(last.siblingAtColumn(LogModel::StepColumn).data().toString(), QString("10000  step"));

    const QAbstractItemModelTester tester(&log);
    log.append("message");
    QCOMPARE(log.index(log.rowCount() - 1, LogModel::StepColumn).data().toString(), QString());
    log.clear();
    QCOMPARE(log.rowCount(), 0);
}

void TestWorkbenchModels::recentFilesAreBounded()
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    RecentFiles recent(settings);
    for (int i = 0; i < 12; ++i)
        recent.add(QStringLiteral("/scripts/%1.json").arg(i));
    QCOMPARE(recent.paths().size(), 10);
    QCOMPARE(recent.paths().constFirst(), QFileInfo("/scripts/11.json").absoluteFilePath());
    recent.add("/scripts/5.json");
    QCOMPARE(recent.paths().size(), 10);
    QCOMPARE(recent.paths().constFirst(), QFileInfo("/scripts/5.json").absoluteFilePath());
    recent.remove("/scripts/5.json");
    QCOMPARE(RecentFiles(settings).paths().size(), 9);
}

void TestWorkbenchModels::toolTipsShowTextsAsTheyStand()
{
    QCOMPARE(toolTipText("a < b"), QString("a < b"));
    QVERIFY(toolTipText("<b>bold</b>").contains("&lt;b&gt;"));
    QCOMPARE(toolTipText(QString(100000, QLatin1Char('x'))).size(), 1001);
}

void TestWorkbenchModels::languageOfTheSystem_data()
{
    QTest::addColumn<QStringList>("system");
    QTest::addColumn<QString>("code");
    QTest::newRow("Chinese") << QStringList{"zh-Hans-CN", "zh-CN", "zh"} << "zh_CN";
    QTest::newRow("English") << QStringList{"en-US", "en"} << "en";
    QTest::newRow("neither") << QStringList{"de-DE", "de"} << "en";
    QTest::newRow("Chinese as the second choice") << QStringList{"de-DE", "zh-CN", "en"} << "zh_CN";
    QTest::newRow("English before Chinese") << QStringList{"en-GB", "zh-CN"} << "en";
    QTest::newRow("unknown") << QStringList{} << "en";
}

void TestWorkbenchModels::languageOfTheSystem()
{
    QFETCH(QStringList, system);
    QFETCH(QString, code);
    QCOMPARE(Language::codeFor(system), code);
    QVERIFY(Language::codes().contains(code));
}

void TestWorkbenchModels::translationIsComplete()
{
    QFile file(TestPaths::source("tools/workbench/translations/workbench_zh_CN.ts"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    int messages = 0;
    QString source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        if (xml.name() == QLatin1String("translation")) {
            ++messages;
            QVERIFY2(!xml.attributes().hasAttribute("type"), qPrintable(source));
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            for (const QString &placeholder : {QString("%1"), QString("%2"), QString("%n")})
                QVERIFY2(text.contains(placeholder) == source.contains(placeholder), qPrintable(source));
        }
    }
    QVERIFY(!xml.hasError());
    QVERIFY(messages > 150);
}

QTEST_GUILESS_MAIN(TestWorkbenchModels)
#include "tst_workbenchmodels.moc"
