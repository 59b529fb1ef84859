#pragma once

#include <QString>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

namespace StepHost
{
/// What programs write before it takes its place, and leave behind when they are killed: files and folders whose names begin
/// with temporaryPrefix(), that are not InUse, and that belong to the same user.
QString temporaryPrefix();

/// Removes what is left behind in \a folder. On Windows nothing is.
void removeLeftBehind(const QString &folder);

/// While it lives, the file or folder at a path is not left behind.
class InUse
{
public:
    explicit InUse(const QString &path);
    ~InUse();

private:
    Q_DISABLE_COPY(InUse)

    int m_descriptor = -1;
};

/// While it lives, a signal that tells the program to end is put off, as far as the thread is concerned that made it.
class EndsLater
{
public:
    EndsLater();
    ~EndsLater();

private:
    Q_DISABLE_COPY(EndsLater)

#ifdef Q_OS_UNIX
    sigset_t m_before;
#endif
};
} // namespace StepHost
