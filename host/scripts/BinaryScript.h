#pragma once

#include "Script.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/Result.h"

#include <QByteArray>

/// Scripts in the host's binary form, version 1. All integers are unsigned and big-endian.
///
/// | offset | size | |
/// |---|---|---|
/// | 0 | 8 | the mark: 0x89, "QMS", 0x0D 0x0A 0x1A 0x0A |
/// | 8 | 2 | the version of the form: 1 |
/// | 10 | 4 | the size of the content, which is the rest of the file from offset 46 on |
/// | 14 | 32 | the SHA-256 of the content |
/// | 46 | 4 | the number of steps |
/// | 50 | | the steps |
/// | | 4 | the size of the variables |
/// | | | the variables |
///
/// A step:
///
/// | size | |
/// |---|---|
/// | 4 | the size of the type id |
/// | | the type id in UTF-8 |
/// | 1 | 1: enabled, 0: not |
/// | 4 | the size of the record |
/// | | the record: what Operation::saveOperation() writes to a stream of version Qt_5_15, big-endian |
///
/// The variables are the value of "variables" in the JSON form (see ScriptJson.h), as CBOR.
namespace StepHost
{
/// Whether \a bytes begin like a binary script. No JSON begins like that.
bool isBinaryScript(const QByteArray &bytes);

/// Reads the binary script \a bytes. The steps are made by \a catalogue.
///
/// Refused are bytes of another form or a newer version, bytes that are missing, left over or changed,
/// unknown step types, and a record that its step does not read to its end and no further. The error tells
/// the offset. A step that throws while it reads its record refuses the script too.
///
/// A length counts only when the bytes for it are there. So memory is taken in proportion to the size of
/// \a bytes, whatever they are: little more than the values take, which is at most about 65 times as much, for lists
/// nested in each other, each of which has a byte.
/// What a step does with its record is its own business.
Result<Script> readBinaryScript(const QByteArray &bytes, const StepCatalogue &catalogue,
                                const StepReading &reading = {});

/// Writes \a script so that readBinaryScript() gives the same variables and steps. Refused are a value that is nested too
/// deep and a script that makes more than 256 MiB.
Result<QByteArray> writeBinaryScript(const Script &script);
} // namespace StepHost
