#pragma once

#include "Script.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/Result.h"

#include <QByteArray>
#include <QMetaProperty>
#include <QString>
#include <QVector>

#include <vector>

/// Scripts as JSON:
///
///     {
///       "variables": [
///         {"name": "names", "type": "list", "value": ["b", "a", 3, 1.0, true, null, [1, 2]]}
///       ],
///       "steps": [
///         {"type": "list.sort", "targetVar": "names", "ascending": false},
///         {"type": "list.clear", "enabled": false, "targetVar": "names"}
///       ]
///     }
///
/// Both lists may be left out. A variable without a value gets its type's empty value. All keys of a step
/// other than "type" and "enabled" (true unless said) are its properties; one that is left out keeps the
/// value that the prototype has. A property called "type" or "enabled" is out of a script's reach. The
/// forms of values are those of JsonValue.h.
namespace StepHost
{
class CborReader;
class JsonWriter;
struct JsonError;

/// The settings of \a step that a script can give, in their order.
QVector<QMetaProperty> scriptSettingsOf(const Operation &step);

/// Reads a list of variables in the form that they have in a script.
Result<std::vector<ScriptVariable>, JsonError> readVariables(CborReader &at);

/// Reads \a json. The steps are made by \a catalogue, and \a reading, if there is one, is told of each before. A mistake in
/// one place refuses the whole script.
Result<Script> readScript(const QByteArray &json, const StepCatalogue &catalogue,
                          const StepReading &reading = {});

/// Writes \a script so that readScript() gives the same variables and steps: every variable with its
/// value, every step with all its properties, one on each line. Refused is a value that is nested too deep or too
/// large.
Result<QByteArray> writeScript(const Script &script);

/// Writes the value of \a setting, one of \a step, as it stands in a script. Refused as by writeValue().
Result<void> writeSetting(JsonWriter &json, const Operation &step, const QMetaProperty &setting);

/// Writes a list of variables as the value of "variables" in a script. Refused is a value that is nested too
/// deep or too large.
Result<void> writeVariables(JsonWriter &json, const std::vector<ScriptVariable> &variables);
} // namespace StepHost
