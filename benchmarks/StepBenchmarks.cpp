#include "StepBenchmarks.h"

#include "hostapi/IOperationPlugin.h"
#include "operations/ListAddOperation.h"
#include "operations/ListClearOperation.h"
#include "operations/ListDedupOperation.h"
#include "operations/ListFunctions.h"
#include "operations/ListGetOperation.h"
#include "operations/ListIntersectOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"
#include "operations/ListReverseOperation.h"
#include "operations/ListSortOperation.h"
#include "operations/ListSubtractOperation.h"
#include "tests/support/Allocations.h"
#include "tests/support/ReferenceSteps.h"

#include <benchmark/benchmark.h>

#include <QMetaProperty>
#include <QPluginLoader>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace
{
struct Bench
{
    /// Holds the lists "a", "b" and "a and b", "last", the last element of "a", and the list "out" and the
    /// variable "element" to write to.
    VariableScope scope;
    QVariantList a;
    QVariantList b;
    std::unique_ptr<Operation> step;
    std::unique_ptr<Operation> stepAtO2; ///< The same from the other build; null where there is none.
};

using Work = std::function<void(Bench &)>;
using Setting = std::pair<const char *, QVariant>;

struct StepBench
{
    std::string name;
    Cost cost;
    std::function<std::unique_ptr<Operation>(const Bench &)> create;
    Work floor;
    Work plain;
    bool ownsItsList = false; ///< Whether nobody else holds "a" when the step runs.
};

// The step of the other build that has the settings of \a step.
std::unique_ptr<Operation> stepOfOtherBuild(const Operation &step)
{
#ifdef STEPS_AT_O2_FILE
    static QPluginLoader loader(STEPS_AT_O2_FILE);
    auto *const plugin = qobject_cast<IOperationPlugin *>(loader.instance());
    if (!plugin)
        qFatal("bench: %s", qPrintable(loader.errorString()));
    static const QList<Operation *> prototypes = plugin->createPrototypes();
    const auto prototype =
        std::find_if(prototypes.cbegin(), prototypes.cend(),
                     [&step](const Operation *other) { return other->typeId() == step.typeId(); });
    std::unique_ptr<Operation> other((*prototype)->clone(nullptr));
    const QMetaObject *const meta = step.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        other->setProperty(meta->property(i).name(), meta->property(i).read(&step));
    return other;
#else
    Q_UNUSED(step)
    return nullptr;
#endif
}

template<typename Step>
std::unique_ptr<Operation> configured(const std::vector<Setting> &settings)
{
    auto step = std::make_unique<Step>();
    for (const Setting &setting : settings)
        step->setProperty(setting.first, setting.second);
    return step;
}

template<typename Step>
std::unique_ptr<Operation> changingA(const Bench &)
{
    return configured<Step>({{"targetVar", "a"}});
}

template<typename Step>
std::unique_ptr<Operation> combiningAAndB(const Bench &)
{
    return configured<Step>({{"listA", "a"}, {"listB", "b"}, {"targetVar", "out"}});
}

template<typename Change>
Work change(const char *source, const char *target, Change change)
{
    return [=](Bench &bench) {
        QVariantList list;
        readListVariable(&bench.scope, source, list);
        change(list, bench);
        writeListVariable(&bench.scope, target, list);
    };
}

Work copy(const char *source, const char *target)
{
    return change(source, target, [](QVariantList &list, const Bench &) { list.detach(); });
}

Work combine(QVariantList (*rule)(const QVariantList &, const QVariantList &))
{
    return [=](Bench &bench) {
        QVariantList a;
        QVariantList b;
        readListVariable(&bench.scope, "a", a);
        readListVariable(&bench.scope, "b", b);
        writeListVariable(&bench.scope, "out", rule(a, b));
    };
}

void getMiddle(Bench &bench)
{
    QVariantList list;
    readListVariable(&bench.scope, "a", list);
    if (list.isEmpty())
        return;
    const VarType type = bench.scope.typeOf("element");
    bench.scope.set("element", convertToVarType(list.at(list.size() / 2), type, nullptr));
}

QVariant middle(const Bench &bench)
{
    return QString::number(bench.a.size() / 2);
}

const std::vector<StepBench> &stepBenches()
{
    static const std::vector<StepBench> benches = {
        {"add", Cost::Linear,
         [](const Bench &) {
             return configured<ListAddOperation>({{"targetVar", "a"}, {"value", "$last"}});
         },
         copy("a", "a"),
         change(
             "a", "a",
             [](QVariantList &list, const Bench &bench) { PlainSteps::add(list, bench.scope.get("last")); })},
        {"remove by position", Cost::Linear,
         [](const Bench &bench) {
             return configured<ListRemoveOperation>({{"targetVar", "a"}, {"index", middle(bench)}});
         },
         copy("a", "a"),
         change("a", "a",
                [](QVariantList &list, const Bench &) {
                    if (!list.isEmpty())
                        PlainSteps::removeAt(list, list.size() / 2);
                })},
        {"remove by value", Cost::Linear,
         [](const Bench &) {
             return configured<ListRemoveOperation>({{"targetVar", "a"}, {"mode", 1}, {"value", "$last"}});
         },
         copy("a", "a"),
         change("a", "a",
                [](QVariantList &list, const Bench &bench) {
                    PlainSteps::removeValue(list, bench.scope.get("last"));
                })},
        {"get", Cost::Constant,
         [](const Bench &bench) {
             return configured<ListGetOperation>(
                 {{"sourceVar", "a"}, {"index", middle(bench)}, {"targetVar", "element"}});
         },
         getMiddle, getMiddle},
        {"clear", Cost::Linear, changingA<ListClearOperation>,
         [](Bench &bench) { bench.scope.set("a", QVariantList()); },
         change("a", "a", [](QVariantList &list, const Bench &) { list.clear(); }), true},
        {"sort", Cost::Sorting, changingA<ListSortOperation>, copy("a", "a"),
         change("a", "a", [](QVariantList &list, const Bench &) { PlainSteps::sort(list); })},
        {"reverse", Cost::Linear, changingA<ListReverseOperation>, copy("a", "a"),
         change("a", "a", [](QVariantList &list, const Bench &) { PlainSteps::reverse(list); })},
        {"merge", Cost::Linear, combiningAAndB<ListMergeOperation>, copy("a and b", "out"),
         combine(PlainSteps::merge)},
        {"dedup", Cost::Product, changingA<ListDedupOperation>, copy("a", "a"),
         change("a", "a", [](QVariantList &list, const Bench &) { list = PlainSteps::dedup(list); })},
        {"intersect", Cost::Product, combiningAAndB<ListIntersectOperation>, copy("a", "out"),
         combine(PlainSteps::intersect)},
        {"subtract", Cost::Product, combiningAAndB<ListSubtractOperation>, copy("a", "out"),
         combine(PlainSteps::subtract)},
    };
    return benches;
}

const StepBench &benchOf(const Case &oneCase)
{
    const auto &benches = stepBenches();
    return *std::find_if(benches.begin(), benches.end(),
                         [&](const StepBench &bench) { return bench.name == oneCase.step; });
}

VarType typeOfElement(Kind kind)
{
    switch (kind) {
    case Kind::Int:
        return VarType::Int;
    case Kind::Double:
        return VarType::Double;
    case Kind::Nested:
    case Kind::Row:
        return VarType::List;
    case Kind::Long:
        return VarType::Int;
    default:
        return VarType::String;
    }
}

std::unique_ptr<Bench> makeBench(const Case &oneCase)
{
    auto bench = std::make_unique<Bench>();
    bench->a = makeList(oneCase.kind, oneCase.shape, oneCase.size);
    bench->b = makeList(oneCase.kind, oneCase.shape, oneCase.size, oneCase.shape == Shape::ManyEqual ? 0 : 1);
    bench->scope.set("a", bench->a);
    bench->scope.set("b", bench->b);
    bench->scope.set("a and b", bench->a + bench->b);
    bench->scope.declare("out", VarType::List);
    bench->scope.declare("element", typeOfElement(oneCase.kind));
    bench->scope.set("last", bench->a.isEmpty() ? QVariant(0) : bench->a.constLast());
    bench->step = benchOf(oneCase).create(*bench);
    bench->step->setVariableScope(&bench->scope);
    bench->stepAtO2 = stepOfOtherBuild(*bench->step);
    if (bench->stepAtO2)
        bench->stepAtO2->setVariableScope(&bench->scope);
    return bench;
}

// The lists of the last case; making them takes longer than most steps.
Bench &benchFor(const Case &oneCase)
{
    static std::string name;
    static std::unique_ptr<Bench> bench;
    if (name != oneCase.name()) {
        bench = makeBench(oneCase);
        name = oneCase.name();
    }
    return *bench;
}

Work workOf(const Case &oneCase, Variant variant)
{
    switch (variant) {
    case Variant::Step:
        break;
    case Variant::Floor:
        return benchOf(oneCase).floor;
    case Variant::Plain:
        return benchOf(oneCase).plain;
    case Variant::Build2:
        return [](Bench &bench) { bench.stepAtO2->doOperation(); };
    }
    return [](Bench &bench) { bench.step->doOperation(); };
}

// Puts "a" back in before each run.
void restore(Bench &bench, bool ownsItsList)
{
    QVariantList list = bench.a;
    if (ownsItsList)
        list.detach();
    bench.scope.set("a", list);
}

void measure(benchmark::State &state, const Case &oneCase, Variant variant)
{
    Bench &bench = benchFor(oneCase);
    const Work work = workOf(oneCase, variant);
    const bool ownsItsList = benchOf(oneCase).ownsItsList;
    for (auto _ : state) {
        restore(bench, ownsItsList);
        work(bench);
    }
    if (variant == Variant::Plain || variant == Variant::Build2)
        return;
    restore(bench, ownsItsList);
    const Allocations allocations = allocationsOf([&] { work(bench); });
    if (allocations.isKnown) {
        state.counters["allocations"] = double(allocations.count);
        state.counters["bytes"] = double(allocations.mostBytes);
    }
}

std::vector<QVariant> resultsOf(const Case &oneCase, Variant variant)
{
    const auto bench = makeBench(oneCase);
    workOf(oneCase, variant)(*bench);
    return {bench->scope.get("a"), bench->scope.get("out"), bench->scope.get("element")};
}

bool isTooSlow(const Case &oneCase, Variant variant)
{
    return oneCase.cost == Cost::Product && oneCase.shape != Shape::ManyEqual && oneCase.size > 10000
        && variant == Variant::Plain;
}

// What compilers make of the loops shows in long lists that are all different.
bool isForOtherBuild(const Case &oneCase)
{
    return (oneCase.cost == Cost::Product || oneCase.cost == Cost::Sorting) && oneCase.shape == Shape::Random
        && oneCase.size >= 10000 && benchFor(oneCase).stepAtO2;
}
} // namespace

