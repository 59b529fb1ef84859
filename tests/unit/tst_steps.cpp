#include "hostapi/VariableScope.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/StepTable.h"
#include "tests/support/WarningLog.h"

#include <QDate>
#include <QtTest>

#include <climits>
#include <limits>

namespace
{
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Variable
{
    QString name;
    VarType type;
    QVariant value;
};
using Variables = QVector<Variable>;

QVariant list(const QVariantList &elements)
{
    return QVariant(elements);
}

Variable listVariable(const QString &name, const QVariantList &elements)
{
    return {name, VarType::List, elements};
}

// A variable of each type that is not a list.
Variables otherVariables()
{
    return {
        {"int", VarType::Int, 5},
        {"double", VarType::Double, 2.5},
        {"text", VarType::String, "[1]"},
        {"bool", VarType::Bool, true},
        {"table", VarType::Table, list({list({1})})},
        {"untyped", VarType::Undeclared, QVariantMap{{"a", 1}}},
    };
}

QStringList namesOfNoList()
{
    QStringList names{"missing", "$missing", "$int", " int ", "$ int", " ", QString(100000, 'x')};
    for (const Variable &variable : otherVariables())
        names += variable.name;
    return names;
}

QString warning(const char *lead, const QString &text, const char *trail = "，已跳过")
{
    return QString(lead) + " \"" + text + "\" " + trail;
}

QString notAList(const QString &name)
{
    return warning("[ListOp] 变量", name, "不是列表类型，已跳过");
}

// The property that names the list that a step reads first.
QString firstListOf(const QString &typeId)
{
    return stepRow(typeId).sample.key("a");
}
} // namespace

Q_DECLARE_METATYPE(Variables)

class TestSteps : public QObject
{
    Q_OBJECT

private slots:
    void everyStepHasItsRows_data();
    void everyStepHasItsRows();
    void frame_data();
    void frame();
    void add_data();
    void add();
    void remove_data();
    void remove();
    void get_data();
    void get();
    void getConverts_data();
    void getConverts();
    void clear_data();
    void clear();
    void sort_data();
    void sort();
    void reverse_data();
    void reverse();
    void dedup_data();
    void dedup();
    void merge_data();
    void merge();
    void intersect_data();
    void intersect();
    void subtract_data();
    void subtract();
    void withoutScope_data();
    void withoutScope();
    void stepsRunAgain();

private:
    static void addColumns();
    static void addTargetRows(const QString &typeId, const char *tag);
    static void run();
};

void TestSteps::addColumns()
{
    QTest::addColumn<QString>("typeId");
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("warnings");
}

// Runs the step of the present row. The variable `written`, if any, has to hold `result` afterwards; every
// other variable, and every value that somebody else holds, has to be what it was.
void TestSteps::run()
{
    QFETCH(QString, typeId);
    QFETCH(QVariantMap, settings);
    QFETCH(Variables, variables);
    QFETCH(QString, written);
    QFETCH(QVariant, result);
    QFETCH(QStringList, warnings);

    VariableScope scope;
    QVariantList held;
    QStringList heldTexts;
    for (const Variable &variable : qAsConst(variables)) {
        scope.declare(variable.name, variable.type);
        scope.set(variable.name, variable.value);
        held.append(scope.get(variable.name));
        heldTexts += shown(variable.value);
    }
    const QStringList names = scope.names();
    const StepPointer step = newStep(typeId, settings);
    QVERIFY(step);
    const QVariantMap settingsBefore = settingsOf(*step);
    step->setVariableScope(&scope);
    const quint64 writesBefore = scope.writeCount();

    const WarningLog log;
    step->doOperation();
    QCOMPARE(log.take(), warnings);

    QCOMPARE(scope.writeCount() - writesBefore, written.isEmpty() ? 0u : 1u);
    QCOMPARE(scope.names(), names);
    for (int i = 0; i < variables.size(); ++i) {
        const Variable &variable = variables.at(i);
        const QVariant now = scope.get(variable.name);
        QCOMPARE(scope.typeOf(variable.name), variable.type);
        QCOMPARE(shown(held.at(i)), heldTexts.at(i));
        if (variable.name == written) {
            QCOMPARE(shown(now), shown(result));
            continue;
        }
        QCOMPARE(shown(now), heldTexts.at(i));
        if (now.userType() == QMetaType::QVariantList)
            QVERIFY(now.toList().isSharedWith(held.at(i).toList()));
    }
    QCOMPARE(shown(settingsOf(*step)), shown(settingsBefore));
}

void TestSteps::everyStepHasItsRows_data()
{
    withoutScope_data();
}

// `list.add` has the rows of add().
void TestSteps::everyStepHasItsRows()
{
    QFETCH(QString, typeId);
    const QByteArray function = typeId.section('.', 1).toLatin1() + "()";
    QVERIFY2(metaObject()->indexOfMethod(function) >= 0, "no test of what the step does");
}

