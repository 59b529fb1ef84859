#pragma once

#include "Result.h"
#include "hostapi/VariableScope.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

/// Values of variables and step settings as JSON, type for type.
///
/// Plain forms:
///
/// | value | JSON |
/// |---|---|
/// | invalid `QVariant` | `null` |
/// | `bool` | `true`, `false` |
/// | `int` | an integer that fits into 32 bits |
/// | `qlonglong`, `qulonglong` | an integer that needs more bits than the kind before it has |
/// | finite `double` | a number with a fraction or an exponent, in the fewest digits that read back the same |
/// | `QString` | a string |
/// | `QVariantList` | an array |
///
/// Everything else has a typed form: an object with one member, whose key is "$" and Qt's name of the type.
///
/// | value | JSON |
/// |---|---|
/// | other integers, also small `qlonglong`s and `qulonglong`s | `{"$uint": 5}`, `{"$qlonglong": 5}`, ... |
/// | NaN and the infinities | `{"$double": "nan"}`, `{"$double": "inf"}`, `{"$double": "-inf"}` |
/// | `float` | `{"$float": 0.5}` |
/// | a text with a lone surrogate | its UTF-16 code units: `{"$QString": [97, 55296]}` |
/// | `QStringList` | `{"$QStringList": ["a", "b"]}` |
/// | `QByteArray` | in Base64: `{"$QByteArray": "AAE="}` |
/// | `QVariantMap` | its pairs: `{"$QVariantMap": [["key", 1], ["other", null]]}` |
/// | a null value of one of these types | `{"$null": "int"}`; a null text or byte array counts as an empty one |
/// | any other type | `{"$opaque": "QObject*"}`, which is a note for the reader: it does not read back |
///
/// The plain kinds have typed forms too (`{"$int": 5}`, `{"$QVariant": null}`, ...). In a variable's value
/// the typed form stands for a value of another kind than the declared type asks for.
namespace StepHost
{
class JsonWriter;

/// How deep arrays and objects may be nested in a JSON document, read or written.
constexpr int maxJsonDepth = 512;

/// How many bytes of JSON are written at most: as many as a file may have that is read.
constexpr int maxJsonSize = 1 << 28;

/// Writes \a text in the form above.
void writeText(JsonWriter &json, const QString &text);

/// Writes \a value in the form above.
///
/// Refused, in words that follow the name of the value, is one that is nested too deep or makes a document too
/// large to hold. What was written is of no use then.
Result<void> writeValue(JsonWriter &json, const QVariant &value);

/// Writes \a value, the value of a variable of type \a type, as writeValue() does; in typed form when the plain
/// form would be refused or changed for that type.
Result<void> writeVariableValue(JsonWriter &json, const QVariant &value, VarType type);

/// \a value as a document of its own in one line, as writeValue() writes it.
Result<QByteArray> valueToJson(const QVariant &value);
} // namespace StepHost
