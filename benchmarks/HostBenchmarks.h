#pragma once

/// The names of the benchmarks of the host's side.
namespace HostBenchmarks
{
constexpr const char *loading = "load the plug-in and create its prototypes";
constexpr const char *script = "run a script of 100,000 steps that have nothing to do";
constexpr int scriptSteps = 100000;
} // namespace HostBenchmarks

/// Registers them.
void registerHostBenchmarks();
