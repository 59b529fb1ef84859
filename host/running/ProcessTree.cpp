#include "ProcessTree.h"

#include "host/values/ErrorTexts.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>

#include <csignal>

#if defined(Q_OS_WIN)
#include <windows.h>
#else
#include <unistd.h>
#if defined(Q_OS_LINUX)
#include <sys/prctl.h>
#endif
#endif

namespace StepHost
{
namespace
{
const QString markName = QStringLiteral("QUILLMAP_PROCESS_TREE");

#if defined(Q_OS_LINUX)
// Ends the processes that left the process group but still carry the tree's mark in their environment.
// Returns whether there were any.
bool endMarkedProcesses(const QString &mark)
{
    const QByteArray entry = QString(markName + QLatin1Char('=') + mark).toUtf8() + '\0';
    bool found = false;
    const QStringList ids = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[1-9]*")}, QDir::Dirs);
    for (const QString &id : ids) {
        QFile environment(QStringLiteral("/proc/%1/environ").arg(id));
        // A process that has ended and was not waited for has an empty environment.
        if (environment.open(QIODevice::ReadOnly) && environment.readAll().contains(entry))
            found = kill(pid_t(id.toLongLong()), SIGKILL) == 0 || found;
    }
    return found;
}
#endif
} // namespace

void leadProcessTree()
{
#if defined(Q_OS_WIN)
    // The job ends with its last handle, and this process holds the only one.
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    AssignProcessToJobObject(job, GetCurrentProcess());
#else
    setsid();
#if defined(Q_OS_LINUX)
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
#endif
}

#if defined(Q_OS_LINUX)
void adoptOrphans()
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

QSet<qint64> childProcesses()
{
    QSet<qint64> children;
    const QString folder = QStringLiteral("/proc/self/task");
    const QStringList tasks = QDir(folder).entryList({QStringLiteral("[1-9]*")}, QDir::Dirs);
    for (const QString &task : tasks) {
        QFile file(folder + QLatin1Char('/') + task + QLatin1String("/children"));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> ids = file.readAll().simplified().split(' ');
        for (const QByteArray &id : ids) {
            if (!id.isEmpty())
                children.insert(id.toLongLong());
        }
    }
    return children;
}
#else
void adoptOrphans() { }

QSet<qint64> childProcesses()
{
    return {};
}
#endif

void markProcessTree(QProcessEnvironment &environment, const QString &mark)
{
    environment.insert(markName, mark);
}

void endProcessTree(ChildProcess &process, qint64 processId, const QString &mark)
{
    process.kill();
#if !defined(Q_OS_WIN)
    if (processId > 0)
        kill(-pid_t(processId), SIGKILL);
#else
    Q_UNUSED(processId)
#endif
#if defined(Q_OS_LINUX)
    // Once more after each find: a process may have started another one meanwhile.
    constexpr int rounds = 10;
    for (int round = 0; round < rounds && endMarkedProcesses(mark); ++round) { }
#else
    Q_UNUSED(mark)
#endif
}

QString endOf(const QProcess &process)
{
    return process.exitStatus() == QProcess::CrashExit
        ? ErrorTexts::tr("the process crashed: %1").arg(signalName(process.exitCode()))
        : ErrorTexts::tr("the process was ended with status %1").arg(process.exitCode());
}

const char *signalWords(int signal)
{
    switch (signal) {
    case SIGABRT:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "abort");
    case SIGFPE:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "arithmetic error");
    case SIGILL:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "illegal instruction");
    case SIGSEGV:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "segmentation fault");
    case SIGINT:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "interrupted");
    case SIGTERM:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "terminated");
#if !defined(Q_OS_WIN)
    case SIGBUS:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "bus error");
    case SIGHUP:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "hung up");
    case SIGQUIT:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "quit");
    case SIGKILL:
        return QT_TRANSLATE_NOOP("StepHost::ErrorTexts", "killed");
#endif
    default:
        return nullptr;
    }
}

QString signalName(int signal)
{
    const char *words = signalWords(signal);
    if (!words)
        return ErrorTexts::tr("signal %1").arg(signal);
    return ErrorTexts::tr(words);
}
} // namespace StepHost
