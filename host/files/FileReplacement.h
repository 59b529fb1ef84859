#pragma once

#include "host/values/Result.h"

#include <QByteArray>

class QFileDevice;

namespace StepHost
{
/// Writes \a bytes to \a output and empties its buffer. Returns whether it could.
bool writeAll(QFileDevice &output, const QByteArray &bytes);

/// Lets a new file with \a bytes take the place of the file \a fileName, as writeOutputFile() says.
Result<QString> replaceFile(const QString &fileName, const QByteArray &bytes);
} // namespace StepHost
