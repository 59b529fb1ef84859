#include "operations/ListFunctions.h"
#include "tests/support/ShowValue.h"
#include "tests/support/WarningLog.h"

#include <QtTest>

namespace
{
QVariant list(const QVariantList &elements)
{
    return QVariant(elements);
}
} // namespace

class TestListFunctions : public QObject
{
    Q_OBJECT

private slots:
    void readListVariable_data();
    void readListVariable();
    void readingSharesTheList();
    void readListPair_data();
    void readListPair();
    void writeListVariable();
    void reverseList();
};

void TestListFunctions::readListVariable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<QVariantList>("read");
    QTest::addColumn<QStringList>("warnings");

    const QStringList silence;
    const QVariantList nothing;
    QTest::newRow("list") << "list" << true << QVariantList{1, "a", list({2})} << silence;
    QTest::newRow("marked name") << "$list" << true << QVariantList{1, "a", list({2})} << silence;
    QTest::newRow("empty list") << "empty" << true << nothing << silence;
    QTest::newRow("string list") << "texts" << true << QVariantList{"a", "b"} << silence;
    QTest::newRow("a list by type, an int by value") << "int in list" << true << nothing << silence;
    QTest::newRow("a list by type, a text by value") << "text in list" << true << nothing << silence;
    QTest::newRow("a list by type, invalid by value") << "nothing in list" << true << nothing << silence;
    QTest::newRow("no name") << "" << false << nothing << silence;
    for (const char *name :
         {"missing", "$missing", "$", "int", "double", "text", "bool", "table", "untyped", "LIST"})
        QTest::newRow(name) << name << false << nothing
                            << QStringList(QString("[ListOp] 变量 \"%1\" 不是列表类型，已跳过").arg(name));
}

void TestListFunctions::readListVariable()
{
    QFETCH(QString, name);
    QFETCH(bool, isRead);
    QFETCH(QVariantList, read);
    QFETCH(QStringList, warnings);

    VariableScope scope;
    scope.set("list", QVariantList{1, "a", list({2})});
    scope.set("empty", QVariantList());
    scope.set("texts", QStringList{"a", "b"});
    for (const char *listName : {"int in list", "text in list", "nothing in list"})
        scope.declare(listName, VarType::List);
    scope.set("int in list", 5);
    scope.set("text in list", "[1]");
    scope.set("nothing in list", QVariant());
    scope.set("int", 1);
    scope.set("double", 1.0);
    scope.set("text", "[1]");
    scope.set("bool", true);
    scope.set("untyped", QVariantMap{{"a", 1}});
    scope.declare("table", VarType::Table);

    const WarningLog log;
    QVariantList out{"before"};
    QCOMPARE(::readListVariable(&scope, name, out), isRead);
    QCOMPARE(shown(out), shown(isRead ? read : QVariantList{"before"}));
    QCOMPARE(log.take(), warnings);

    QVariantList untouched{"before"};
    QVERIFY(!::readListVariable(nullptr, name, untouched));
    QCOMPARE(shown(untouched), shown(QVariantList{"before"}));
    QCOMPARE(log.take(), QStringList());
}

void TestListFunctions::readingSharesTheList()
{
    const QVariantList held{1, 2, 3};
    VariableScope scope;
    scope.set("list", held);
    QVariantList out;
    QVERIFY(::readListVariable(&scope, "list", out));
    QVERIFY(out.isSharedWith(held));
    ::writeListVariable(&scope, "copy", out);
    QVERIFY(scope.get("copy").toList().isSharedWith(held));
}

void TestListFunctions::readListPair_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<QStringList>("warnings");

    const QStringList silence;
    const QString notList("[ListOp] 变量 \"%1\" 不是列表类型，已跳过");
    const QString notTarget("[Tag] 目标变量 \"%1\" 未声明为列表，已跳过");
    QTest::newRow("three lists") << "a"
                                 << "$b"
                                 << "c" << true << silence;
    QTest::newRow("one list") << "a"
                              << "a"
                              << "a" << true << silence;
    QTest::newRow("no name of list A") << ""
                                       << "int"
                                       << "missing" << false << silence;
    QTest::newRow("list A comes first") << "int"
                                        << "int"
                                        << "missing" << false << QStringList(notList.arg("int"));
    QTest::newRow("then the destination") << "a"
                                          << "int"
                                          << "missing" << false << QStringList(notTarget.arg("missing"));
    QTest::newRow("then list B") << "a"
                                 << "int"
                                 << "c" << false << QStringList(notList.arg("int"));
    QTest::newRow("no name of list B") << "a"
                                       << ""
                                       << "c" << false << silence;
    for (const char *target : {"", "int", "double", "text", "bool", "table", "untyped", "$missing"})
        QTest::addRow("destination '%s'", target)
            << "a"
            << "b" << target << false << QStringList(notTarget.arg(target));
}

void TestListFunctions::readListPair()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(QString, target);
    QFETCH(bool, isRead);
    QFETCH(QStringList, warnings);

    VariableScope scope;
    scope.set("a", QVariantList{1});
    scope.set("b", QVariantList{2});
    scope.set("c", QVariantList{3});
    scope.set("int", 1);
    scope.set("double", 1.0);
    scope.set("text", "c");
    scope.set("bool", true);
    scope.set("untyped", QVariant());
    scope.declare("table", VarType::Table);

    const WarningLog log;
    ListPair lists;
    QCOMPARE(::readListPair(&scope, a, b, target, "[Tag] 目标变量", lists), isRead);
    QCOMPARE(log.take(), warnings);
    if (isRead) {
        QCOMPARE(shown(lists.a), shown(scope.get(a)));
        QCOMPARE(shown(lists.b), shown(scope.get(b)));
    }
    QVERIFY(!::readListPair(nullptr, a, b, target, "[Tag] 目标变量", lists));
    QCOMPARE(log.take(), QStringList());
}

void TestListFunctions::writeListVariable()
{
    VariableScope scope;
    ::writeListVariable(&scope, "empty", {});
    QCOMPARE(shown(scope.get("empty")), QString("[]"));
    ::writeListVariable(&scope, "$nested", {list({list({1})})});
    QCOMPARE(shown(scope.get("nested")), QString("[[[int 1]]]"));
    ::writeListVariable(nullptr, "empty", {1});
    QCOMPARE(scope.names(), QStringList({"empty", "nested"}));
}

void TestListFunctions::reverseList()
{
    QVariantList elements;
    for (int size = 0; size < 8; ++size) {
        const QVariantList before = elements;
        QVariantList turned = elements;
        ::reverseList(turned);
        QCOMPARE(elements, before);
        QCOMPARE(turned.size(), size);
        for (int i = 0; i < size; ++i)
            QCOMPARE(shown(turned.at(i)), shown(elements.at(size - 1 - i)));
        elements.append(size % 2 ? QVariant(size) : QVariant(QString::number(size)));
    }
}

QTEST_GUILESS_MAIN(TestListFunctions)
#include "tst_listfunctions.moc"