void TestSteps::frame_data()
{
    addColumns();
    for (const StepPointer &step : newStepOfEachKind()) {
        const QString typeId = step->typeId();
        const QString property = firstListOf(typeId);
        const auto row = [&](const QString &name, const QStringList &warnings) {
            QTest::addRow("%s on '%s'", qPrintable(typeId), qPrintable(name.left(20)))
                << typeId << QVariantMap{{property, name}} << otherVariables() << QString() << QVariant()
                << warnings;
        };
        row("", {});
        row("$", {notAList("$")});
        for (const QString &name : namesOfNoList())
            row(name, {notAList(name)});
    }
}

void TestSteps::frame()
{
    run();
}

void TestSteps::add_data()
{
    addColumns();
    const QVariantList abc{"a", "b", "c"};
    const Variables variables{listVariable("names", abc),
                              listVariable("empty", {}),
                              listVariable("other", {1, list({2})}),
                              {"table", VarType::Table, list({list({1, 2}), list({3, 4, 5})})},
                              {"int", VarType::Int, 5},
                              {"odd", VarType::List, 5},
                              {"texts", VarType::List, QStringList{"x", "y"}},
                              {"bool", VarType::Bool, true}};
    const auto adds = [&](const char *name, const QVariantMap &settings, const QVariantList &result) {
        const QString target = settings.value("targetVar").toString().remove('$');
        QTest::newRow(name) << "list.add" << settings << variables << target << list(result) << QStringList();
    };
    const auto at = [](const char *index) {
        return QVariantMap{{"targetVar", "names"}, {"value", "x"}, {"index", index}};
    };
    const auto valued = [](const char *value) {
        return QVariantMap{{"targetVar", "names"}, {"value", value}, {"index", "0"}};
    };
    adds("no position", at(""), {"a", "b", "c", "x"});
    adds("blank position", at(" \t "), {"a", "b", "c", "x"});
    adds("position of wide blanks", at("\u3000\u3000"), {"a", "b", "c", "x"});
    adds("position with wide blanks", at("\u30001\u3000"), {"a", "x", "b", "c"});
    adds("position 0", at("0"), {"x", "a", "b", "c"});
    adds("position 1", at("1"), {"a", "x", "b", "c"});
    adds("position 3", at("3"), {"a", "b", "c", "x"});
    adds("position 99", at("99"), {"a", "b", "c", "x"});
    adds("position -5", at("-5"), {"x", "a", "b", "c"});
    adds("position with blanks", at(" 2 "), {"a", "b", "x", "c"});
    adds("position +1", at("+1"), {"a", "x", "b", "c"});
    adds("greatest position", at("2147483647"), {"a", "b", "c", "x"});
    adds("least position", at("-2147483648"), {"x", "a", "b", "c"});
    adds("marked name", {{"targetVar", "$names"}, {"value", "x"}}, {"a", "b", "c", "x"});
    for (const char *index : {"", "0", "7", "-7"})
        adds(qPrintable(QString("empty list, position '%1'").arg(index)),
             {{"targetVar", "empty"}, {"value", "x"}, {"index", index}}, {"x"});

    adds("value 3", valued("3"), {3.0, "a", "b", "c"});
    adds("value abc", valued("abc"), {"abc", "a", "b", "c"});
    adds("value true", valued("true"), {"true", "a", "b", "c"});
    adds("value [1,2]", valued("[1,2]"), {"[1,2]", "a", "b", "c"});
    adds("empty value", valued(""), {"", "a", "b", "c"});
    adds("blank value", valued("  "), {"  ", "a", "b", "c"});
    adds("the mark alone", valued("$"), {"$", "a", "b", "c"});
    adds("int variable", valued("$int"), {5, "a", "b", "c"});
    adds("bool variable", valued("$bool"), {true, "a", "b", "c"});
    adds("list variable", valued("$other"), {list({1, list({2})}), "a", "b", "c"});
    adds("empty list variable", valued("$empty"), {list({}), "a", "b", "c"});
    adds("string list variable", valued("$texts"), {QStringList{"x", "y"}, "a", "b", "c"});
    adds("table variable", valued("$table"), {list({list({1, 2}), list({3, 4, 5})}), "a", "b", "c"});
    adds("the list itself", valued("$names"), {list(abc), "a", "b", "c"});
    adds("items", valued("$other.Items"), {list({1, list({2})}), "a", "b", "c"});
    adds("count", valued("$other.Count"), {2, "a", "b", "c"});
    adds("rows", valued("$names.rows"), {3, "a", "b", "c"});
    adds("columns", valued("$table.Columns"), {3, "a", "b", "c"});
    adds("missing variable", valued("$missing"), {QVariant(), "a", "b", "c"});
    adds("missing member", valued("$other.Foo"), {QVariant(), "a", "b", "c"});
    adds("list appended", {{"targetVar", "names"}, {"value", "$other"}},
         {"a", "b", "c", list({1, list({2})})});
    adds("list added to an empty list", {{"targetVar", "empty"}, {"value", "$other"}},
         {list({1, list({2})})});
    adds("empty list added to itself", {{"targetVar", "empty"}, {"value", "$empty"}}, {list({})});
    adds("a list by type, an int by value", {{"targetVar", "odd"}, {"value", "x"}}, {"x"});
    adds("string list", {{"targetVar", "texts"}, {"value", "1"}}, {"x", "y", 1.0});

    for (const char *index : {"1.5", "abc", "$i", "0x1", "2147483648", "1   2", "1e0"}) {
        for (const QString &stored :
             {QString(index), ' ' + QString(index) + "\t", QString("\u3000%1\u3000").arg(index)})
            QTest::addRow("bad position '%s'", qPrintable(stored))
                << "list.add" << at(qPrintable(stored)) << variables << "" << QVariant()
                << QStringList(warning("[ListAdd] 插入位置非法：", index));
    }
    const QString longText(100000, 'x');
    QTest::newRow("bad position, a long one")
        << "list.add" << QVariantMap{{"targetVar", "names"}, {"index", longText}} << variables << ""
        << QVariant() << QStringList(warning("[ListAdd] 插入位置非法：", longText));
    QTest::newRow("bad position and missing value")
        << "list.add" << QVariantMap{{"targetVar", "names"}, {"value", "$missing"}, {"index", "x"}}
        << variables << "" << QVariant() << QStringList(warning("[ListAdd] 插入位置非法：", "x"));
    QTest::newRow("no list and bad position")
        << "list.add" << QVariantMap{{"targetVar", "int"}, {"index", "x"}} << variables << "" << QVariant()
        << QStringList(notAList("int"));
}

