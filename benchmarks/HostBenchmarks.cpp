#include "HostBenchmarks.h"

#include "host/plugins/PluginLoader.h"
#include "host/running/ScriptRunner.h"
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
        if (!loaded.plugin) {
            state.SkipWithError(qPrintable(loaded.reason));
            return;
        }
    }
}

StepHost::Script makeScript()
{
    StepHost::Script script;
    script.variables = {{"list", VarType::List, QVariantList{1, 2, 3}}, {"element", VarType::Int, 0}};
    for (int i = 0; i < HostBenchmarks::scriptSteps; ++i) {
        auto step = std::make_unique<ListGetOperation>();
        step->setSourceVar("list");
        step->setIndex("1");
        step->setTargetVar("element");
        script.steps.push_back({std::move(step), true});
    }
    return script;
}

void measureScript(benchmark::State &state)
{
    const StepHost::Script script = makeScript();
    VariableScope scope;
    StepHost::declareVariables(script, scope);
    for (auto _ : state) {
        const StepHost::RunResult result = StepHost::runScript(script, scope);
        if (result.count(StepHost::StepOutcome::Wrote) != HostBenchmarks::scriptSteps)
            state.SkipWithError("a step did not write");
    }
}

void measureLoop(benchmark::State &state)
{
    const StepHost::Script script = makeScript();
    VariableScope scope;
    StepHost::declareVariables(script, scope);
    for (const StepHost::ScriptStep &step : script.steps)
        step.operation->setVariableScope(&scope);
    for (auto _ : state) {
        for (const StepHost::ScriptStep &step : script.steps)
            step.operation->doOperation();
    }
}
} // namespace

void registerHostBenchmarks()
{
    benchmark::RegisterBenchmark(HostBenchmarks::loading, measureLoading);
    benchmark::RegisterBenchmark(HostBenchmarks::script, measureScript);
    benchmark::RegisterBenchmark(HostBenchmarks::loop, measureLoop);
}
