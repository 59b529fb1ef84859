#include "Results.h"

#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <cstdio>

namespace
{
double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::optional<double> counter(const benchmark::BenchmarkReporter::Run &run, const char *name)
{
    const auto found = run.counters.find(name);
    return found == run.counters.end() ? std::nullopt : std::optional<double>(found->second.value);
}
} // namespace

bool Results::ReportContext(const Context &)
{
    return true;
}

void Results::ReportRuns(const std::vector<Run> &runs)
{
    std::vector<double> times;
    for (const Run &run : runs) {
        if (run.error_occurred) {
            std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            m_hasErrors = true;
            return;
        }
        if (run.run_type == Run::RT_Iteration)
            times.push_back(run.cpu_accumulated_time * 1e9 / double(run.iterations));
    }
    if (times.empty())
        return; // Google Benchmark's own averages
    const Run &first = runs.front();
    m_measurements[first.run_name.function_name] = {median(times), counter(first, "allocations"),
                                                    counter(first, "bytes")};
}

std::optional<Measurement> Results::find(const std::string &name) const
{
    const auto found = m_measurements.find(name);
    return found == m_measurements.end() ? std::nullopt : std::optional<Measurement>(found->second);
}

std::optional<Measurement> Results::step(const Case &oneCase) const
{
    return find(oneCase.name(Variant::Step));
}

std::optional<double> Results::ratio(const std::string &dividend, const std::string &divisor) const
{
    const auto upper = find(dividend);
    const auto lower = find(divisor);
    return upper && lower ? std::optional<double>(upper->nanoseconds / lower->nanoseconds) : std::nullopt;
}

std::optional<double> Results::timesFloor(const Case &oneCase) const
{
    return ratio(oneCase.name(Variant::Step), oneCase.name(Variant::Floor));
}

std::optional<double> Results::timesAsFastAsPlain(const Case &oneCase) const
{
    return ratio(oneCase.name(Variant::Plain), oneCase.name(Variant::Step));
}

std::optional<double> Results::speedAtO2(const Case &oneCase) const
{
    return ratio(oneCase.name(Variant::Step), oneCase.name(Variant::Build2));
}

QJsonArray Results::toJson() const
{
    QJsonArray array;
    for (const auto &measured : m_measurements) {
        QJsonObject object{{"name", QString::fromStdString(measured.first)},
                           {"nanoseconds", measured.second.nanoseconds}};
        if (measured.second.allocations)
            object.insert("allocations", *measured.second.allocations);
        if (measured.second.bytes)
            object.insert("bytes", *measured.second.bytes);
        array.append(object);
    }
    return array;
}