void TestSteps::add()
{
    run();
}

void TestSteps::remove_data()
{
    addColumns();
    const QVariant nested = list({1, 2});
    const Variables variables{listVariable("abc", {"a", "b", "c"}),
                              listVariable("numbers", {1, 2, 1}),
                              listVariable("mixed", {nested, true, "x", QVariant(), "1", nested, QVariant()}),
                              listVariable("empty", {}),
                              {"odd", VarType::List, 5},
                              {"nested", VarType::List, nested},
                              {"two", VarType::Int, 2},
                              {"bool", VarType::Bool, true}};
    const auto settings = [](const char *target, int mode, const char *key) {
        const char *const used = mode == 0 ? "index" : "value";
        const char *const unused = mode == 0 ? "value" : "index";
        return QVariantMap{{"targetVar", target}, {"mode", mode}, {used, key}, {unused, "unused"}};
    };
    const auto removes = [&](const char *name, const char *target, int mode, const char *key,
                             const QVariantList &result) {
        QTest::addRow("%s", name) << "list.remove" << settings(target, mode, key) << variables
                                  << QString(target).remove('$') << list(result) << QStringList();
    };
    removes("position 0", "abc", 0, "0", {"b", "c"});
    removes("position 1", "abc", 0, "1", {"a", "c"});
    removes("position 2", "abc", 0, "2", {"a", "b"});
    removes("position with blanks", "abc", 0, " 1 ", {"a", "c"});
    removes("marked name", "$abc", 0, "1", {"a", "c"});
    removes("nested list by position", "mixed", 0, "0", {true, "x", QVariant(), "1", nested, QVariant()});
    for (const char *index : {"3", "-1", "1.5", "abc", "", " ", " 3 ", "$two", "2147483648", "-2147483648"})
        QTest::addRow("position '%s'", index)
            << "list.remove" << settings("abc", 0, index) << variables << "" << QVariant()
            << QStringList(warning("[ListRemove] 索引越界：", index));
    const QString longText(100000, 'x');
    QTest::newRow("position, a long one")
        << "list.remove" << QVariantMap{{"targetVar", "abc"}, {"index", longText}} << variables << ""
        << QVariant() << QStringList(warning("[ListRemove] 索引越界：", longText));
    QTest::newRow("value, a long one")
        << "list.remove" << QVariantMap{{"targetVar", "abc"}, {"mode", 1}, {"value", longText}} << variables
        << "" << QVariant() << QStringList(warning("[ListRemove] 未找到匹配项：", longText));
    for (const char *name : {"empty", "odd"})
        QTest::addRow("position 0 of %s", name)
            << "list.remove" << settings(name, 0, "0") << variables << "" << QVariant()
            << QStringList(warning("[ListRemove] 索引越界：", "0"));

    removes("first of equal elements", "numbers", 1, "1", {2, 1});
    removes("literal with blanks", "numbers", 1, " 2 ", {1, 1});
    removes("text", "abc", 1, "b", {"a", "c"});
    removes("int variable", "numbers", 1, "$two", {1, 1});
    removes("count of a list", "numbers", 1, "$nested.Count", {1, 1});
    removes("nested list", "mixed", 1, "$nested", {true, "x", QVariant(), "1", nested, QVariant()});
    // The text x converts to a bool that is true; the other way round it does not.
    removes("the element is converted to", "mixed", 1, "x",
            {nested, "x", QVariant(), "1", nested, QVariant()});
    removes("bool variable", "mixed", 1, "$bool", {nested, "x", QVariant(), "1", nested, QVariant()});
    removes("missing variable", "mixed", 1, "$missing", {nested, true, "x", "1", nested, QVariant()});
    removes("missing member", "mixed", 1, "$nested.Foo", {nested, true, "x", "1", nested, QVariant()});
    removes("mode 2", "abc", 2, "b", {"a", "c"});
    removes("mode -1", "$abc", -1, "b", {"a", "c"});
    removes("least mode", "abc", INT_MIN, "b", {"a", "c"});
    struct Unfound
    {
        const char *target;
        const char *value;
    };
    for (const Unfound &row : {Unfound{"abc", "d"},
                               {"abc", ""},
                               {"abc", " b "},
                               {"abc", "A"},
                               {"abc", "$missing"},
                               {"abc", "$bool"},
                               {"numbers", "3"},
                               {"empty", "a"},
                               {"empty", ""},
                               {"odd", "5"}})
        QTest::addRow("value '%s' in %s", row.value, row.target)
            << "list.remove" << settings(row.target, 1, row.value) << variables << "" << QVariant()
            << QStringList(warning("[ListRemove] 未找到匹配项：", row.value));
}

