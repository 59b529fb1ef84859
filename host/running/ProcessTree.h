#pragma once

#include <QProcess>
#include <QSet>
#include <QString>

class QProcessEnvironment;

namespace StepHost
{
/// A process of which it is known whether it was started.
///
/// Where the system has no descriptor or no process to spare, a QProcess may say that it is starting, with -1 as its id, and
/// end every process of the user when it is ended or deleted. Of a derived class Qt starts processes in another way, which
/// fails as it should.
class ChildProcess : public QProcess
{
public:
    using QProcess::QProcess;
};

/// Makes this process the head of a tree of its own: what it starts can be ended together with it. On Linux it
/// also ends when the program that started it ends. To be called once, before anything else is started.
void leadProcessTree();

/// On Linux, makes this process the parent of what its children and their children leave behind.
void adoptOrphans();

/// The children of this process; empty where the system does not tell.
QSet<qint64> childProcesses();

/// Marks what will be started in \a environment as belonging to the tree \a mark, a text that no other tree
/// has.
void markProcessTree(QProcessEnvironment &environment, const QString &mark);

/// Ends, at once, \a process, which called leadProcessTree() and was started in the environment marked \a
/// mark, and everything that it started. It may have ended before, \a processId then being what its id was.
/// Does not wait.
void endProcessTree(ChildProcess &process, qint64 processId, const QString &mark);

/// How \a process ended, which was not asked to: in words, such as `the process crashed: abort`.
QString endOf(const QProcess &process);

/// The words of signalName(), in English; null for a signal that has none. May be called by the handler of a signal.
const char *signalWords(int signal);

/// What people call the end of a process by \a signal, such as `segmentation fault`; on Windows, by that code.
QString signalName(int signal);
} // namespace StepHost
