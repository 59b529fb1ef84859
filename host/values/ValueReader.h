#pragma once

#include "CborReader.h"
#include "JsonReader.h"
#include "hostapi/VariableScope.h"

#include <QVariant>

/// Reads values in the forms of JsonValue.h. All of these go on to the item after the value; where a reader stands after
/// an error does not matter.
namespace StepHost
{
/// Reads \a json, a document of a single value.
Result<QVariant> valueFromJson(const QByteArray &json);

/// Reads a value at \a at.
Result<QVariant, JsonError> readValue(CborReader &at);

/// Reads a text: a string, or the typed form of one.
Result<QString, JsonError> readTextValue(CborReader &at);

/// Reads the value of a variable of type \a type: in plain form a value of that type, or in typed form any value. An
/// integer for a double variable becomes a `double`.
Result<QVariant, JsonError> readVariableValue(CborReader &at, VarType type);

/// How the item at \a at is called in a message: "a number", "an array" and so on.
QString kindName(CborReader at);

/// The error that the item at \a at should be \a expected, such as "an array".
tl::unexpected<JsonError> refuseKind(CborReader at, const QString &expected);
} // namespace StepHost
