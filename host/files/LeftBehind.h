#pragma once

#include <QString>

#include <memory>

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

    /// Whether that is certain. It is not when the path was removed, or is about to be, as one that was left behind.
    bool isCertain() const;

private:
    Q_DISABLE_COPY(InUse)

    int m_descriptor = -1;
    QString m_path;
};

/// A folder of its own for temporary files, in use until the destructor has removed it with all that is in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();

    /// Whether it could be made.
    bool isValid() const;

    /// Why it could not.
    QString errorString() const;

    QString path() const;

    /// The path of the file \a name in it.
    QString filePath(const QString &name) const;

private:
    Q_DISABLE_COPY(TemporaryFolder)

    QString m_path;
    QString m_error;
    std::unique_ptr<InUse> m_inUse;
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
