#pragma once

#include "ScriptJson.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace StepHost
{
/// The forms that a script's file can have.
enum class ScriptForm {
    Json, ///< See ScriptJson.h.
    Binary, ///< See BinaryScript.h.
};

/// The form that the suffix of \a fileName stands for: `.json`, or `.qms` for the binary form. Nothing for any
/// other suffix.
std::optional<ScriptForm> scriptFormOf(const QString &fileName);

/// Reads \a bytes, whose beginning tells their form. The steps are made by \a catalogue, and \a reading, if there is one,
/// is told of each before.
Result<Script> readAnyScript(const QByteArray &bytes, const StepCatalogue &catalogue,
                             const StepReading &reading = {});

/// Reads the file \a fileName, or standard input for "-", whose content tells its form. The steps are made by
/// \a catalogue. An error begins with the file's name.
Result<Script> readScriptFile(const QString &fileName, const StepCatalogue &catalogue);

/// The scripts that come with the plug-in \a pluginFile, sorted by name: those in the folder beside it that is called as
/// its library, with `.scripts` in place of the suffix. Absolute paths.
QStringList scriptsBeside(const QString &pluginFile);

/// Writes \a script in the form \a form. The steps have to be of types in \a catalogue.
///
/// Nothing is lost: refused is the JSON form of a step that has state beside its properties, and the binary
/// form of one that has properties beside its record.
Result<QByteArray> writeScript(const Script &script, ScriptForm form, const StepCatalogue &catalogue);
} // namespace StepHost
