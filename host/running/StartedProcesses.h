#pragma once

#include <QtGlobal>

namespace StepHost
{
/// The processes that this one starts while the object lives, and those that they start: also one that left its parent,
/// its session and its environment behind. None of them outlives the object.
///
/// On Linux only; elsewhere, and after a kill of this process, what was started goes on. Processes that were there before
/// are left alone. There may be one object at a time.
class StartedProcesses
{
public:
    StartedProcesses();

    /// As end().
    ~StartedProcesses();

    /// Ends them at once and waits until they are gone. Returns how many were still running.
    static int end();

private:
    Q_DISABLE_COPY(StartedProcesses)
};
} // namespace StepHost