void TestSteps::remove()
{
    run();
}

void TestSteps::get_data()
{
    addColumns();
    const QVariant nested = list({7, list({8})});
    const Variables variables = Variables{listVariable("numbers", {10, 20, 30}),
                                          listVariable("mixed", {nested, "[1, a]", 5, "12abc", QVariant()}),
                                          listVariable("empty", {}),
                                          {"odd", VarType::List, 5},
                                          {" odd text ", VarType::String, "before"},
                                          {"texts", VarType::List, QStringList{"x", "y"}}}
        + otherVariables();
    const auto settings = [](const char *source, const char *index, const char *target) {
        return QVariantMap{{"sourceVar", source}, {"index", index}, {"targetVar", target}};
    };
    const auto gets = [&](const char *name, const QVariantMap &row, const QVariant &result) {
        QTest::newRow(name) << "list.get" << row << variables << row.value("targetVar").toString().remove('$')
                            << result << QStringList();
    };
    const auto skips = [&](const char *name, const QVariantMap &row, const QString &line) {
        QTest::newRow(name) << "list.get" << row << variables << "" << QVariant() << QStringList(line);
    };
    gets("position 0", settings("numbers", "0", "int"), 10);
    gets("position 2", settings("numbers", "2", "int"), 30);
    gets("position with blanks", settings("$numbers", " 1 ", "$int"), 20);
    gets("nested list to a list", settings("mixed", "0", "numbers"), nested);
    gets("nested list to a table", settings("mixed", "0", "table"), list({nested}));
    gets("invalid element to an int", settings("mixed", "4", "int"), 0);
    gets("invalid element to a text", settings("mixed", "4", "text"), QString());
    gets("element of a string list", settings("texts", "1", "text"), "y");
    gets("nested list replaces the list that holds it", settings("mixed", "0", "$mixed"), nested);
    gets("bracket text replaces the list that holds it", settings("mixed", "1", "mixed"), list({1.0, "a"}));
    skips("number into the list that holds it", settings("mixed", "2", "mixed"),
          warning("[ListGet] 项与目标变量", "mixed", "类型不匹配，已跳过"));
    skips("nested list to a text", settings("mixed", "0", "text"),
          warning("[ListGet] 项与目标变量", "text", "类型不匹配，已跳过"));
    skips("nested list to a name with blanks", settings("mixed", "0", " odd text "),
          warning("[ListGet] 项与目标变量", " odd text ", "类型不匹配，已跳过"));
    skips("text to an int", settings("mixed", "3", "$int"),
          warning("[ListGet] 项与目标变量", "$int", "类型不匹配，已跳过"));
    for (const char *index : {"3", "-1", "1.5", "", " ", " 3 ", "abc", "$int", "2147483648"})
        skips(qPrintable(QString("position '%1'").arg(index)), settings("numbers", index, "missing"),
              warning("[ListGet] 索引越界：", index));
    for (const char *source : {"empty", "odd"})
        skips(source, settings(source, "0", "int"), warning("[ListGet] 索引越界：", "0"));
    const QByteArray longText(100000, 'x');
    skips("position, a long one", settings("numbers", longText, "int"),
          warning("[ListGet] 索引越界：", longText));
    for (const char *target : {"missing", "$missing", "", "$", "untyped", " ", " int ", longText.constData()})
        skips(qPrintable(QString("destination '%1'").arg(target).left(40)), settings("mixed", "0", target),
              warning("[ListGet] 目标变量", target, "未声明，已跳过"));
    skips("no list, bad position, no destination", settings("int", "x", "missing"), notAList("int"));
}

void TestSteps::get()
{
    run();
}

