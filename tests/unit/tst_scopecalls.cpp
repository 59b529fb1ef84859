#include "hostapi/VariableScope.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/WarningLog.h"

#include <QtTest>

#include <climits>
#include <cstdlib>
#include <new>

// This program brings a scope of its own, which notes each call, and its own memory allocation, which counts.

namespace
{
struct Variable
{
    VarType type = VarType::Undeclared;
    QVariant value;
};

QHash<QString, Variable> variables;
QStringList calls;
int allocations = 0;
} // namespace

VariableScope::VariableScope() = default;
VariableScope::~VariableScope() = default;

void VariableScope::set(const QString &name, const QVariant &value)
{
    calls += "set " + name;
    variables[name].value = value;
}

QVariant VariableScope::get(const QString &name) const
{
    calls += "get " + name;
    return variables.value(name).value;
}

VarType VariableScope::typeOf(const QString &name) const
{
    calls += "typeOf " + name;
    return variables.value(name).type;
}

void *operator new(std::size_t size)
{
    ++allocations;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

class TestScopeCalls : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void calls_data();
    void calls();
    void copies_data();
    void copies();
    void destinationsOfUnknownType_data();
    void destinationsOfUnknownType();
};

void TestScopeCalls::init()
{
    variables = {{"a", {VarType::List, QVariantList{3, 1, 2}}},
                 {"b", {VarType::List, QVariantList{2, 3}}},
                 {"c", {VarType::List, QVariantList()}},
                 {"$marked", {VarType::List, QVariantList{1}}},
                 {" a ", {VarType::List, QVariantList{3}}},
                 {"\t", {VarType::List, QVariantList{4}}},
                 {" int ", {VarType::Int, 5}},
                 {"int", {VarType::Int, 5}}};
}

