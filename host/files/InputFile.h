#pragma once

#include "host/values/Result.h"

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// No file larger than this, in bytes, is read or made.
constexpr int maxInputSize = 1 << 28;

/// Reads the whole file \a fileName, or standard input for "-". A file of more than 256 MiB is refused. An error
/// names the file.
Result<QByteArray> readInputFile(const QString &fileName);
} // namespace StepHost