// Element kinds against destination types. A cell that is not accepted leaves the destination alone.
void TestSteps::getConverts_data()
{
    addColumns();
    struct Kind
    {
        QVariant element;
        QVariant toInt;
        QVariant toDouble;
        QVariant toText;
        QVariant toBool;
        QVariant toList;
        QVariant toTable;
    };
    const QVariant refused;
    const QVariant none = QVariantList();
    const QVariant nested = list({7, "a"});
    const QVariant table = list({list({1}), list({2})});
    const QVariant texts = QStringList{"x", "y"};
    const Kind kinds[] = {
        {QVariant(), 0, 0.0, QString(), false, none, none},
        {"", 0, 0.0, QString(), false, none, none},
        {" ", refused, refused, " ", false, refused, none},
        {5, 5, 5.0, "5", true, refused, none},
        {0, 0, 0.0, "0", false, refused, none},
        {7.9, 8, 7.9, "7.9", true, refused, none},
        {-7.9, -8, -7.9, "-7.9", true, refused, none},
        {0.5, 1, 0.5, "0.5", true, refused, none},
        {notANumber, QVariant(notANumber).toInt(), notANumber, "nan", true, refused, none},
        {5ll, 5, 5.0, "5", true, refused, none},
        {5u, 5, 5.0, "5", true, refused, none},
        {true, 1, 1.0, "true", true, refused, none},
        {false, 0, 0.0, "false", false, refused, none},
        {"12", 12, 12.0, "12", refused, refused, none},
        {"7.9", 7, 7.9, "7.9", refused, refused, none},
        {"-7.9", -7, -7.9, "-7.9", refused, refused, none},
        {"3.7", 3, 3.7, "3.7", refused, refused, none},
        {"2147483648", INT_MIN, 2147483648.0, "2147483648", refused, refused, none},
        {"1e300", INT_MIN, 1e300, "1e300", refused, refused, none},
        {"inf", INT_MIN, infinity, "inf", refused, refused, none},
        {"nan", INT_MIN, notANumber, "nan", refused, refused, none},
        {"12abc", refused, refused, "12abc", refused, refused, none},
        {"1", 1, 1.0, "1", true, refused, none},
        {"是", refused, refused, "是", true, refused, none},
        {"No", refused, refused, "No", false, refused, none},
        {"maybe", refused, refused, "maybe", refused, refused, none},
        {"[1, b]", refused, refused, "[1, b]", refused, list({1.0, "b"}), none},
        {" [1]", refused, refused, " [1]", refused, refused, none},
        {"[1", refused, refused, "[1", refused, refused, none},
        {R"([["a"],["b"]])", refused, refused, R"([["a"],["b"]])", refused, list({"[\"a\"]", "[\"b\"]"}),
         list({list({"a"}), list({"b"})})},
        {nested, refused, refused, refused, refused, nested, list({nested})},
        {none, refused, refused, refused, refused, none, list({none})},
        {table, refused, refused, refused, refused, table, table},
        {texts, refused, refused, texts.toString(), refused, texts, none},
        {QByteArray("12"), 12, 12.0, "12", true, refused, none},
        {QDate(2020, 1, 2), refused, refused, "2020-01-02", refused, refused, none},
        {QVariantMap{{"a", 1}}, refused, refused, QVariant(QVariantMap{{"a", 1}}).toString(), refused,
         refused, none},
    };
    for (const Kind &kind : kinds) {
        struct Cell
        {
            Variable target;
            QVariant result;
        };
        const Cell cells[] = {
            {{"target", VarType::Int, 99}, kind.toInt},
            {{"target", VarType::Double, 99.5}, kind.toDouble},
            {{"target", VarType::String, "before"}, kind.toText},
            {{"target", VarType::Bool, true}, kind.toBool},
            {{"target", VarType::Bool, false}, kind.toBool},
            {{"target", VarType::List, list({"before"})}, kind.toList},
            {{"target", VarType::Table, list({list({"before"})})}, kind.toTable},
        };
        for (const Cell &cell : cells) {
            const bool accepted = cell.result.isValid();
            QTest::addRow("%s to %s", qUtf8Printable(shown(kind.element)),
                          qUtf8Printable(shown(cell.target.value)))
                << "list.get" << QVariantMap{{"sourceVar", "source"}, {"index", "0"}, {"targetVar", "target"}}
                << Variables{listVariable("source", QVariantList() << kind.element), cell.target}
                << (accepted ? "target" : "") << cell.result
                << (accepted
                        ? QStringList()
                        : QStringList(warning("[ListGet] 项与目标变量", "target", "类型不匹配，已跳过")));
        }
    }
}

void TestSteps::getConverts()
{
    run();
}

void TestSteps::clear_data()
{
    addColumns();
    const auto clears = [](const char *name, const QVariant &value) {
        for (const char *target : {"names", "$names"})
            QTest::addRow("%s, %s", name, target)
                << "list.clear" << QVariantMap{{"targetVar", target}}
                << Variables{{"names", VarType::List, value}, listVariable("other", {1})} << "names"
                << list({}) << QStringList();
    };
    clears("empty list", list({}));
    clears("one element", list({1}));
    clears("many kinds", list({1, "a", 2.5, true, QVariant(), list({1, list({})})}));
    clears("string list", QStringList{"a"});
    clears("an int by value", 5);
    clears("nothing by value", QVariant());
}

