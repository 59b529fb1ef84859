#pragma once

#include <QString>

/// What is wrong, for a result without a value; empty for one that has a value.
template<typename Result>
QString errorOf(const Result &result)
{
    return result ? QString() : result.error();
}
