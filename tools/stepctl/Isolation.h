#pragma once

#include <QByteArray>

/// Work in a process of its own, the worker, which is this program started again with the same arguments. What ends
/// the worker, be it `_exit()` or a signal that nobody can catch, is seen by the process that started it.
///
/// The worker has the standard input and the standard error of this program. What its plug-ins write to standard output
/// goes to standard error.
namespace Isolation
{
/// Makes this process a worker when its first argument says so, and takes that argument away. To be called first of all.
void becomeWorker(int &argc, char *argv[]);

bool isWorker();

/// In the worker: notes what it is at, a text of one line, as in FaultWatch::setWork().
void noteWork(const QByteArray &work);

/// In the worker: hands over what came of the work, an ExitStatus and the result. The worker is to end next.
void handOver(int status, const QByteArray &result);

/// Lets a worker do what the arguments of this program ask for. Returns the ExitStatus that the worker handed over, with
/// its \a result. When it ended otherwise, or took longer than \a timeLimit seconds (0 for no limit), the user is told
/// how and at what in one line on standard error, and ExitRefused is returned.
int runWorker(double timeLimit, QByteArray &result);
} // namespace Isolation