void TestSteps::clear()
{
    run();
}

void TestSteps::sort_data()
{
    addColumns();
    const auto sorts = [](const char *name, const QVariant &value, const QVariantList &result) {
        QVariantList mirrored;
        for (const QVariant &element : result)
            mirrored.prepend(element);
        const Variables variables{{"names", VarType::List, value}, listVariable("other", {2, 1})};
        QTest::addRow("%s, ascending", name) << "list.sort" << QVariantMap{{"targetVar", "names"}}
                                             << variables << "names" << list(result) << QStringList();
        QTest::addRow("%s, descending", name)
            << "list.sort" << QVariantMap{{"targetVar", "$names"}, {"ascending", false}} << variables
            << "names" << list(mirrored) << QStringList();
    };
    sorts("integers", list({10, 9, 100}), {9, 10, 100});
    sorts("digits", list({"10", "9", "100"}), {"10", "100", "9"});
    sorts("letters", list({"b", "B", "a", "A"}), {"A", "B", "a", "b"});
    sorts("doubles and integers", list({2.5, 1, 3}), {1, 2.5, 3});
    sorts("three integers", list({1, 3, 2}), {1, 2, 3});
    sorts("booleans among numbers", list({2, true, 0.5, false, -1}), {-1, false, 0.5, true, 2});
    sorts("infinities", list({1, infinity, -infinity}), {-infinity, 1, infinity});
    sorts("empty list", list({}), {});
    sorts("one element", list({"a"}), {"a"});
    sorts("ties keep their order", list({2, 1.0, true, 1, "1", 2.0}), {1.0, true, 1, "1", 2, 2.0});
    sorts("no text comes first", list({"a", list({9}), "", QVariant(), "A"}),
          {list({9}), "", QVariant(), "A", "a"});
    sorts("a prefix comes first", list({"ab", "a", "abc", ""}), {"", "a", "ab", "abc"});
    sorts("code units", list({"一", "丁", "z", QString(QChar(0xffff)), "\U0001F600"}),
          {"z", "一", "丁", "\U0001F600", QString(QChar(0xffff))});
    sorts("a number against a text", list({"9", 10}), {10, "9"});
    sorts("nested lists stay whole", list({"b", list({3, 1, 2}), "a"}), {list({3, 1, 2}), "a", "b"});
    sorts("string list", QStringList{"b", "a"}, {"a", "b"});
    sorts("an int by value", 5, {});
}

void TestSteps::sort()
{
    run();
}

void TestSteps::reverse_data()
{
    addColumns();
    const auto reverses = [](const char *name, const QVariant &value, const QVariantList &result) {
        for (const char *target : {"names", "$names"})
            QTest::addRow("%s, %s", name, target)
                << "list.reverse" << QVariantMap{{"targetVar", target}}
                << Variables{{"names", VarType::List, value}, listVariable("other", {1, 2})} << "names"
                << list(result) << QStringList();
    };
    reverses("mixed", list({1, "a", 2.5, true}), {true, 2.5, "a", 1});
    reverses("three", list({1, 2, 3}), {3, 2, 1});
    reverses("two", list({1, 2}), {2, 1});
    reverses("one", list({list({1, 2})}), {list({1, 2})});
    reverses("none", list({}), {});
    reverses("nested lists stay whole", list({list({1, 2}), QVariant(), list({})}),
             {list({}), QVariant(), list({1, 2})});
    reverses("string list", QStringList{"a", "b"}, {"b", "a"});
    reverses("an int by value", 5, {});
}

void TestSteps::reverse()
{
    run();
}

void TestSteps::dedup_data()
{
    addColumns();
    const auto keeps = [](const char *name, const QVariant &value, const QVariantList &result) {
        for (const char *target : {"names", "$names"})
            QTest::addRow("%s, %s", name, target)
                << "list.dedup" << QVariantMap{{"targetVar", target}}
                << Variables{{"names", VarType::List, value}, listVariable("other", {1, 1})} << "names"
                << list(result) << QStringList();
    };
    keeps("empty list", list({}), {});
    keeps("one element", list({1}), {1});
    keeps("no duplicates", list({"b", "a", 2, list({})}), {"b", "a", 2, list({})});
    keeps("int before double", list({1, "b", 1.0, "b"}), {1, "b"});
    keeps("double before int", list({1.0, 1}), {1.0});
    keeps("int before text", list({1, "1"}), {1});
    keeps("text before int", list({"1", 1}), {"1"});
    keeps("nested lists", list({list({1, 2}), list({2, 1}), list({1, 2}), list({1.0, "2"})}),
          {list({1, 2}), list({2, 1})});
    // The later element is converted to: the text 1.0 to compare with 1 is "1", the bool to compare with
    // the text x is true.
    keeps("1.0 as a text after 1", list({1, "1.0"}), {1, "1.0"});
    keeps("true after x", list({"x", true}), {"x"});
    keeps("x after true", list({true, "x"}), {true, "x"});
    keeps("nan", list({notANumber, notANumber}), {notANumber, notANumber});
    keeps("invalid", list({QVariant(), 1, QVariant()}), {QVariant(), 1});
    keeps("fuzzy doubles", list({1.0, 1.0 + 1e-13, 1.0 + 1e-11}), {1.0, 1.0 + 1e-11});
    keeps("string list", QStringList{"a", "b", "a"}, {"a", "b"});
    keeps("an int by value", 5, {});
}

