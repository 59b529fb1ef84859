#include "tools/workbench/values/ListValueModel.h"
#include "tools/workbench/values/ModelRows.h"
#include "tools/workbench/values/TableValueModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace StepHost;
using namespace Workbench;

class TestValueModels : public QObject
{
    Q_OBJECT

private slots:
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
};

void TestValueModels::listIsEdited()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({"a", 2, 1.5, true, QVariant(), QVariant(QVariantList{1})});
    QCOMPARE(model.rowCount(), 6);
    QCOMPARE(model.index(1, ListValueModel::ValueColumn).data().toString(), QString("2"));
    QCOMPARE(model.index(1, ListValueModel::TypeColumn).data().toString(), QString("Integer"));
    QCOMPARE(model.index(5, ListValueModel::ValueColumn).data().toString(), QString("[1]"));

    QVERIFY(model.setData(model.index(0, ListValueModel::ValueColumn), "b", Qt::EditRole));
    QVERIFY(model.setData(model.index(1, ListValueModel::TypeColumn), int(ItemKind::Text), Qt::EditRole));
    QVERIFY(model.insertRows(6, 2));
    QVERIFY(model.removeRows(2, 2));
    QVERIFY(ItemValue::same(model.value(),
                            QVariantList({"b", "2", QVariant(), QVariant(QVariantList{1}), "", ""})));

    QVERIFY(!model.insertRows(7, 1));
    QVERIFY(!model.removeRows(5, 2));
    // What is typed into an empty item is a text.
    QVERIFY(model.setData(model.index(2, ListValueModel::ValueColumn), "7", Qt::EditRole));
    QVERIFY(ItemValue::same(model.value().at(2), QVariant("7")));
    QVERIFY(model.flags(model.index(2, ListValueModel::TypeColumn)).testFlag(Qt::ItemIsEditable));
}

void TestValueModels::listRefusesWhatIsNoValue()
{
    ListValueModel model;
    model.setValue({7});
    const QSignalSpy refused(&model, &ListValueModel::refused);
    QVERIFY(!model.setData(model.index(0, ListValueModel::ValueColumn), "seven", Qt::EditRole));
    QCOMPARE(refused.count(), 1);
    QVERIFY(refused.first().first().toString().contains("seven"));
    QCOMPARE(model.value(), QVariantList{7});
}

void TestValueModels::listRowsMove_data()
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

void TestValueModels::listRowsMove()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(int, target);
    QFETCH(QString, items);
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({"a", "b", "c", "d"});
    QCOMPARE(model.moveRows(QModelIndex(), row, count, QModelIndex(), target), items != "abcd");
    QString result;
    const QVariantList moved = model.value();
    for (const QVariant &item : moved)
        result += item.toString();
    QCOMPARE(result, items);
}

void TestValueModels::listRemovesScatteredRows()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({0, 1, 2, 3, 4, 5, 6});
    const QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    removeModelRows(model, {4, 1, 5, 0});
    QCOMPARE(model.value(), QVariantList({2, 3, 6}));
    QCOMPARE(removed.count(), 2);
}

void TestValueModels::listSorts_data()
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

void TestValueModels::listSorts()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QVariantList, sorted);
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({"b", 10, QVariant(), true, 2, QVariant(QVariantList{1}), "A", 1.5, false});
    model.sort(column, order);
    QVERIFY2(ItemValue::same(model.value(), sorted), qPrintable(ItemValue::summary(model.value())));
}

void TestValueModels::listSortKeepsPersistentIndexes()
{
    ListValueModel model;
    model.setValue({3, 1, 2});
    const QPersistentModelIndex three(model.index(0, ListValueModel::ValueColumn));
    model.sort(ListValueModel::ValueColumn, Qt::AscendingOrder);
    QCOMPARE(three.row(), 2);
    QCOMPARE(three.data().toString(), QString("3"));
}

void TestValueModels::listConvertsWhatItCan()
{
    ListValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({"1", "x", "3", "y"});
    const QSignalSpy refused(&model, &ListValueModel::refused);
    model.convertRows({0, 1, 2}, ItemKind::Int);
    QVERIFY(ItemValue::same(model.value(), QVariantList({1, "x", 3, "y"})));
    QCOMPARE(refused.count(), 1);
    QVERIFY(refused.first().first().toString().contains(QString::fromUtf8("“x”")));
}

void TestValueModels::tableIsEdited()
{
    TableValueModel model;
    const QAbstractItemModelTester tester(&model);
    model.setValue({QVariant(QVariantList{"a", 1}), QVariant(QVariantList{}), "lone"});
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.index(0, 1).data(TableValueModel::KindRole).toInt(), int(ItemKind::Int));

    QVERIFY(model.setData(model.index(1, 1), "new", Qt::EditRole));
    QVERIFY(model.setData(model.index(0, 1), int(ItemKind::Text), TableValueModel::KindRole));
    QVERIFY(model.setData(model.index(2, 0), "x", Qt::EditRole));
    // Leaving a cell behind the end of its row empty does not make the row longer.
    QVERIFY(!model.setData(model.index(2, 1), "", Qt::EditRole));
    QVERIFY(ItemValue::same(
        model.value(),
        QVariantList({QVariant(QVariantList{"a", "1"}), QVariant(QVariantList{QVariant(), "new"}),
                      QVariant(QVariantList{"x"})})));
    QVERIFY(model.insertRows(3, 1));
    QVERIFY(model.removeRows(0, 2));
    QVERIFY(ItemValue::same(
        model.value(),
        QVariantList({QVariant(QVariantList{"x"}), QVariant(QVariantList{QVariant(), QVariant()})})));
    QVERIFY(model.removeRows(1, 1));
    QCOMPARE(model.columnCount(), 1);
    QVERIFY(!model.removeRows(0, 2));
}

void TestValueModels::tableColumns()
{
    TableValueModel model;
    const QAbstractItemModelTester tester(&model);
    QVERIFY(model.insertColumn(0));
    QVERIFY(ItemValue::same(model.value(), QVariantList{QVariant(QVariantList{QVariant()})}));

    model.setValue({QVariant(QVariantList{1, 2, 3}), QVariant(QVariantList{4})});
    QVERIFY(model.insertColumn(2));
    QVERIFY(model.insertColumn(4));
    QCOMPARE(model.columnCount(), 5);
    QVERIFY(ItemValue::same(
        model.value(),
        QVariantList({QVariant(QVariantList{1, 2, QVariant(), 3, QVariant()}), QVariant(QVariantList{4})})));
    QVERIFY(model.removeColumns(0, 2));
    QVERIFY(ItemValue::same(
        model.value(),
        QVariantList({QVariant(QVariantList{QVariant(), 3, QVariant()}), QVariant(QVariantList{})})));
    QCOMPARE(model.columnCount(), 3);
    QVERIFY(!model.insertColumn(4));
    QVERIFY(!model.removeColumns(2, 2));
}

void TestValueModels::tableRefusesWhatIsNoValue()
{
    TableValueModel model;
    model.setValue({QVariant(QVariantList{7, "x"})});
    const QSignalSpy refused(&model, &TableValueModel::refused);
    QVERIFY(!model.setData(model.index(0, 0), "seven", Qt::EditRole));
    model.convertCells({model.index(0, 0), model.index(0, 1)}, ItemKind::Double);
    QCOMPARE(refused.count(), 2);
    QVERIFY(ItemValue::same(model.value(), QVariantList{QVariant(QVariantList{7.0, "x"})}));
}

QTEST_GUILESS_MAIN(TestValueModels)
#include "tst_valuemodels.moc"
