#pragma once

#include "Case.h"

#include <vector>

/// The cases of all steps: \a targetsOnly only those that a target asks about.
std::vector<Case> stepCases(bool targetsOnly);

/// Whether the step and its plain rule leave the same variables behind.
bool stepDoesWhatThePlainRuleDoes(const Case &oneCase);

/// Registers the benchmarks of \a oneCase, one for each variant that is not too slow.
void registerBenchmarks(const Case &oneCase);
