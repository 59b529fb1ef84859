#pragma once

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

#include <string>

namespace StepHost
{
using Json = nlohmann::json;

/// What is wrong with a JSON document, and where.
struct JsonError
{
    /// JSON pointer to the value, such as `/steps/3/type`; empty for the whole document. When `line` is
    /// not 0, that is the place instead.
    QString pointer;
    int line = 0; ///< Counted from 1; 0 when the text is JSON and its meaning is wrong.
    int column = 0; ///< In characters, counted from 1.
    QString text; ///< What is wrong and what would be right; empty when nothing is.
    /// Whether the text is JSON as far as it was read, and has what this program does not take: too many
    /// levels, too large an integer, a key twice.
    bool isJson = false;

    /// The place and the text in one line for the user.
    QString toString() const;
};

/// Sets \a error to \a text, at the value that is being read. Returns false.
bool refuseJson(JsonError &error, const QString &text);

/// Puts \a key in front of the pointer of \a error while leaving the object or array that holds the value.
/// Returns false.
bool refuseBelow(JsonError &error, const QString &key);

/// Reads \a text as one JSON document.
///
/// Refused besides what is no JSON: arrays and objects nested deeper than maxJsonDepth, a key that an
/// object has twice, integers that do not fit into 64 bits, numbers too large for a `double`, and invalid
/// UTF-8. A byte order mark in front is dropped. Returns whether the document was read; \a error tells
/// why not.
bool parseJson(const QByteArray &text, Json &document, JsonError &error);

/// Empties \a json without taking memory for it, however large it is. Its own destructor first gathers all
/// that is in it in one list, which may need more memory than the document. Nested no deeper than maxJsonDepth.
void takeApart(Json &json);

/// The characters of a JSON string or key. Unlike `QString::fromUtf8`, a U+FEFF in front is kept.
QString textOf(const std::string &utf8);
} // namespace StepHost
