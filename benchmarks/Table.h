#pragma once

#include "Results.h"

#include <vector>

/// Prints the head of the table of all cases.
void printTableHead();

/// Prints the table's line for \a oneCase.
void printTableRow(const Case &oneCase, const Results &results);

/// Prints how the time of each step grows with the length of its lists.
void printGrowth(const std::vector<Case> &cases, const Results &results);
