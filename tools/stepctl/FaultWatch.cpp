#include "FaultWatch.h"

#include "Isolation.h"
#include "console/Console.h"
#include "console/ExitStatus.h"
#include "console/Terminal.h"

#include "host/running/ProcessProbe.h"
#include "host/running/ProcessTree.h"
#include "host/running/StartedProcesses.h"
#include "host/values/QuotedText.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace
{
// Of the end by each of these the user is told.
const int faults[] = {
    SIGABRT, SIGFPE,  SIGILL,  SIGSEGV,
#ifndef Q_OS_WIN
    SIGBUS,  SIGHUP,  SIGQUIT,
#endif
    SIGINT,  SIGTERM,
};
constexpr int faultCount = int(sizeof faults / sizeof faults[0]);

// A signal may come at any time, so all that its handler uses is in place before and needs no lock. There are
// two texts, so that the one that counts is always whole.
constexpr int maxWorkSize = 512;
char works[2][maxWorkSize];
std::atomic<const char *> currentWork{works[0]};
std::atomic<bool> isWatching{false};
bool isTerminal = false;

// What a line says when memory has run out, which is no time to put it together.
constexpr int maxFaultSize = 100;
char memoryFault[maxFaultSize];
std::terminate_handler previousTerminate = nullptr;

// Writes the line about `fault`, and ends what the plug-ins left running. Calls only what a signal handler may call.
void tell(const char *fault)
{
    char line[maxWorkSize + 200];
    std::size_t size = 0;
    const auto append = [&line, &size](const char *text) {
        const std::size_t length = qMin(std::strlen(text), sizeof line - size);
        std::copy_n(text, length, line + size);
        size += length;
    };
    // A line about progress may be there already.
    append(isTerminal ? "\rstepctl: " : "stepctl: ");
    append(fault);
    append(" ");
    append(currentWork.load());
    append("; nothing was written\n");
#ifdef Q_OS_WIN
    const auto written = _write(_fileno(stderr), line, unsigned(size));
#else
    const auto written = write(STDERR_FILENO, line, size);
#endif
    static_cast<void>(written);
    StepHost::StartedProcesses::end();
}

void tellOfExit()
{
    if (!isWatching)
        return;
    tell("exit() was called");
    std::_Exit(ExitRefused);
}

// An exception that got where none may be thrown.
[[noreturn]] void tellOfTermination()
{
    const std::exception_ptr thrown = std::current_exception();
    try {
        if (thrown)
            std::rethrow_exception(thrown);
    } catch (const std::bad_alloc &) {
        tell(memoryFault);
        if (Isolation::isWorker())
            Isolation::handOver(ExitRefused, QByteArray());
        std::_Exit(ExitRefused);
    } catch (...) {
    }
    previousTerminate();
    std::abort();
}

#ifdef Q_OS_WIN
using Action = void (*)(int);
Action previousActions[faultCount];

void tellOfSignal(int signal)
{
    // The status that abort() and unhandled signals end with there.
    constexpr int exitSignalled = 3;
    tell(StepHost::signalWords(signal));
    std::_Exit(exitSignalled);
}

void installHandlers()
{
    for (int i = 0; i < faultCount; ++i)
        previousActions[i] = std::signal(faults[i], tellOfSignal);
}

void removeHandlers()
{
    for (int i = 0; i < faultCount; ++i)
        std::signal(faults[i], previousActions[i]);
}
#else
struct sigaction previousActions[faultCount];

// Where a handler runs when a step has used up the stack.
char handlerStack[1 << 16];

void tellOfSignal(int signal)
{
    tell(StepHost::signalWords(signal));
    const auto position = std::find(std::begin(faults), std::end(faults), signal) - std::begin(faults);
    sigaction(signal, &previousActions[position], nullptr);
    raise(signal);
}

void installHandlers()
{
    stack_t stack{};
    // A sanitizer has one already.
    if (sigaltstack(nullptr, &stack) == 0 && (stack.ss_flags & SS_DISABLE) != 0) {
        stack.ss_sp = handlerStack;
        stack.ss_size = sizeof handlerStack;
        stack.ss_flags = 0;
        sigaltstack(&stack, nullptr);
    }
    for (int i = 0; i < faultCount; ++i) {
        struct sigaction action
        {
        };
        action.sa_handler = tellOfSignal;
        action.sa_flags = SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        sigaction(faults[i], nullptr, &previousActions[i]);
        // Whoever started this program wants the signal ignored, as nohup does.
        if (previousActions[i].sa_handler != SIG_IGN)
            sigaction(faults[i], &action, nullptr);
    }
}

void removeHandlers()
{
    for (int i = 0; i < faultCount; ++i)
        sigaction(faults[i], &previousActions[i], nullptr);
}
#endif
} // namespace

FaultWatch::FaultWatch(const QString &work)
{
    isTerminal = isErrorTerminal();
    qstrncpy(memoryFault, "memory ran out", maxFaultSize);
    setWork(work);
    previousTerminate = std::set_terminate(tellOfTermination);
    if (Isolation::isWorker())
        return;
    static const bool isRegistered = std::atexit(tellOfExit) == 0;
    static_cast<void>(isRegistered);
    m_started = std::make_unique<StepHost::StartedProcesses>();
    isWatching = true;
    installHandlers();
}

FaultWatch::~FaultWatch()
{
    if (m_clock) {
        m_isOver.release();
        m_clock->wait();
    }
    std::set_terminate(previousTerminate);
    if (!m_started)
        return;
    const int left = StepHost::StartedProcesses::end();
    removeHandlers();
    isWatching = false;
    if (left == 1)
        say(QStringLiteral("1 process that the plug-ins left running was ended"));
    else if (left > 1)
        say(QStringLiteral("%1 processes that the plug-ins left running were ended").arg(left));
}

void FaultWatch::setWork(const QString &work)
{
    constexpr int shown = 80;
    // Each takes six bytes at most, as an escape.
    static_assert(6 * shown < maxWorkSize, "room for the work");
    const QByteArray text = StepHost::inOneLine(work.left(shown)).toUtf8();
    if (Isolation::isWorker())
        Isolation::noteWork(text);
    char *next = currentWork == works[0] ? works[1] : works[0];
    qstrncpy(next, text.constData(), maxWorkSize);
    currentWork = next;
}

bool FaultWatch::limitMemory(std::optional<qint64> bytes)
{
    const std::optional<qint64> machine = StepHost::machineMemory();
    if (!bytes && !machine)
        return true;
    m_memory = std::make_unique<StepHost::MemoryLimit>(bytes ? *bytes : *machine / 2);
    const std::optional<qint64> limit = m_memory->bytes();
    if (limit) {
        const QByteArray fault = "memory ran out, with a limit of " + shownSize(*limit).toUtf8() + ',';
        qstrncpy(memoryFault, fault.constData(), maxFaultSize);
    }
    return limit || !bytes;
}

int FaultWatch::refuseForMemory() const
{
    tell(memoryFault);
    return ExitRefused;
}

void FaultWatch::limitTime(double seconds)
{
    constexpr int msPerSecond = 1000;
    const int limit = qMax(1, int(seconds * msPerSecond));
    const QByteArray fault = "the time limit of " + QByteArray::number(seconds) + " s ran out";
    m_clock.reset(QThread::create([this, limit, fault] {
        if (m_isOver.tryAcquire(1, limit))
            return;
        tell(fault.constData());
        std::_Exit(ExitRefused);
    }));
    m_clock->start();
}
