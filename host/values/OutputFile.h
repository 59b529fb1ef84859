#pragma once

#include <QByteArray>
#include <QString>

namespace StepHost
{
/// Writes \a content to the file \a fileName. One of that name is replaced whole or not at all.
/// \return an empty text, or why the file cannot be written.
QString replaceFile(const QString &fileName, const QByteArray &content);
} // namespace StepHost