void TestSteps::dedup()
{
    run();
}

// What the steps on two lists have in common: the order of their checks.
void TestSteps::addTargetRows(const QString &typeId, const char *tag)
{
    const Variables variables = Variables{listVariable("a", {1}), listVariable("b", {2})} + otherVariables();
    const auto row = [&](const QString &a, const QString &b, const QString &target,
                         const QStringList &warnings) {
        QTest::addRow("'%s' and '%s' into '%s'", qPrintable(a), qPrintable(b.left(20)),
                      qPrintable(target.left(20)))
            << typeId << QVariantMap{{"listA", a}, {"listB", b}, {"targetVar", target}} << variables << ""
            << QVariant() << warnings;
    };
    const auto notTarget = [tag](const QString &name) {
        return warning(qUtf8Printable(QString(tag) + " 目标变量"), name, "未声明为列表，已跳过");
    };
    row("", "int", "missing", {});
    row("int", "text", "missing", {notAList("int")});
    row("a", "int", "", {notTarget("")});
    row("a", "", "a", {});
    row("a", "", "missing", {notTarget("missing")});
    for (const QString &name : namesOfNoList()) {
        row("a", "b", name, {notTarget(name)});
        row("a", name, "a", {notAList(name)});
    }
}

void TestSteps::merge_data()
{
    addColumns();
    addTargetRows("list.merge", "[ListMerge]");
    const QVariant nested = list({5, list({6})});
    const Variables variables{listVariable("a", {1, 2}),
                              listVariable("b", {2, 3}),
                              listVariable("c", {"c"}),
                              listVariable("empty", {}),
                              listVariable("n", {nested}),
                              {"odd", VarType::List, 5},
                              {"texts", VarType::List, QStringList{"x"}},
                              listVariable("$$c", {"marked twice"})};
    const auto merges = [&](const char *a, const char *b, const char *target, const QVariantList &result) {
        QTest::addRow("%s and %s into %s", a, b, target)
            << "list.merge" << QVariantMap{{"listA", a}, {"listB", b}, {"targetVar", target}} << variables
            << QString(target).remove('$') << list(result) << QStringList();
    };
    merges("a", "b", "c", {1, 2, 2, 3});
    merges("$a", "$b", "$c", {1, 2, 2, 3});
    merges("a", "b", "a", {1, 2, 2, 3});
    merges("a", "b", "$b", {1, 2, 2, 3});
    merges("a", "$a", "c", {1, 2, 1, 2});
    merges("a", "a", "$a", {1, 2, 1, 2});
    merges("empty", "empty", "c", {});
    merges("empty", "b", "c", {2, 3});
    merges("a", "empty", "c", {1, 2});
    merges("n", "n", "c", {nested, nested});
    merges("a", "n", "a", {1, 2, nested});
    merges("odd", "b", "odd", {2, 3});
    merges("a", "odd", "c", {1, 2});
    merges("texts", "a", "texts", {"x", 1, 2});
}

void TestSteps::merge()
{
    run();
}

void TestSteps::intersect_data()
{
    addColumns();
    addTargetRows("list.intersect", "[ListIntersect]");
    const auto intersects = [](const char *name, const QVariant &a, const QVariant &b,
                               const QVariantList &result) {
        QTest::newRow(name) << "list.intersect"
                            << QVariantMap{{"listA", "a"}, {"listB", "$b"}, {"targetVar", "$c"}}
                            << Variables{{"a", VarType::List, a},
                                         {"b", VarType::List, b},
                                         listVariable("c", {"before"})}
                            << "c" << list(result) << QStringList();
    };
    intersects("A's order, each once", list({3, 1, 3, 2}), list({2, 3, 3}), {3, 2});
    intersects("empty A", list({}), list({1}), {});
    intersects("empty B", list({1}), list({}), {});
    intersects("nothing in common", list({1}), list({2}), {});
    intersects("int and double", list({1}), list({1.0}), {1});
    intersects("double and int", list({1.0}), list({1}), {1.0});
    intersects("text and int", list({"1"}), list({1}), {"1"});
    intersects("equal values of several types", list({1.0, 1, "1", true}), list({1}), {1.0});
    intersects("nested lists", list({list({1}), 1}), list({list({1.0})}), {list({1})});
    intersects("flat against nested", list({1, 2}), list({list({1, 2})}), {});
    intersects("nan", list({notANumber}), list({notANumber}), {});
    intersects("invalid", list({QVariant(), 1, QVariant()}), list({QVariant()}), {QVariant()});
    intersects("x among true", list({"x"}), list({true}), {});
    intersects("true among x", list({true}), list({"x"}), {true});
    intersects("1.0 as a text among 1", list({"1.0"}), list({1}), {});
    intersects("string lists", QStringList{"a", "b"}, QStringList{"b"}, {"b"});
    intersects("an int by value", 5, list({5}), {});
    const Variables variables{listVariable("a", {3, 1, 3, 2}), listVariable("b", {2, 3})};
    const auto names = [&](const char *a, const char *b, const char *target, const QVariantList &result) {
        QTest::addRow("%s and %s into %s", a, b, target)
            << "list.intersect" << QVariantMap{{"listA", a}, {"listB", b}, {"targetVar", target}} << variables
            << QString(target).remove('$') << list(result) << QStringList();
    };
    names("a", "a", "b", {3, 1, 2});
    names("a", "$a", "a", {3, 1, 2});
    names("a", "b", "a", {3, 2});
    names("a", "b", "b", {3, 2});
}

