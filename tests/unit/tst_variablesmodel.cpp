#include "tools/workbench/variables/VariablesModel.h"

#include "host/scripts/VariableEdits.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace Workbench;

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

class TestVariablesModel : public QObject
{
    Q_OBJECT

private slots:
    void asksForChanges();
    void refuses();
    void keepsIndexes();
    void marksChanges();
    void showsNamesThatDeceive();
};

void TestVariablesModel::asksForChanges()
{
    VariablesModel model;
    const QAbstractItemModelTester tester(&model);
    model.setVariables(exampleVariables());
    connect(&model, &VariablesModel::changeRequested, &model, &VariablesModel::setVariables);
    connect(&model, &VariablesModel::renameRequested, &model,
            [&model](const QString &from, const QString &to) {
                model.setVariables(*StepHost::VariableEdits::rename(model.variables(), from, to));
            });
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

void TestVariablesModel::refuses()
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

void TestVariablesModel::keepsIndexes()
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

void TestVariablesModel::showsNamesThatDeceive()
{
    VariablesModel model;
    VariableScope scope;
    const QString name = QString::fromUtf8("a\u202eb");
    scope.set(name, 1);
    model.setVariables(scope);
    const QModelIndex index = model.index(0, VariablesModel::NameColumn);
    QCOMPARE(index.data().toString(), QString("a\\u202eb"));
    QCOMPARE(index.data(Qt::EditRole).toString(), name);
}

void TestVariablesModel::marksChanges()
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

QTEST_GUILESS_MAIN(TestVariablesModel)
#include "tst_variablesmodel.moc"
