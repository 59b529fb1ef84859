#pragma once

#include "Script.h"
#include "host/values/JsonReader.h"

namespace StepHost
{
/// Reads \a json, a list of variables in the form that they have in a script, into \a script. Returns whether
/// it could; \a error tells why not.
bool readVariables(const Json &json, Script &script, JsonError &error);
} // namespace StepHost
