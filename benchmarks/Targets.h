#pragma once

#include "Results.h"

#include <QJsonArray>

#include <string>
#include <vector>

/// A figure that is to be reached.
struct Target
{
    std::string text; ///< What is measured, and the figure to reach.
    std::string unit; ///< What stands after the figure, such as " times".
    std::optional<double> figure; ///< The worst of what was measured for it.
    bool isReached = false;
};

/// All targets, with what \a results say about them.
std::vector<Target> targets(const std::vector<Case> &cases, const Results &results);

/// Prints one line for each of \a targets.
void printTargets(const std::vector<Target> &targets);

QJsonArray toJson(const std::vector<Target> &targets);
