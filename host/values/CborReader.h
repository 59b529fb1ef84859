#pragma once

#include "JsonReader.h"

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// What is wrong with a CBOR document, and where.
struct CborError
{
    int offset = 0; ///< Of the byte, counted from the document's beginning.
    QString text; ///< What is wrong; empty when nothing is.
};

/// Reads \a cbor, which has to be one document and nothing else.
///
/// Taken is what a JSON document can hold and `Json::to_cbor` writes: integers that fit into 64 bits, finite
/// floating-point numbers, true, false, null, UTF-8 texts, and arrays and maps that tell their length, nested
/// no deeper than maxJsonDepth, with texts for keys, no key twice. In JSON the document stands inside \a depth
/// arrays and objects, which count as levels too.
///
/// A length counts only when the bytes for it are there, so no input makes it reserve memory for what does not
/// follow. Returns whether the document was
/// read; \a error tells why not.
bool parseCbor(const QByteArray &cbor, Json &document, CborError &error, int depth = 0);
} // namespace StepHost
