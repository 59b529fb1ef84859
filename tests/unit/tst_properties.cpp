#include "hostapi/VariableScope.h"
#include "tests/support/ReferenceSteps.h"
#include "tests/support/ShowValue.h"
#include "tests/support/StepFamily.h"
#include "tests/support/StepTable.h"

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

bool isNumber(const QVariant &value)
{
    return value.canConvert(QMetaType::Double) && value.userType() != QMetaType::QString;
}

// Elements of every kind, or of those alone that sort together.
rc::Gen<QVariantList> list()
{
    const auto all = rc::gen::map(rc::gen::container<std::vector<QVariant>>(element()), toList);
    const auto filtered = [all](bool numbers) {
        return rc::gen::map(all, [numbers](QVariantList list) {
            const auto isOther = [numbers](const QVariant &value) { return isNumber(value) != numbers; };
            list.erase(std::remove_if(list.begin(), list.end(), isOther), list.end());
            return list;
        });
    };
    return rc::gen::weightedOneOf<QVariantList>({{2, all}, {1, filtered(true)}, {1, filtered(false)}});
}

VariableScope scope()
{
    VariableScope scope;
    for (const char *name : {"a", "b", "c"})
        scope.set(name, *list());
    scope.set("item", *element());
    scope.set("int", 5);
    scope.set("double", 2.5);
    scope.set("text", "before");
    scope.set("bool", true);
    scope.declare("table", VarType::Table);
    scope.declare("oddList", VarType::List);
    scope.set("oddList", 5);
    return scope;
}

QVariant value(const StepRow &row, const StepSetting &setting)
{
    using Words = std::vector<QString>;
    if (setting.defaultValue.userType() == QMetaType::Int)
        return *rc::gen::elementOf(std::vector<int>{0, 1, 2, -1});
    if (setting.defaultValue.userType() == QMetaType::Bool)
        return *rc::gen::arbitrary<bool>();
    if (setting.name == "index") {
        const QString position = QString::number(*rc::gen::inRange(-3, 30));
        return *rc::gen::elementOf(
            Words{position, position, position, ' ' + position + '\t', QString(), " ", "x", "1.5"});
    }
    if (row.classInfo.contains({"varname_type_" + setting.name, "scalar"}))
        return *rc::gen::elementOf(Words{"int", "$double", "text", "bool", "c", "table", "table", "missing"});
    if (row.classInfo.contains({"editor_" + setting.name, "VARNAME"}))
        return *rc::gen::weightedOneOf<QString>(
            {{9, rc::gen::elementOf(Words{"a", "b", "c", "$a", "$b"})},
             {1, rc::gen::elementOf(Words{"int", "table", "oddList", "missing", "$", ""})}});
    return *rc::gen::elementOf(
        Words{"$item", "$item", "$item", "$item.Items", "$b.Count", "$missing", "3", "a", " 1 ", ""});
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
    void runsLikeItsReference_data();
    void runsLikeItsReference();
    void descendingMirrorsAscending();
};

void TestProperties::initTestCase()
{
    if (qEnvironmentVariableIsSet("RC_PARAMS"))
        return;
#ifdef QUILLMAP_SANITIZED
    qputenv("RC_PARAMS", "max_success=500 max_size=25");
#else
    qputenv("RC_PARAMS", "max_success=2000 max_size=25");
#endif
}

void TestProperties::runsLikeItsReference_data()
{
    QTest::addColumn<QString>("typeId");
    for (const StepPointer &step : newStepOfEachKind())
        QTest::newRow(step->typeId().toUtf8()) << step->typeId();
}

void TestProperties::runsLikeItsReference()
{
    QFETCH(QString, typeId);
    QVERIFY(rc::check(typeId.toStdString() + " runs like its reference", [&] {
        const VariableScope before = scope();
        const StepPointer step = newStep(typeId);
        for (const StepSetting &setting : stepRow(typeId).settings)
            step->setProperty(setting.name.toUtf8(), value(stepRow(typeId), setting));
        const QString difference = differenceFromReference(*step, before);
        if (!difference.isEmpty())
            RC_FAIL((shown(settingsOf(*step)) + '\n' + difference).toStdString());
    }));
}

// The reference leaves the order of mixed lists open, but not that it is turned round.
void TestProperties::descendingMirrorsAscending()
{
    QVERIFY(rc::check("descending mirrors ascending", [] {
        const QVariantList before = *list();
        QVariantList sorted[2];
        for (const bool ascending : {false, true}) {
            VariableScope scope;
            scope.set("a", before);
            const StepPointer step = newStep("list.sort", {{"targetVar", "a"}, {"ascending", ascending}});
            step->setVariableScope(&scope);
            step->doOperation();
            sorted[ascending] = scope.get("a").toList();
        }
        std::reverse(sorted[0].begin(), sorted[0].end());
        RC_ASSERT(shown(sorted[0]).toStdString() == shown(sorted[1]).toStdString());
    }));
}

QTEST_GUILESS_MAIN(TestProperties)
#include "tst_properties.moc"
