#include "Targets.h"

#include "Growth.h"
#include "HostBenchmarks.h"

#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace
{
constexpr int scanSize = 10000;
constexpr int otherSize = 100000;
constexpr double sameSpeed = 0.95; // what two medians of the same thing differ by

using Figures = std::vector<std::optional<double>>; // without a value where nothing was measured

std::string withUnit(double figure, const std::string &unit)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.3g", figure);
    return text + unit;
}

template<typename IsWorse>
std::optional<double> worst(const Figures &figures, IsWorse isWorse)
{
    std::optional<double> result;
    for (const std::optional<double> &figure : figures) {
        if (figure && (!result || isWorse(*figure, *result)))
            result = figure;
    }
    return result;
}

Target atLeast(double least, const std::string &unit, const std::string &text, const Figures &figures)
{
    const auto figure = worst(figures, std::less<>());
    return {text + ": at least " + withUnit(least, unit), unit, figure, figure && *figure >= least};
}

Target atMost(double most, const std::string &unit, const std::string &text, const Figures &figures)
{
    const auto figure = worst(figures, std::greater<>());
    return {text + ": at most " + withUnit(most, unit), unit, figure, figure && *figure <= most};
}

Target scanTarget(const std::string &step, const std::string &elements, const std::vector<Kind> &kinds,
                  double least, const Results &results)
{
    Figures figures;
    for (const Kind kind : kinds)
        figures.push_back(results.timesAsFastAsPlain({step, kind, Shape::Random, scanSize}));
    return atLeast(least, " times", step + ", " + elements + ", as fast as plain", figures);
}

Target sortTarget(Kind kind, double least, const Results &results)
{
    return atLeast(least, " times", std::string("sort, ") + nameOf(kind) + ", as fast as plain",
                   {results.timesAsFastAsPlain({"sort", kind, Shape::Random, otherSize})});
}

Target sortShapeTarget(Shape shape, const Results &results)
{
    Figures figures;
    for (const Kind kind : {Kind::Int, Kind::Double, Kind::Text, Kind::Mixed, Kind::Nested}) {
        figures.push_back(results.ratio(Case{"sort", kind, shape, otherSize}.name(Variant::Step),
                                        Case{"sort", kind, Shape::Random, otherSize}.name(Variant::Step)));
    }
    return atMost(1 / sameSpeed, " times", std::string("sort, ") + nameOf(shape) + ", the time of random",
                  figures);
}

Target sortMemoryTarget(const std::vector<Case> &cases, const Results &results)
{
    // A list holds a pointer and a block for each element.
    constexpr double listBytes = otherSize / 2.0 * double(sizeof(void *) + sizeof(QVariant));
    Figures figures;
    for (const Case &oneCase : cases) {
        if (oneCase.step != "sort" || oneCase.size != otherSize)
            continue;
        const auto step = results.step(oneCase);
        const auto floor = results.find(oneCase.name(Variant::Floor));
        if (step && floor && step->bytes && floor->bytes)
            figures.push_back((*step->bytes - *floor->bytes) / listBytes);
    }
    return atMost(1, " times", "sort, extra memory, a list of half the length", figures);
}

Target floorTarget(const std::string &step, const Results &results)
{
    Figures figures;
    for (const Kind kind : {Kind::Int, Kind::Double, Kind::Text, Kind::Mixed, Kind::Nested})
        figures.push_back(results.timesFloor({step, kind, Shape::Random, otherSize}));
    return atMost(1.3, " times", step + ", the floor", figures);
}

template<typename IsMeant>
Target microsecondTarget(const std::string &text, const std::vector<Case> &cases, IsMeant isMeant,
                         const Results &results)
{
    Figures figures;
    for (const Case &oneCase : cases) {
        const auto step = results.step(oneCase);
        if (step && isMeant(oneCase))
            figures.push_back(step->nanoseconds / 1e3);
    }
    return atMost(1, " us", text, figures);
}

Target growthTarget(Cost cost, double most, const std::vector<Case> &cases, const Results &results)
{
    Figures figures;
    for (const Growth &growth : fitGrowth(cases, results)) {
        if (growth.expected == cost)
            figures.push_back(growth.exponent);
    }
    return atMost(most, "", std::string("exponent of what costs ") + nameOf(cost), figures);
}

Target loadingTarget(const Results &results)
{
    const auto loading = results.find(HostBenchmarks::loading);
    return atMost(2, " ms", HostBenchmarks::loading,
                  {loading ? std::optional(loading->nanoseconds / 1e6) : std::nullopt});
}

Target scriptTarget(const Results &results)
{
    const auto script = results.find(HostBenchmarks::script);
    Figures figures;
    if (script)
        figures.push_back(script->nanoseconds / HostBenchmarks::scriptSteps / 1e3);
    return atMost(2, " us", "the host's part in a step of a script", figures);
}

