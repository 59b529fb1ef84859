#pragma once

#include <QString>

class QProcess;
class QProcessEnvironment;

namespace StepHost
{
/// Makes this process the head of a tree of its own: what it starts can be ended together with it. On Linux it
/// also ends when the program that started it ends. To be called once, before anything else is started.
void leadProcessTree();

/// Marks what will be started in \a environment as belonging to the tree \a mark, a text that no other tree
/// has.
void markProcessTree(QProcessEnvironment &environment, const QString &mark);

/// Ends, at once, \a process, which called leadProcessTree() and was started in the environment marked \a
/// mark, and everything that it started. It may have ended before, \a processId then being what its id was.
/// Does not wait.
void endProcessTree(QProcess &process, qint64 processId, const QString &mark);
} // namespace StepHost