void TestScopeCalls::calls_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const char *typeId, const QVariantMap &settings,
                        const char *expected) {
        QStringList expectedCalls = QString(expected).split(", ", Qt::SkipEmptyParts);
        QTest::addRow("%s: %s", typeId, name) << QString(typeId) << settings << expectedCalls;
    };
    row("append", "list.add", {{"targetVar", "a"}, {"value", "x"}}, "typeOf a, get a, set a");
    row("reference", "list.add", {{"targetVar", "a"}, {"value", "$b.Count"}},
        "typeOf a, get a, get b, set a");
    row("the reference comes before the position", "list.add",
        {{"targetVar", "a"}, {"value", "$b"}, {"index", "x"}}, "typeOf a, get a, get b");
    row("names go through as they are", "list.add", {{"targetVar", "$marked"}, {"value", "$$marked"}},
        "typeOf $marked, get $marked, get $marked, set $marked");
    row("blanks belong to a name", "list.add", {{"targetVar", " a "}, {"value", "$ a "}},
        "typeOf  a , get  a , get  a , set  a ");
    row("a blank name", "list.add", {{"targetVar", "\t"}, {"value", "$\t"}},
        "typeOf \t, get \t, get \t, set \t");
    row("no list", "list.add", {{"targetVar", "int"}, {"value", "$b"}}, "typeOf int");
    row("no list, blanks belong to a name", "list.add", {{"targetVar", " int "}, {"value", "$b"}},
        "typeOf  int ");
    row("no name", "list.add", {{"value", "$b"}}, "");

    row("by position", "list.remove", {{"targetVar", "a"}, {"index", "0"}, {"value", "$b"}},
        "typeOf a, get a, set a");
    row("out of range", "list.remove", {{"targetVar", "a"}, {"index", "3"}}, "typeOf a, get a");
    row("by value", "list.remove", {{"targetVar", "a"}, {"mode", 1}, {"value", "1"}},
        "typeOf a, get a, set a");
    row("by reference", "list.remove", {{"targetVar", "a"}, {"mode", 1}, {"value", "$int"}},
        "typeOf a, get a, get int");

    row("by reference, in an empty list", "list.remove", {{"targetVar", "c"}, {"mode", 1}, {"value", "$int"}},
        "typeOf c, get c, get int");
    row("blanks belong to a name", "list.remove", {{"targetVar", " a "}, {"index", "0"}},
        "typeOf  a , get  a , set  a ");
    row("a blank name", "list.remove", {{"targetVar", "\t"}, {"mode", 1}, {"value", "$ int "}},
        "typeOf \t, get \t, get  int ");

    row("found", "list.get", {{"sourceVar", "a"}, {"index", "0"}, {"targetVar", "int"}},
        "typeOf a, get a, typeOf int, set int");
    row("out of range", "list.get", {{"sourceVar", "a"}, {"index", "3"}, {"targetVar", "int"}},
        "typeOf a, get a");
    row("no destination", "list.get", {{"sourceVar", "a"}, {"index", "0"}}, "typeOf a, get a, typeOf ");
    row("refused", "list.get", {{"sourceVar", "a"}, {"index", "0"}, {"targetVar", "c"}},
        "typeOf a, get a, typeOf c");

    row("blanks belong to a name", "list.get", {{"sourceVar", " a "}, {"index", "0"}, {"targetVar", " int "}},
        "typeOf  a , get  a , typeOf  int , set  int ");
    row("a blank name", "list.get", {{"sourceVar", "\t"}, {"index", "0"}, {"targetVar", "\t"}},
        "typeOf \t, get \t, typeOf \t");
    row("a blank destination", "list.get", {{"sourceVar", "a"}, {"index", "0"}, {"targetVar", "  "}},
        "typeOf a, get a, typeOf   ");

    for (const char *typeId : {"list.clear", "list.sort", "list.reverse", "list.dedup"}) {
        row("blanks belong to a name", typeId, {{"targetVar", " a "}}, "typeOf  a , get  a , set  a ");
        row("a blank name", typeId, {{"targetVar", "\t"}}, "typeOf \t, get \t, set \t");
        row("an unknown blank name", typeId, {{"targetVar", "  "}}, "typeOf   ");
        row("written once", typeId, {{"targetVar", "a"}}, "typeOf a, get a, set a");
        row("empty list", typeId, {{"targetVar", "c"}}, "typeOf c, get c, set c");
        row("no list", typeId, {{"targetVar", "int"}}, "typeOf int");
        row("no name", typeId, {}, "");
    }
    row("descending", "list.sort", {{"targetVar", "a"}, {"ascending", false}}, "typeOf a, get a, set a");

    for (const char *typeId : {"list.merge", "list.intersect", "list.subtract"}) {
        const auto pair = [&](const char *name, const char *a, const char *b, const char *target,
                              const char *expected) {
            row(name, typeId, {{"listA", a}, {"listB", b}, {"targetVar", target}}, expected);
        };
        pair("into a third", "a", "b", "c", "typeOf a, get a, typeOf c, typeOf b, get b, set c");
        pair("into itself", "a", "a", "a", "typeOf a, get a, typeOf a, typeOf a, get a, set a");
        pair("names go through as they are", "$marked", "b", "$marked",
             "typeOf $marked, get $marked, typeOf $marked, typeOf b, get b, set $marked");
        pair("blanks belong to a name", " a ", "\t", " a ",
             "typeOf  a , get  a , typeOf  a , typeOf \t, get \t, set  a ");
        pair("a blank name", "\t", " a ", "\t", "typeOf \t, get \t, typeOf \t, typeOf  a , get  a , set \t");
        pair("a blank destination", "a", "b", "  ", "typeOf a, get a, typeOf   ");
        pair("list A is no list", "int", "b", "c", "typeOf int");
        pair("no destination", "a", "b", "int", "typeOf a, get a, typeOf int");
        pair("list B is no list", "a", "int", "c", "typeOf a, get a, typeOf c, typeOf int");
        pair("no name of list B", "a", "", "c", "typeOf a, get a, typeOf c");
        pair("no name of list A", "", "b", "c", "");
    }
}

void TestScopeCalls::calls()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(QStringList, expected);
    const StepPointer step = newStep(typeId, settings);
    QVERIFY(step);
    const WarningLog log;
    VariableScope scope;
    step->setVariableScope(&scope);
    ::calls.clear();
    step->doOperation();
    QCOMPARE(::calls, expected);
    step->setVariableScope(nullptr);
    ::calls.clear();
    step->doOperation();
    QCOMPARE(::calls, QStringList());
}

