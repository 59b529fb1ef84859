#pragma once

#include <QSemaphore>
#include <QString>

#include <memory>
#include <optional>

class QThread;

namespace StepHost
{
class MemoryLimit;
class StartedProcesses;
} // namespace StepHost

/// While it lives, tells the user on standard error when a plug-in ends this program or does not let it go on.
///
/// A crash, an abort, a call of exit() and an interruption from outside give one line, which names what the
/// program was at. Then they take their course: the program ends as it would have without this object, but
/// with ExitRefused after a call of exit(). Nothing may be written to a file or to standard output meanwhile,
/// and the line says so.
///
/// Processes that the plug-ins left running end with it, or with the program, as StartedProcesses are; when the program
/// goes on, one line tells how many.
///
/// There may be one object at a time. In a worker of Isolation it tells of memory and only notes the work: of all else
/// whoever started the worker tells.
class FaultWatch
{
public:
    /// \a work is what the program is at now, as in setWork().
    explicit FaultWatch(const QString &work);
    ~FaultWatch();

    /// Notes what the program is at from now on, such as `in step 3 (list.sort)`. Of a long text
    /// only the beginning is kept.
    void setWork(const QString &work);

    /// Ends the program with ExitRefused, and a line of the same kind, when this object lives longer than
    /// \a seconds from now on. To be called once at most.
    void limitTime(double seconds);

    /// Lets this process have as many \a bytes of memory as long as this object lives; half of the machine's when none
    /// are given. Memory that runs out where no exception may be thrown gives a line of the same kind, and ends the
    /// program with ExitRefused. Returns false, and limits nothing, when a given limit cannot be set. To be called once
    /// at most.
    bool limitMemory(std::optional<qint64> bytes);

    /// Tells the user that memory ran out, with the limit. Returns ExitRefused. To be called when what took the memory
    /// has thrown `std::bad_alloc`.
    int refuseForMemory() const;

private:
    Q_DISABLE_COPY(FaultWatch)

    std::unique_ptr<StepHost::StartedProcesses> m_started;
    QSemaphore m_isOver;
    std::unique_ptr<QThread> m_clock;
    std::unique_ptr<StepHost::MemoryLimit> m_memory;
};
