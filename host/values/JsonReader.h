#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// What is wrong with a JSON document, and where.
struct JsonError
{
    /// JSON pointer to the value, such as `/steps/3/type`; empty for the whole document. When `line` is
    /// not 0, that is the place instead.
    QString pointer;
    int line = 0; ///< Counted from 1; 0 when the text is JSON and its meaning is wrong.
    int column = 0; ///< In characters, counted from 1.
    QString text; ///< What is wrong and what would be right.
    /// Whether the text is JSON as far as it was read, and has what this program does not take: too many
    /// levels, too large an integer, a key twice.
    bool isJson = false;

    /// The place and the text in one line for the user.
    QString toString() const;
};

/// @{
/// What a function returns, as a Result of whatever value, when something is wrong: \a text about the value that it
/// reads, an \a error as it is, or one about what stands under \a key in the object or array that it reads.
tl::unexpected<JsonError> refuseJson(const QString &text);
tl::unexpected<JsonError> failure(const JsonError &error);
tl::unexpected<JsonError> failureBelow(const QString &key, JsonError error);
tl::unexpected<JsonError> refuseBelow(const QString &key, const QString &text);
/// @}

/// Reads \a text as one JSON document. Returns the same document as CBOR, in the shortest form of each item, for a
/// CborReader. Of a document of lists it takes no more memory than \a text has; of one of numbers at most 2.25 times as
/// much.
///
/// Refused besides what is no JSON: arrays and objects nested deeper than maxJsonDepth, a key that an
/// object has twice, integers that do not fit into 64 bits, numbers too large for a `double`, and invalid
/// UTF-8. A byte order mark in front is dropped.
Result<QByteArray, JsonError> cborFromJson(const QByteArray &text);
} // namespace StepHost