void TestSteps::intersect()
{
    run();
}

void TestSteps::subtract_data()
{
    addColumns();
    addTargetRows("list.subtract", "[ListSubtract]");
    const auto subtracts = [](const char *name, const QVariant &a, const QVariant &b,
                              const QVariantList &result) {
        QTest::newRow(name) << "list.subtract"
                            << QVariantMap{{"listA", "$a"}, {"listB", "b"}, {"targetVar", "c"}}
                            << Variables{{"a", VarType::List, a},
                                         {"b", VarType::List, b},
                                         listVariable("c", {"before"})}
                            << "c" << list(result) << QStringList();
    };
    subtracts("A's order, repeats kept", list({1, 2, 2, 3, 1}), list({1}), {2, 2, 3});
    subtracts("empty B", list({1, 1, "a"}), list({}), {1, 1, "a"});
    subtracts("empty A", list({}), list({1}), {});
    subtracts("int and double minus int", list({1, 1.0}), list({1}), {});
    subtracts("int minus text", list({1}), list({"1"}), {});
    subtracts("text minus int", list({"1"}), list({1}), {});
    subtracts("nested lists", list({list({1}), 1}), list({list({1})}), {1});
    subtracts("flat minus nested", list({1, 2}), list({list({1, 2})}), {1, 2});
    subtracts("nan", list({notANumber}), list({notANumber}), {notANumber});
    subtracts("invalid", list({QVariant(), 1}), list({QVariant()}), {1});
    subtracts("x minus true", list({"x"}), list({true}), {"x"});
    subtracts("true minus x", list({true}), list({"x"}), {});
    subtracts("1.0 as a text minus 1", list({"1.0"}), list({1}), {"1.0"});
    subtracts("1 minus 1.0 as a text", list({1}), list({"1.0"}), {1});
    subtracts("string lists", QStringList{"a", "b"}, QStringList{"b"}, {"a"});
    subtracts("an int by value", list({5}), 5, {5});
    const Variables variables{listVariable("a", {1, 2, 1, 3}), listVariable("b", {1})};
    const auto names = [&](const char *a, const char *b, const char *target, const QVariantList &result) {
        QTest::addRow("%s and %s into %s", a, b, target)
            << "list.subtract" << QVariantMap{{"listA", a}, {"listB", b}, {"targetVar", target}} << variables
            << QString(target).remove('$') << list(result) << QStringList();
    };
    names("a", "a", "b", {});
    names("a", "$a", "a", {});
    names("a", "b", "$a", {2, 3});
    names("a", "b", "b", {2, 3});
}

void TestSteps::subtract()
{
    run();
}

void TestSteps::withoutScope_data()
{
    QTest::addColumn<QString>("typeId");
    for (const StepPointer &step : newStepOfEachKind())
        QTest::newRow(step->typeId().toUtf8()) << step->typeId();
}

void TestSteps::withoutScope()
{
    QFETCH(QString, typeId);
    const WarningLog log;
    VariableScope scope;
    scope.set("a", QVariantList{2, 1});
    const StepPointer step = newStep(typeId, {{firstListOf(typeId), "a"}});
    step->doOperation();
    step->setVariableScope(&scope);
    step->setVariableScope(nullptr);
    step->doOperation();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(shown(scope.get("a")), QString("[int 2, int 1]"));
}

// A step keeps nothing from one run to the next, and follows a change of scope.
void TestSteps::stepsRunAgain()
{
    const StepPointer step = newStep("list.add", {{"targetVar", "a"}, {"value", "$a.Count"}});
    VariableScope first;
    first.set("a", QVariantList());
    step->setVariableScope(&first);
    for (int i = 0; i < 3; ++i)
        step->doOperation();
    QCOMPARE(shown(first.get("a")), QString("[int 0, int 1, int 2]"));

    VariableScope second;
    second.set("a", QVariantList{"x"});
    step->setVariableScope(&second);
    step->doOperation();
    QCOMPARE(shown(second.get("a")), QString("[text \"x\", int 1]"));
    QCOMPARE(shown(first.get("a")), QString("[int 0, int 1, int 2]"));
}

QTEST_GUILESS_MAIN(TestSteps)
#include "tst_steps.moc"
