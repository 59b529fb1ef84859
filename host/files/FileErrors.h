#pragma once

#include <QCoreApplication>
#include <QString>

namespace StepHost
{
/// Why a file cannot be read or written, in the language of the program's user.
class FileErrors
{
    Q_DECLARE_TR_FUNCTIONS(StepHost::FileErrors)

public:
    /// What the system, or Qt, calls an error: in the user's language where the program knows it, else \a text itself.
    static QString shown(const QString &text);
};
} // namespace StepHost
