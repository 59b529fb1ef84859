#pragma once

#include <QProcess>

/// Starts \a program as \a process. Under Wine a start fails once in many thousands, whatever the program; then it is
/// tried again.
inline void startProgram(QProcess &process, const QString &program, const QStringList &arguments)
{
    constexpr int maxStarts = 3;
    for (int starts = 1; starts <= maxStarts; ++starts) {
        process.start(program, arguments);
        if (process.waitForStarted(-1))
            return;
    }
}
