#pragma once

#include "host/values/Result.h"

#include <QByteArray>

namespace StepHost
{
/// Writes \a bytes to the file \a fileName, which is replaced whole or stays as it was; into it when it is a
/// device or a pipe; or to standard output when the name is empty. An error says why it cannot, without the name.
///
/// The file keeps its owner, group and mode where the system allows, and a symbolic link stays one. Returns a remark for
/// the user when something could not be kept, such as hard links, else an empty text.
///
/// A program that is told to end meanwhile does so afterwards. When it is killed, one more file may be left in the folder, no
/// larger than \a bytes: `.quillmap-unfinished-` and a few characters more. The next call for a file in that folder removes it. On
/// Windows its name is the file's, a dot and six characters more, and it stays.
Result<QString> writeOutputFile(const QString &fileName, const QByteArray &bytes);
} // namespace StepHost
