#pragma once

#include <QString>

inline QString errorText(const QString &error)
{
    return error;
}

template<typename Error>
QString errorText(const Error &error)
{
    return error.reason;
}

/// The text that tells what is wrong, for a result without a value; empty for one that has a value.
template<typename Result>
QString errorOf(const Result &result)
{
    return result ? QString() : errorText(result.error());
}
