#pragma once

#include "JsonReader.h"
#include "hostapi/VariableScope.h"

#include <QVariant>

namespace StepHost
{
/// Reads \a json in one of the forms of JsonValue.h. Returns whether it could; \a error tells why not.
bool readValue(const Json &json, QVariant &value, JsonError &error);

/// Reads \a json as a text: a string, or the typed form of one.
bool readTextValue(const Json &json, QString &text, JsonError &error);

/// Reads \a json as the value of a variable of type \a type: in plain form a value of that type, or in
/// typed form any value. An integer for a double variable becomes a `double`.
bool readVariableValue(const Json &json, VarType type, QVariant &value, JsonError &error);

/// What JSON a variable of type \a type takes, for a message: "an integer", "an array" and so on.
QString expectedForm(VarType type);

/// How \a json is called in a message: "a number", "an array" and so on.
QString kindName(const Json &json);

/// Says in \a error that \a json should be \a expected, such as "an array". Returns false.
bool refuseKind(JsonError &error, const Json &json, const char *expected);
} // namespace StepHost
