#pragma once

#include "host/values/Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace StepHost
{
/// No file larger than this, in bytes, is read or made.
constexpr int maxInputSize = 1 << 28;

/// Reads the whole file \a fileName, or standard input for "-". A file of more than 256 MiB is refused. An error
/// names the file.
Result<QByteArray> readInputFile(const QString &fileName);

/// The text \a utf8, without a byte order mark in front. What is not UTF-8 is refused, with the number of the line.
Result<QString> readText(const QByteArray &utf8);

/// The lines of the text \a utf8, one `QString` for each, as readText() reads it. They end in LF or CR LF; the end of
/// the last line may be missing, and an empty text has no lines.
Result<QVariantList> readLines(const QByteArray &utf8);
} // namespace StepHost
