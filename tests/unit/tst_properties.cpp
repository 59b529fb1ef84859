#include "hostapi/VariableScope.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/WarningLog.h"

#include <rapidcheck.h>

#include <QDate>
#include <QtTest>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

// Every step against a plain reference, on random lists that mix every kind of element. RapidCheck prints
// the seed at the start, and the smallest failing case; RC_PARAMS="seed=..." in the environment runs it
// again.

namespace
{
rc::Gen<QVariant> scalar()
{
    const double infinity = std::numeric_limits<double>::infinity();
    // Few distinct values, so that equal ones meet often.
    const auto integer = rc::gen::map(rc::gen::inRange(-3, 12), [](int number) { return QVariant(number); });
    const auto real =
        rc::gen::map(rc::gen::inRange(-6, 24), [](int number) { return QVariant(number / 2.0); });
    const auto wide =
        rc::gen::map(rc::gen::inRange(-3, 12), [](int number) { return QVariant(qlonglong(number)); });
    const auto numberText =
        rc::gen::map(rc::gen::inRange(-3, 12), [](int number) { return QVariant(QString::number(number)); });
    const auto word = rc::gen::elementOf(std::vector<QVariant>{
        "", " ", "a", "A", "b", "ab", "1.0", "0.5", "true", "false", "x", "是", "[1]", "nan", QString()});
    const auto rare = rc::gen::elementOf(std::vector<QVariant>{QVariant(),
                                                               true,
                                                               false,
                                                               infinity,
                                                               -infinity,
                                                               std::numeric_limits<double>::quiet_NaN(),
                                                               -0.0,
                                                               1.0 + 1e-13,
                                                               1u,
                                                               1.0f,
                                                               INT_MAX,
                                                               INT_MIN,
                                                               LLONG_MAX,
                                                               ULLONG_MAX,
                                                               QByteArray("1"),
                                                               QByteArray("a"),
                                                               QChar('a'),
                                                               QChar('1'),
                                                               QDate(2020, 1, 2),
                                                               QStringList({"a", "b"}),
                                                               QStringList("1"),
                                                               QVariantMap{{"a", 1}}});
    return rc::gen::oneOf(integer, real, wide, numberText, word, rare);
}

QVariantList toList(const std::vector<QVariant> &elements)
{
    QVariantList list;
    for (const QVariant &element : elements)
        list.append(element);
    return list;
}

rc::Gen<QVariant> element()
{
    const auto nested =
        rc::gen::map(rc::gen::container<std::vector<QVariant>>(3, scalar()),
                     [](const std::vector<QVariant> &elements) { return QVariant(toList(elements)); });
    return rc::gen::weightedOneOf<QVariant>({{8, scalar()}, {1, nested}});
}

rc::Gen<QVariantList> list()
{
    return rc::gen::map(rc::gen::container<std::vector<QVariant>>(element()), toList);
}

// What a step left in its destination, and what it logged.
struct Outcome
{
    QVariantList written;
    QStringList warnings;
};

Outcome run(const QString &typeId, const QVariantMap &settings, VariableScope &scope)
{
    const QString target = settings.value("targetVar").toString();
    const WarningLog log;
    const StepPointer step = newStep(typeId, settings);
    step->setVariableScope(&scope);
    step->doOperation();
    return {scope.get(target).toList(), log.take()};
}

Outcome runOnOne(const QString &typeId, const QVariantMap &settings, const QVariantList &before)
{
    VariableScope scope;
    scope.set("a", before);
    QVariantMap all = settings;
    all.insert("targetVar", "a");
    return run(typeId, all, scope);
}

Outcome runOnTwo(const QString &typeId, const QVariantList &a, const QVariantList &b, const char *target)
{
    VariableScope scope;
    scope.set("a", a);
    scope.set("b", b);
    scope.set("c", QVariantList{"before"});
    return run(typeId, {{"listA", "a"}, {"listB", "$b"}, {"targetVar", target}}, scope);
}

void expect(const QVariantList &actual, const QVariantList &expected)
{
    RC_ASSERT(shown(actual).toStdString() == shown(expected).toStdString());
}

void expectWritten(const Outcome &outcome, const QVariantList &expected)
{
    RC_ASSERT(outcome.warnings.isEmpty());
    expect(outcome.written, expected);
}

void expectSkipped(const Outcome &outcome, const QVariantList &before, const QString &line)
{
    RC_ASSERT(outcome.warnings.join('\n').toStdString() == line.toStdString());
    expect(outcome.written, before);
}

// The references: the rules in their plainest form.

bool occursIn(const QVariant &candidate, const QVariantList &others)
{
    for (const QVariant &other : others) {
        if (candidate == other)
            return true;
    }
    return false;
}

bool isNumber(const QVariant &value)
{
    return value.canConvert(QMetaType::Double) && value.userType() != QMetaType::QString;
}

bool comesBefore(const QVariant &left, const QVariant &right)
{
    if (isNumber(left) && isNumber(right))
        return left.toDouble() < right.toDouble();
    return left.toString() < right.toString();
}
} // namespace

