#pragma once

#include "host/values/Result.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace StepHost
{
/// The encodings in which text files are read.
enum class TextEncoding {
    Utf8,
    Gb18030, ///< And so GBK and GB 2312, which are parts of it.
    Utf16, ///< A byte order mark tells the order of its bytes, else the bytes that are 0 do.
    Latin1,
};

/// The encodings in the order in which they are offered.
QVector<TextEncoding> textEncodings();

/// What people call \a encoding: "UTF-8", "GB18030", "UTF-16", "Latin-1".
QString encodingName(TextEncoding encoding);

/// The encoding called \a name, in upper or lower case; an error names those there are.
Result<TextEncoding> encodingNamed(const QString &name);

struct EncodingGuess
{
    TextEncoding encoding = TextEncoding::Utf8;
    bool isCertain = true; ///< False where other encodings would give a text, too.
};

/// The encoding that \a bytes look like. Certain are a byte order mark and bytes that are UTF-8, which no other
/// encoding gives by chance.
EncodingGuess guessEncoding(const QByteArray &bytes);

/// The text that \a bytes are in \a encoding, without a byte order mark in front. Bytes that are none are refused with
/// their line and the character in it, both counted from 1.
Result<QString> decodeText(const QByteArray &bytes, TextEncoding encoding);
} // namespace StepHost
