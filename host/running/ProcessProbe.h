#pragma once

#include <QtGlobal>

#include <optional>

class QString;

namespace StepHost
{
/// What the running process holds of the system's resources. Each is empty where the system does not tell.
/// @{

/// Memory in use now, in bytes.
std::optional<qint64> residentMemory();

/// The most memory that was in use at any time so far, in bytes.
std::optional<qint64> peakMemory();

/// Open files, pipes, sockets and the like.
std::optional<int> openHandles();

/// Running threads.
std::optional<int> runningThreads();

/// Whether the library \a fileName (an absolute path) is in memory.
std::optional<bool> isMapped(const QString &fileName);

/// Whether \a address lies in the memory of the library \a fileName. False where the system does not tell.
bool isInLibrary(const QString &fileName, const void *address);
/// @}

/// The memory of the machine, or of the container that this process is in when that has less, in bytes. Empty where the
/// system does not tell.
std::optional<qint64> machineMemory();

/// Whether the running process has a sanitizer that takes more memory than any machine has, be it its own or one that a
/// library brought along.
bool isSanitized();

/// While it lives, an allocation fails that would give this process more than a number of bytes of memory of its own
/// altogether, be it used or not. Does nothing where the system, or a sanitizer, does not allow it.
class MemoryLimit
{
public:
    explicit MemoryLimit(qint64 bytes);
    ~MemoryLimit();

    /// The limit that holds, which is a lower one when the process had that already. Empty when none does.
    std::optional<qint64> bytes() const;

private:
    Q_DISABLE_COPY(MemoryLimit)

    std::optional<qint64> m_bytes;
    quint64 m_previous = 0;
};

/// While it lives, an allocation fails that would let this process grow by more than a number of bytes beyond
/// the size that it had before. Does nothing where the system, or a sanitizer, does not allow it.
class MemoryGrowthLimit
{
public:
    explicit MemoryGrowthLimit(qint64 bytes);
    ~MemoryGrowthLimit();

private:
    Q_DISABLE_COPY(MemoryGrowthLimit)

    std::optional<quint64> m_previous;
};
} // namespace StepHost