// How RapidCheck prints a failing case.
static void showValue(const QVariant &value, std::ostream &stream)
{
    stream << shown(value).toStdString();
}
static void showValue(const QVariantList &list, std::ostream &stream)
{
    stream << shown(list).toStdString();
}

class TestProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void add();
    void removeByPosition();
    void removeByValue();
    void get();
    void clear();
    void sort();
    void sortOfOneKind();
    void reverse();
    void dedup();
    void merge();
    void intersect();
    void subtract();
};

void TestProperties::initTestCase()
{
    if (!qEnvironmentVariableIsSet("RC_PARAMS"))
        qputenv("RC_PARAMS", "max_success=2000 max_size=25");
}

void TestProperties::add()
{
    QVERIFY(rc::check("add inserts one element", [] {
        const QVariantList before = *list();
        const QVariant item = *element();
        const int position = *rc::gen::inRange(-10, 60);
        const QString index = *rc::gen::elementOf(std::vector<QString>{
            QString(), " ", QString::number(position), QString(" %1\t").arg(position), "x", "1.5"});

        VariableScope scope;
        scope.set("a", before);
        scope.set("item", QVariantList() << item);
        const Outcome outcome =
            run("list.add", {{"targetVar", "a"}, {"value", "$item.Items"}, {"index", index}}, scope);
        if (index == "x" || index == "1.5") {
            expectSkipped(outcome, before, QString("[ListAdd] 插入位置非法： \"%1\" ，已跳过").arg(index));
            return;
        }
        const int place =
            index.trimmed().isEmpty() ? before.size() : std::min(std::max(position, 0), before.size());
        QVariantList expected;
        for (int i = 0; i <= before.size(); ++i) {
            if (i == place)
                expected << QVariant(QVariantList() << item);
            if (i < before.size())
                expected << before.at(i);
        }
        expectWritten(outcome, expected);
    }));
}

void TestProperties::removeByPosition()
{
    QVERIFY(rc::check("remove takes the element at a position", [] {
        const QVariantList before = *list();
        const int position = *rc::gen::inRange(-3, before.size() + 3);
        const QString index = QString::number(position);
        const Outcome outcome = runOnOne("list.remove", {{"mode", 0}, {"index", index}}, before);
        if (position < 0 || position >= before.size()) {
            expectSkipped(outcome, before, QString("[ListRemove] 索引越界： \"%1\" ，已跳过").arg(index));
            return;
        }
        QVariantList expected;
        for (int i = 0; i < before.size(); ++i) {
            if (i != position)
                expected << before.at(i);
        }
        expectWritten(outcome, expected);
    }));
}

void TestProperties::removeByValue()
{
    QVERIFY(rc::check("remove takes the first equal element", [] {
        const QVariantList before = *list();
        const QVariant item = *element();
        VariableScope scope;
        scope.set("a", before);
        scope.set("item", item);
        const int mode = *rc::gen::elementOf(std::vector<int>{1, 2, -1});
        const Outcome outcome =
            run("list.remove", {{"targetVar", "a"}, {"mode", mode}, {"value", "$item"}}, scope);
        QVariantList expected;
        bool isFound = false;
        for (const QVariant &candidate : before) {
            if (!isFound && candidate == item)
                isFound = true;
            else
                expected << candidate;
        }
        if (isFound)
            expectWritten(outcome, expected);
        else
            expectSkipped(outcome, before, "[ListRemove] 未找到匹配项： \"$item\" ，已跳过");
    }));
}

