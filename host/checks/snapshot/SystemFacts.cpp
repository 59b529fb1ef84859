#include "ProcessFacts.h"

#include "host/running/ProcessTree.h"

#include <cfenv>

#if defined(Q_OS_LINUX)
#include <QByteArray>
#include <QDir>
#include <QFile>

#include <csignal>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <termios.h>
#include <unistd.h>
#endif
#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace StepHost
{
namespace
{
QStringList floatingPoint()
{
    QStringList facts{QStringLiteral("rounding %1").arg(std::fegetround())};
#if defined(__GLIBC__)
    facts.append(QStringLiteral("traps %1").arg(fegetexcept()));
#endif
#if defined(__SSE__)
    constexpr unsigned flags = 0x3f; // What past calculations left.
    facts.append(QStringLiteral("control 0x%1").arg(_mm_getcsr() & ~flags, 0, 16));
#endif
    return facts;
}

#if defined(Q_OS_LINUX)
QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList limits()
{
    const mode_t mask = umask(0);
    umask(mask);
    QStringList facts{QStringLiteral("umask 0%1").arg(mask, 0, 8),
                      QStringLiteral("priority %1").arg(getpriority(PRIO_PROCESS, 0)),
                      QStringLiteral("dumpable %1").arg(prctl(PR_GET_DUMPABLE))};
    for (int resource = 0; resource < int(RLIM_NLIMITS); ++resource) {
        rlimit limit{};
        if (getrlimit(__rlimit_resource_t(resource), &limit) == 0)
            facts.append(QStringLiteral("limit %1 of %2 and %3")
                             .arg(resource)
                             .arg(limit.rlim_cur)
                             .arg(limit.rlim_max));
    }
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof processors, &processors) == 0)
        facts.append(QStringLiteral("%1 processors").arg(CPU_COUNT(&processors)));
    return facts;
}

QStringList signalHandling()
{
    QStringList facts;
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action
        {
        };
        if (sigaction(signal, nullptr, &action) != 0)
            continue;
        if (action.sa_handler != SIG_DFL)
            facts.append(action.sa_handler == SIG_IGN ? QStringLiteral("signal %1 ignored").arg(signal)
                                                      : QStringLiteral("signal %1 handled at 0x%2")
                                                            .arg(signal)
                                                            .arg(quintptr(action.sa_handler), 0, 16));
        if (sigismember(&blocked, signal) == 1)
            facts.append(QStringLiteral("signal %1 blocked").arg(signal));
    }
    return facts;
}

QStringList clocks()
{
    QStringList facts;
    static const struct
    {
        __itimer_which which;
        const char *name;
    } timers[] = {
        {ITIMER_REAL, "alarm"}, {ITIMER_VIRTUAL, "virtual timer"}, {ITIMER_PROF, "profiling timer"}};
    for (const auto &timer : timers) {
        itimerval value{};
        if (getitimer(timer.which, &value) == 0
            && (value.it_value.tv_sec != 0 || value.it_value.tv_usec != 0))
            facts.append(QLatin1String(timer.name));
    }
    return facts;
}

QStringList descriptors()
{
    QStringList facts;
    const QString folder = QStringLiteral("/proc/self/fd/");
    const QStringList numbers = entriesOf(folder);
    for (const QString &number : numbers) {
        const QByteArray path = QFile::encodeName(folder + number);
        char target[4096];
        const ssize_t size = readlink(path.constData(), target, sizeof target);
        // The one that the list was read with is closed again.
        if (size > 0)
            facts.append(QStringLiteral("%1 (%2)").arg(number, QString::fromLocal8Bit(target, int(size))));
    }
    return facts;
}

// Threads that Qt keeps for the next task of its pool are its own.
QStringList threads()
{
    QStringList facts;
    const QString folder = QStringLiteral("/proc/self/task/");
    const QStringList ids = entriesOf(folder);
    for (const QString &id : ids) {
        const QString name =
            QString::fromLocal8Bit(contentOf(folder + id + QLatin1String("/comm")).trimmed());
        if (!name.startsWith(QLatin1String("Thread (pooled")) && !name.isEmpty())
            facts.append(id.toLongLong() == getpid() ? QStringLiteral("the main thread, called %1").arg(name)
                                                     : QStringLiteral("%1, called %2").arg(id, name));
    }
    return facts;
}

// This process adopts what its children leave behind, so all that was started is among its children.
QStringList processes()
{
    QStringList facts;
    const QSet<qint64> children = childProcesses();
    for (const qint64 id : children)
        facts.append(QStringLiteral("%1 (%2)").arg(id).arg(
            QString::fromLocal8Bit(contentOf(QStringLiteral("/proc/%1/comm").arg(id)).trimmed())));
    return facts;
}

QStringList terminal()
{
    QStringList facts;
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        termios state{};
        if (tcgetattr(descriptor, &state) == 0)
            facts.append(QStringLiteral("modes of %1: %2 %3 %4 %5")
                             .arg(descriptor)
                             .arg(state.c_iflag)
                             .arg(state.c_oflag)
                             .arg(state.c_cflag)
                             .arg(state.c_lflag));
    }
    return facts;
}
#endif
} // namespace

QVector<ProcessFacet> systemFacets()
{
#if !defined(Q_OS_LINUX)
    constexpr QStringList (*limits)() = nullptr;
    constexpr auto signalHandling = limits;
    constexpr auto clocks = limits;
    constexpr auto descriptors = limits;
    constexpr auto threads = limits;
    constexpr auto processes = limits;
    constexpr auto terminal = limits;
#endif
    return {
        {QStringLiteral("floating-point"), QStringLiteral("Rounding, traps and precision of numbers stay."),
         floatingPoint},
        {QStringLiteral("limits"),
         QStringLiteral("The umask, the priority and the limits of the process stay."), limits},
        {QStringLiteral("signals"), QStringLiteral("Signals are handled and blocked as before."),
         signalHandling},
        {QStringLiteral("clocks"), QStringLiteral("No timer of the system is left running."), clocks},
        {QStringLiteral("descriptors"),
         QStringLiteral("No file, pipe or socket is left open, and none is closed."), descriptors},
        {QStringLiteral("threads"), QStringLiteral("No thread is left running."), threads, true},
        {QStringLiteral("processes"), QStringLiteral("No process is left running."), processes, true},
        {QStringLiteral("terminal"), QStringLiteral("The terminal stays as it is."), terminal},
    };
}
} // namespace StepHost
