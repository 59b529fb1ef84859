#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace StepHost
{
/// A value, or the text that tells what is wrong and where. True when there is a value:
///
///     const Result<QByteArray> bytes = readInputFile(fileName);
///     if (!bytes)
///         return failure(bytes.error());
///     use(*bytes);
///
/// `Result<void>` is for what either works or tells why it does not: `return {};` says that it worked. Where a
/// caller needs to know more than a text, \a Error is a struct that has one.
template<typename Value, typename Error = QString>
using Result = tl::expected<Value, Error>;

/// What a function returns, as a Result of whatever value, when something is wrong: \a error says what, in words for
/// the user.
inline tl::unexpected<QString> failure(const QString &error)
{
    return tl::unexpected<QString>(error);
}
} // namespace StepHost
