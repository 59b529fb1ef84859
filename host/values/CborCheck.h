#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// What is wrong with a CBOR document, and where.
struct CborError
{
    int offset = 0; ///< Of the byte, counted from the document's beginning.
    QString text;
};

/// Checks that \a cbor is one document that CborReader can read, and nothing else.
///
/// Taken is what a JSON document can hold: integers that fit into 64 bits, finite floating-point numbers, true, false,
/// null, UTF-8 texts, and arrays and maps that tell their length, nested no deeper than maxJsonDepth, with texts for
/// keys, no key twice. In JSON the document stands inside \a depth arrays and objects, which count as levels too.
///
/// A length counts only when the bytes for it are there.
Result<void, CborError> checkCbor(const QByteArray &cbor, int depth = 0);
} // namespace StepHost
