#pragma once

#include "Results.h"

#include <vector>

/// How the time of a step grows on one kind of list.
struct Growth
{
    Case example; ///< Any case of the family.
    Cost expected = Cost::Linear; ///< What the step's rule says.
    double exponent = 0; ///< The e for which size^e fits the times best.
};

/// The growth of each family among \a cases that was measured at two sizes or more.
std::vector<Growth> fitGrowth(const std::vector<Case> &cases, const Results &results);

/// How \a cost is written: "n log n".
const char *nameOf(Cost cost);
