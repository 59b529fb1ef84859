#include "WarningLine.h"

#include <QDebug>
#include <QMessageLogger>

void warnSkipped(const char *lead, const QString &text, const char *trail)
{
    // The qWarning() macro would add file, line and function in debug builds.
    QMessageLogger(nullptr, 0, nullptr).warning() << lead << text << trail;
}
