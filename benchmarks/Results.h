#pragma once

#include "Case.h"

#include <benchmark/benchmark.h>

#include <QJsonArray>

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What was measured under one name.
struct Measurement
{
    double nanoseconds = 0; ///< Median of the repetitions: processor time of one run.
    std::optional<double> allocations; ///< Blocks asked for in one run; none where it is not known.
    std::optional<double> bytes; ///< The most that was held at a time in one run.
};

/// Collects what Google Benchmark measures. What was not measured gives no value.
class Results : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;

    /// What was measured under \a name.
    std::optional<Measurement> find(const std::string &name) const;

    /// What was measured for the step itself.
    std::optional<Measurement> step(const Case &oneCase) const;

    /// The time of \a dividend divided by that of \a divisor.
    std::optional<double> ratio(const std::string &dividend, const std::string &divisor) const;

    /// How many times the floor the step takes.
    std::optional<double> timesFloor(const Case &oneCase) const;

    /// How many times as fast as the plain rule the step is.
    std::optional<double> timesAsFastAsPlain(const Case &oneCase) const;

    /// The speed of the step compiled at -O2, in that of the step compiled at -O3.
    std::optional<double> speedAtO2(const Case &oneCase) const;

    /// All measurements.
    QJsonArray toJson() const;

    /// Whether a benchmark reported an error.
    bool hasErrors() const
    {
        return m_hasErrors;
    }

private:
    std::map<std::string, Measurement> m_measurements;
    bool m_hasErrors = false;
};
