#include "Table.h"

#include "Growth.h"

#include <cstdio>

namespace
{
std::string timeText(double nanoseconds)
{
    static const struct
    {
        double nanoseconds;
        const char *format;
    } units[] = {{1, "%.0f ns"}, {1e3, "%.1f us"}, {1e6, "%.2f ms"}, {1e9, "%.2f s"}};
    int unit = 0;
    while (unit < 3 && nanoseconds >= units[unit + 1].nanoseconds)
        ++unit;
    char text[64];
    std::snprintf(text, sizeof text, units[unit].format, nanoseconds / units[unit].nanoseconds);
    return text;
}

std::string ratioText(const std::optional<double> &ratio)
{
    if (!ratio)
        return "-";
    char text[64];
    std::snprintf(text, sizeof text, *ratio < 10 ? "%.2f" : "%.0f", *ratio);
    return text;
}

std::string smallText(const std::optional<double> &figure)
{
    if (!figure)
        return "-";
    char text[64];
    std::snprintf(text, sizeof text, *figure < 1 ? "%.3f" : "%.1f", *figure);
    return text;
}
} // namespace

void printTableHead()
{
    std::printf("%-18s %-8s %-10s %8s %10s %8s %8s %8s %8s %12s\n", "step", "elements", "order", "size",
                "time", "/ floor", "plain /", "O2 : O3", "ns each", "allocations");
}

void printTableRow(const Case &oneCase, const Results &results)
{
    const auto step = results.step(oneCase);
    if (!step)
        return;
    std::optional<double> allocationsPerElement = step->allocations;
    if (allocationsPerElement && oneCase.size > 0)
        *allocationsPerElement /= oneCase.size;
    std::optional<double> nanosecondsEach;
    if (oneCase.comparisons() > 0)
        nanosecondsEach = step->nanoseconds / oneCase.comparisons();
    std::printf("%-18s %-8s %-10s %8d %10s %8s %8s %8s %8s %12s\n", oneCase.step.c_str(),
                nameOf(oneCase.kind), nameOf(oneCase.shape), oneCase.size,
                timeText(step->nanoseconds).c_str(), ratioText(results.timesFloor(oneCase)).c_str(),
                ratioText(results.timesAsFastAsPlain(oneCase)).c_str(),
                ratioText(results.speedAtO2(oneCase)).c_str(), smallText(nanosecondsEach).c_str(),
                ratioText(allocationsPerElement).c_str());
    std::fflush(stdout);
}

void printGrowth(const std::vector<Case> &cases, const Results &results)
{
    std::printf("%-18s %-8s %-10s %8s %10s\n", "step", "elements", "order", "cost", "fit");
    for (const Growth &growth : fitGrowth(cases, results)) {
        std::printf("%-18s %-8s %-10s %8s   n ^ %.2f\n", growth.example.step.c_str(),
                    nameOf(growth.example.kind), nameOf(growth.example.shape), nameOf(growth.expected),
                    growth.exponent);
    }
}