void TestProperties::get()
{
    QVERIFY(rc::check("get copies one element", [] {
        const QVariantList before = *list();
        const int position = *rc::gen::inRange(-3, before.size() + 3);
        const QString index = QString::number(position);
        VariableScope scope;
        scope.set("source", before);
        scope.declare("table", VarType::Table);
        const Outcome outcome =
            run("list.get", {{"sourceVar", "source"}, {"index", index}, {"targetVar", "table"}}, scope);
        expect(scope.get("source").toList(), before);
        if (position < 0 || position >= before.size()) {
            expectSkipped(outcome, {}, QString("[ListGet] 索引越界： \"%1\" ，已跳过").arg(index));
            return;
        }
        const QVariant element = before.at(position);
        if (element.userType() != QMetaType::QVariantList)
            expectWritten(outcome, {});
        else if (!element.toList().isEmpty()
                 && element.toList().first().userType() == QMetaType::QVariantList)
            expectWritten(outcome, element.toList());
        else
            expectWritten(outcome, QVariantList() << element);
    }));
}

void TestProperties::clear()
{
    QVERIFY(
        rc::check("clear leaves nothing", [] { expectWritten(runOnOne("list.clear", {}, *list()), {}); }));
}

void TestProperties::sort()
{
    QVERIFY(rc::check("sort keeps the elements; descending mirrors ascending", [] {
        const QVariantList before = *list();
        const Outcome ascending = runOnOne("list.sort", {{"ascending", true}}, before);
        QVariantList mirrored = ascending.written;
        std::reverse(mirrored.begin(), mirrored.end());
        expectWritten(runOnOne("list.sort", {{"ascending", false}}, before), mirrored);

        QStringList elementsBefore;
        QStringList elementsAfter;
        for (const QVariant &element : before)
            elementsBefore += shown(element);
        for (const QVariant &element : ascending.written)
            elementsAfter += shown(element);
        elementsBefore.sort();
        elementsAfter.sort();
        RC_ASSERT(elementsAfter == elementsBefore);
    }));
}

void TestProperties::sortOfOneKind()
{
    QVERIFY(rc::check("sort orders numbers, or texts, and keeps ties in order", [] {
        const bool numbers = *rc::gen::arbitrary<bool>();
        QVariantList before;
        for (const QVariant &element : *list()) {
            const bool isNan = std::isnan(element.toDouble()) && isNumber(element);
            if (isNumber(element) == numbers && !isNan)
                before << element;
        }
        QVariantList expected;
        for (const QVariant &element : qAsConst(before)) {
            int place = expected.size();
            while (place > 0 && comesBefore(element, expected.at(place - 1)))
                --place;
            expected.insert(place, element);
        }
        expectWritten(runOnOne("list.sort", {}, before), expected);
    }));
}

void TestProperties::reverse()
{
    QVERIFY(rc::check("reverse turns the list round", [] {
        const QVariantList before = *list();
        QVariantList expected;
        for (int i = before.size(); i > 0; --i)
            expected << before.at(i - 1);
        const Outcome outcome = runOnOne("list.reverse", {}, before);
        expectWritten(outcome, expected);
        expectWritten(runOnOne("list.reverse", {}, outcome.written), before);
    }));
}

void TestProperties::dedup()
{
    QVERIFY(rc::check("dedup keeps first occurrences", [] {
        const QVariantList before = *list();
        QVariantList expected;
        for (const QVariant &element : before) {
            if (!occursIn(element, expected))
                expected << element;
        }
        expectWritten(runOnOne("list.dedup", {}, before), expected);
    }));
}

void TestProperties::merge()
{
    QVERIFY(rc::check("merge puts one list after the other", [] {
        const QVariantList a = *list();
        const QVariantList b = *list();
        QVariantList expected;
        for (const QVariantList &source : {a, b}) {
            for (const QVariant &element : source)
                expected << element;
        }
        for (const char *target : {"a", "b", "c"})
            expectWritten(runOnTwo("list.merge", a, b, target), expected);
    }));
}

void TestProperties::intersect()
{
    QVERIFY(rc::check("intersect keeps what both have, once", [] {
        const QVariantList a = *list();
        const QVariantList b = *list();
        QVariantList expected;
        for (const QVariant &element : a) {
            if (occursIn(element, b) && !occursIn(element, expected))
                expected << element;
        }
        for (const char *target : {"a", "b", "c"})
            expectWritten(runOnTwo("list.intersect", a, b, target), expected);
    }));
}

void TestProperties::subtract()
{
    QVERIFY(rc::check("subtract drops what the other list has", [] {
        const QVariantList a = *list();
        const QVariantList b = *list();
        QVariantList expected;
        for (const QVariant &element : a) {
            if (!occursIn(element, b))
                expected << element;
        }
        for (const char *target : {"a", "b", "c"})
            expectWritten(runOnTwo("list.subtract", a, b, target), expected);
    }));
}

QTEST_GUILESS_MAIN(TestProperties)
#include "tst_properties.moc"