std::vector<Case> stepCases(bool targetsOnly)
{
    std::vector<Case> cases;
    for (const StepBench &bench : stepBenches()) {
        const bool isProduct = bench.cost == Cost::Product;
        std::vector<Shape> shapes = {Shape::Random};
        if (isProduct)
            shapes = {Shape::Random, Shape::ManyEqual};
        if (bench.cost == Cost::Sorting)
            shapes = {Shape::Random, Shape::Sorted, Shape::Reversed, Shape::ManyEqual};
        std::vector<Kind> kinds = {Kind::Int, Kind::Double, Kind::Text, Kind::Mixed, Kind::Nested};
        if (isProduct)
            kinds.insert(kinds.end(), {Kind::File, Kind::Row, Kind::Long, Kind::Date, Kind::Invalid});
        std::vector<int> sizes = {0, 10, 1000, 10000, 100000, 1000000};
        if (isProduct || bench.cost == Cost::Sorting)
            sizes.pop_back();
        if (targetsOnly)
            sizes = {0, isProduct ? 10000 : 100000};
        if (targetsOnly && bench.name == "dedup")
            sizes = {0, 10000, 100000};

        for (const Kind kind : kinds) {
            for (const Shape shape : shapes) {
                for (const int size : sizes) {
                    const bool isExtra = kind != Kind::Int && kind != Kind::Double && kind != Kind::Text
                        && kind != Kind::Mixed && kind != Kind::Nested;
                    if ((size == 0 && (kind != Kind::Int || shape != Shape::Random)) // nothing to tell apart
                        || (isExtra && (size != 10000 || shape != Shape::Random))
                        || (targetsOnly && isProduct && shape != Shape::Random)
                        || (targetsOnly && isProduct && size > 10000 && kind != Kind::Text))
                        continue;
                    cases.push_back({bench.name, kind, shape, size, bench.cost});
                }
            }
        }
    }
    return cases;
}

void registerBenchmarks(const Case &oneCase)
{
    for (const Variant variant : {Variant::Step, Variant::Floor, Variant::Plain, Variant::Build2}) {
        if (isTooSlow(oneCase, variant) || (variant == Variant::Build2 && !isForOtherBuild(oneCase)))
            continue;
        auto *registered =
            benchmark::RegisterBenchmark(oneCase.name(variant).c_str(),
                                         [=](benchmark::State &state) { measure(state, oneCase, variant); });
        if (oneCase.cost == Cost::Product && oneCase.size >= 10000)
            registered->Repetitions(3); // seconds each
    }
}

bool stepDoesWhatThePlainRuleDoes(const Case &oneCase)
{
    return resultsOf(oneCase, Variant::Step) == resultsOf(oneCase, Variant::Plain);
}
