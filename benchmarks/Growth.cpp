#include "Growth.h"

#include <cmath>

namespace
{
constexpr int leastSize = 1000; // below, what a step costs apart from its lists counts too much

// The slope of the line that fits the points (x, y) best.
class LineFit
{
public:
    void add(double x, double y)
    {
        ++m_count;
        m_x += x;
        m_y += y;
        m_xx += x * x;
        m_xy += x * y;
    }

    int count() const
    {
        return m_count;
    }

    double slope() const
    {
        return (m_count * m_xy - m_x * m_y) / (m_count * m_xx - m_x * m_x);
    }

private:
    int m_count = 0;
    double m_x = 0;
    double m_y = 0;
    double m_xx = 0;
    double m_xy = 0;
};

// With few values in a list, the product is that of the length and a constant.
Cost expectedCost(const Case &oneCase)
{
    return oneCase.cost == Cost::Product && oneCase.shape == Shape::ManyEqual ? Cost::Linear : oneCase.cost;
}
} // namespace

std::vector<Growth> fitGrowth(const std::vector<Case> &cases, const Results &results)
{
    std::vector<Growth> growths;
    LineFit fit;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto step = results.step(cases[i]);
        if (step && cases[i].size >= leastSize)
            fit.add(std::log(cases[i].size), std::log(step->nanoseconds));
        if (i + 1 < cases.size() && cases[i + 1].family() == cases[i].family())
            continue;
        if (fit.count() > 1)
            growths.push_back({cases[i], expectedCost(cases[i]), fit.slope()});
        fit = LineFit();
    }
    return growths;
}

const char *nameOf(Cost cost)
{
    static const char *const names[] = {"constant", "n", "n log n", "n * n"};
    return names[static_cast<int>(cost)];
}