constexpr const char *scanSteps[] = {"dedup", "intersect", "subtract"};

Target buildTarget(const Results &results)
{
    Figures figures;
    for (const char *step : scanSteps) {
        for (const Kind kind : {Kind::Int, Kind::Double, Kind::Text, Kind::File, Kind::Mixed, Kind::Nested,
                                Kind::Row, Kind::Long})
            figures.push_back(results.speedAtO2({step, kind, Shape::Random, scanSize}));
    }
    return atLeast(0.9, " times", "scans, compiled at -O2, as fast as at -O3", figures);
}

Target longListTarget(const Results &results)
{
    const auto step = results.step({"dedup", Kind::Text, Shape::Random, 100000});
    return atMost(0.45, " s", "dedup, 100,000 texts",
                  {step ? std::optional(step->nanoseconds / 1e9) : std::nullopt});
}

Target scanMemoryTarget(const Results &results)
{
    Figures figures;
    for (const Kind kind : {Kind::Int, Kind::Double, Kind::Text, Kind::File, Kind::Mixed, Kind::Nested,
                            Kind::Row, Kind::Long, Kind::Date}) {
        const Case oneCase{"dedup", kind, Shape::Random, scanSize};
        const auto step = results.step(oneCase);
        const auto floor = results.find(oneCase.name(Variant::Floor));
        if (step && floor && step->bytes && floor->bytes)
            figures.push_back((*step->bytes - *floor->bytes) / scanSize);
    }
    return atMost(4.1, " bytes", "dedup, memory beside the list, for each element", figures); // and a rest
}
} // namespace

std::vector<Target> targets(const std::vector<Case> &cases, const Results &results)
{
    std::vector<Target> all;
    for (const char *step : scanSteps) {
        all.push_back(scanTarget(step, "int", {Kind::Int}, 280, results));
        all.push_back(scanTarget(step, "double", {Kind::Double}, 220, results));
        all.push_back(
            scanTarget(step, "text, also with shared ends", {Kind::Text, Kind::File}, 140, results));
        all.push_back(scanTarget(step, "int and text mixed", {Kind::Mixed}, 500, results));
        all.push_back(scanTarget(step, "rows, one-element lists", {Kind::Row, Kind::Nested}, 150, results));
        all.push_back(scanTarget(step, "dates, 64-bit integers", {Kind::Date, Kind::Long}, 50, results));
        all.push_back(scanTarget(step, "invalid", {Kind::Invalid}, sameSpeed, results));
    }
    all.push_back(buildTarget(results));
    all.push_back(longListTarget(results));
    all.push_back(scanMemoryTarget(results));
    all.push_back(sortTarget(Kind::Int, 4, results));
    all.push_back(sortTarget(Kind::Double, 1.8, results));
    all.push_back(sortTarget(Kind::Text, 2, results));
    all.push_back(sortTarget(Kind::Mixed, sameSpeed, results));
    all.push_back(sortShapeTarget(Shape::Sorted, results));
    all.push_back(sortShapeTarget(Shape::Reversed, results));
    all.push_back(sortShapeTarget(Shape::ManyEqual, results));
    all.push_back(sortMemoryTarget(cases, results));
    for (const char *step : {"add", "remove by position", "remove by value", "reverse", "merge", "clear"})
        all.push_back(floorTarget(step, results));
    all.push_back(microsecondTarget(
        "get, at any size", cases,
        [](const Case &oneCase) { return oneCase.step == "get" && oneCase.size > 0; }, results));
    all.push_back(growthTarget(Cost::Constant, 0.1, cases, results));
    all.push_back(growthTarget(Cost::Linear, 1.2, cases, results)); // caches add to what the rules say
    all.push_back(growthTarget(Cost::Sorting, 1.35, cases, results));
    all.push_back(growthTarget(Cost::Product, 2.1, cases, results));
    all.push_back(microsecondTarget(
        "a step on an empty list", cases, [](const Case &oneCase) { return oneCase.size == 0; }, results));
    all.push_back(loadingTarget(results));
    all.push_back(scriptTarget(results));
    return all;
}

void printTargets(const std::vector<Target> &targets)
{
    for (const Target &target : targets) {
        const char *verdict = target.isReached ? "reached" : "not reached";
        if (!target.figure)
            verdict = "not measured";
        const std::string figure = target.figure ? withUnit(*target.figure, target.unit) : "-";
        std::printf("%-12s  %-12s  %s\n", verdict, figure.c_str(), target.text.c_str());
    }
}

QJsonArray toJson(const std::vector<Target> &targets)
{
    QJsonArray array;
    for (const Target &target : targets) {
        QJsonObject object{{"target", QString::fromStdString(target.text)}, {"reached", target.isReached}};
        if (target.figure)
            object.insert("figure", *target.figure);
        array.append(object);
    }
    return array;
}
