#pragma once

#include "ExitStatus.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// Tells the user \a text in one line on standard error.
void say(const QString &text);

/// Tells the user in one line on standard error why the work was not done. Returns ExitRefused.
int refuse(const QString &reason);

/// Does \a work and returns what it returns. An exception, which the contract lets no plug-in throw, is told
/// to the user on standard error and gives ExitRefused. To be called while the plug-ins are still loaded:
/// the exception may belong to one.
int refuseExceptions(const std::function<int()> &work);

/// Writes \a bytes as StepHost::writeOutputFile() does, to standard output for the name - too. Returns whether it could; tells the user on standard
/// error if not.
bool writeResult(const QByteArray &bytes, const QString &fileName);

/// \a bytes for a reader: `512 MiB`, `11.8 GiB`.
QString shownSize(qint64 bytes);