void TestScopeCalls::copies_data()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<int>("elements");

    // The lists "a" and "b" have 1000 elements each, all different.
    const QVariantMap pair{{"listA", "a"}, {"listB", "b"}, {"targetVar", "c"}};
    QTest::newRow("get") << "list.get"
                         << QVariantMap{{"sourceVar", "a"}, {"index", "7"}, {"targetVar", "int"}} << 0;
    QTest::newRow("clear") << "list.clear" << QVariantMap{{"targetVar", "a"}} << 0;
    QTest::newRow("add") << "list.add" << QVariantMap{{"targetVar", "a"}, {"value", "x"}, {"index", "7"}}
                         << 1001;
    QTest::newRow("add, count of a list")
        << "list.add" << QVariantMap{{"targetVar", "a"}, {"value", "$b.Count"}} << 1001;
    QTest::newRow("add, list") << "list.add" << QVariantMap{{"targetVar", "c"}, {"value", "$a"}} << 1;
    QTest::newRow("remove") << "list.remove" << QVariantMap{{"targetVar", "a"}, {"index", "0"}} << 1000;
    QTest::newRow("remove, not found")
        << "list.remove" << QVariantMap{{"targetVar", "a"}, {"mode", 1}, {"value", "x"}} << 0;
    QTest::newRow("reverse") << "list.reverse" << QVariantMap{{"targetVar", "a"}} << 1000;
    QTest::newRow("sort") << "list.sort" << QVariantMap{{"targetVar", "a"}} << 1000;
    QTest::newRow("sort, descending")
        << "list.sort" << QVariantMap{{"targetVar", "a"}, {"ascending", false}} << 1000;
    QTest::newRow("dedup") << "list.dedup" << QVariantMap{{"targetVar", "a"}} << 1000;
    QTest::newRow("merge") << "list.merge" << pair << 2000;
    QTest::newRow("intersect") << "list.intersect" << pair << 0;
    QTest::newRow("subtract") << "list.subtract" << pair << 1000;
}

// An element that is copied into another list is allocated. Nothing else that a step does comes near this.
void TestScopeCalls::copies()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(int, elements);
    QVariantList a;
    QVariantList b;
    for (int i = 0; i < 1000; ++i) {
        a.append(2000 - i);
        b.append(-2000 + i);
    }
    variables["a"].value = a;
    variables["b"].value = b;

    const StepPointer step = newStep(typeId, settings);
    QVERIFY(step);
    const WarningLog log;
    VariableScope scope;
    step->setVariableScope(&scope);
    const int before = allocations;
    step->doOperation();
    const int made = allocations - before;
    QVERIFY2(made >= elements && made < elements + 100, qPrintable(QString("%1 allocations").arg(made)));
    QCOMPARE(a.first(), QVariant(2000));
}

void TestScopeCalls::destinationsOfUnknownType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("element");
    QTest::addColumn<QString>("written");
    for (const int type : {7, 100, -1, INT_MAX, INT_MIN}) {
        const auto row = [type](const QVariant &element, const char *written) {
            QTest::addRow("%s to type %d", qUtf8Printable(shown(element)), type)
                << type << element << QString(written);
        };
        row(5, "int 5");
        row(2.5, "double +2.5");
        row(true, "bool true");
        row(" a ", "text \" a \"");
        row(QVariantList{1, "b"}, "[int 1, text \"b\"]");
        row(QStringList{"x"}, "QStringList [text \"x\"]");
        row(QVariantMap{{"a", 1}}, "{a: int 1}");
        row(QVariant(), "invalid");
        row("", "invalid"); // what is empty becomes the empty value of the type, and such a type has none
        row(QVariant(QVariant::Int), "invalid");
    }
}

// A later version of the host may know types that the steps do not.
void TestScopeCalls::destinationsOfUnknownType()
{
    QFETCH(int, type);
    QFETCH(QVariant, element);
    QFETCH(QString, written);
    variables["source"] = {VarType::List, QVariantList() << element};
    variables["target"] = {static_cast<VarType>(type), "before"};
    const StepPointer step =
        newStep("list.get", {{"sourceVar", "source"}, {"index", "0"}, {"targetVar", "target"}});
    VariableScope scope;
    step->setVariableScope(&scope);
    const WarningLog log;
    ::calls.clear();
    step->doOperation();
    QCOMPARE(::calls.last(), QString("set target"));
    QCOMPARE(shown(variables["target"].value), written);
    QCOMPARE(log.take(), QStringList());
}

QTEST_GUILESS_MAIN(TestScopeCalls)
#include "tst_scopecalls.moc"
