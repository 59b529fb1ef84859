#pragma once

#include "Lists.h"

#include <string>

/// How the work of a step grows with the length of its lists.
enum class Cost {
    Constant,
    Linear,
    Sorting, ///< n log n
    Product, ///< The lengths of two lists multiplied.
};

/// What is timed for a case.
enum class Variant {
    Step, ///< The step itself, through doOperation() on a scope.
    Floor, ///< The least that the contract permits: the reads, one copy, the write.
    Plain, ///< The direct transcription of the step's rule.
    Build2, ///< The step from a module whose steps are compiled at -O2 instead of -O3.
};

/// One step on one kind of list.
struct Case
{
    std::string step;
    Kind kind = Kind::Int;
    Shape shape = Shape::Random;
    int size = 0;
    Cost cost = Cost::Linear; ///< Not part of the name.

    /// The case without its size, such as `sort/int/random`.
    std::string family() const
    {
        return step + '/' + nameOf(kind) + '/' + nameOf(shape);
    }

    /// The name of the case, such as `sort/int/random/1000`.
    std::string name() const
    {
        return family() + '/' + std::to_string(size);
    }

    /// How many pairs of elements a scan of the step looks at when no two are alike; 0 for other steps and lists.
    double comparisons() const
    {
        if (cost != Cost::Product || shape == Shape::ManyEqual || kind == Kind::Invalid)
            return 0;
        return step == "dedup" ? double(size) * (size - 1) / 2 : double(size) * size;
    }

    /// The name of a benchmark of the case, such as `sort/int/random/1000/plain`.
    std::string name(Variant variant) const
    {
        static const char *const variants[] = {"/step", "/floor", "/plain", "/O2"};
        return name() + variants[static_cast<int>(variant)];
    }
};
