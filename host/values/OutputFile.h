#pragma once

#include "Result.h"

#include <QByteArray>

namespace StepHost
{
/// Writes \a bytes to the file \a fileName, which is replaced whole or stays as it was; into it when it is a
/// device or a pipe; or to standard output when the name is empty. An error says why it cannot, without the name.
///
/// When the program is killed meanwhile, one more file may be left beside: with the name, a dot and six
/// characters more, and no larger than \a bytes.
Result<void> writeOutputFile(const QString &fileName, const QByteArray &bytes);
} // namespace StepHost
