#include "FileErrors.h"

namespace StepHost
{
namespace
{
const char *const knownErrors[] = {
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "No such file or directory"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Permission denied"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Operation not permitted"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "No space left on device"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Disk quota exceeded"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Read-only file system"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Is a directory"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Not a directory"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "File name too long"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "File too large"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Too many open files"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Input/output error"),
    QT_TRANSLATE_NOOP("StepHost::FileErrors", "Filename refers to a directory"),
};
} // namespace

QString FileErrors::shown(const QString &text)
{
    for (const char *known : knownErrors) {
        if (text == QLatin1String(known))
            return tr(known);
    }
    return text;
}
} // namespace StepHost
