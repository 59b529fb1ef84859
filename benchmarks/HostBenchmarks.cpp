#include "HostBenchmarks.h"

#include "host/plugins/PluginLoader.h"
#include "host/running/ScriptRunner.h"
#include "operations/ListClearOperation.h"
#include "operations/ListGetOperation.h"
#include "tests/support/TestPaths.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace
{
void measureLoading(benchmark::State &state)
{
    for (auto _ : state) {
        const auto loaded = StepHost::loadPlugin(TestPaths::listPlugin());
        if (!loaded) {
            state.SkipWithError(qPrintable(loaded.error().reason));
            return;
        }
    }
}

// Steps without a name return at once, so that what is measured is the host's part.
void measureScript(benchmark::State &state)
{
    StepHost::Script script;
    for (int i = 0; i < HostBenchmarks::scriptSteps; ++i)
        script.steps.push_back({std::make_unique<ListClearOperation>(), true});
    VariableScope scope;
    for (auto _ : state) {
        const StepHost::RunResult result = StepHost::runScript(script, scope);
        if (result.count(StepHost::StepOutcome::Skipped) != HostBenchmarks::scriptSteps)
            state.SkipWithError("a step did not run, or wrote");
    }
}
} // namespace

void registerHostBenchmarks()
{
    benchmark::RegisterBenchmark(HostBenchmarks::loading, measureLoading);
    benchmark::RegisterBenchmark(HostBenchmarks::script, measureScript);
}
