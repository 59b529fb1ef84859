#include "FixturePlugin.h"

#include <QByteArray>

#include <csignal>
#include <cstdlib>
#include <vector>

#ifndef Q_OS_WIN
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace
{
using Fault = void (*)();

bool isFatalToUnload = false;

// Not what a sanitizer knows from the source.
void writeToNowhere()
{
    volatile quintptr address = 16;
    *reinterpret_cast<volatile int *>(address) = 1;
}

int recurse(int depth)
{
    volatile char frame[4096];
    frame[0] = char(depth);
    return depth == 0 ? frame[0] : recurse(depth - 1) + frame[0];
}

void useUpTheStack()
{
    recurse(1 << 20);
}

void throwNumber()
{
    throw 1;
}

void throwWhereNothingMayBeThrown() noexcept
{
    throwNumber();
}

// Only under a limit.
void useUpTheMemory() noexcept
{
    std::vector<QByteArray> blocks;
    for (;;)
        blocks.push_back(QByteArray(1 << 20, 'x'));
}

void exitAsIfAllWereWell()
{
    std::exit(0);
}

void leaveAsIfAllWereWell()
{
    std::_Exit(0);
}

void kill()
{
#ifndef Q_OS_WIN
    std::raise(SIGKILL);
#endif
}

void hang()
{
    for (volatile bool isIdle = false;;)
        isIdle = !isIdle;
}

void interrupt()
{
    std::raise(SIGINT);
}

void terminate()
{
    std::raise(SIGTERM);
}

void abortWhenUnloaded()
{
    isFatalToUnload = true;
}

// Starts a process that has neither parent, session nor environment in common with this one. While it lives, it holds the
// pipe "daemon" of the current folder open.
void leaveDaemon()
{
#ifndef Q_OS_WIN
    int started[2];
    if (pipe(started) != 0)
        return;
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        if (fork() != 0)
            _exit(0);
        fcntl(started[1], F_SETFD, FD_CLOEXEC);
        const int daemon = open("daemon", O_WRONLY);
        if (write(daemon, "x", 1) == 1) {
            char *const none = nullptr;
            execle("/bin/sleep", "sleep", "60", nullptr, &none);
        }
        _exit(1);
    }
    close(started[1]);
    waitpid(child, nullptr, 0);
    char end;
    while (read(started[0], &end, 1) < 0) { } // Until it has begun.
    close(started[0]);
#endif
}

class FatalStep : public FixtureStep
{
public:
    FatalStep(const QString &typeId, Fault fault, QObject *parent = nullptr)
        : FixtureStep(typeId, parent), m_fault(fault)
    {
    }

    void doOperation() const override
    {
        m_fault();
    }
    Operation *clone(QObject *parent) const override
    {
        return new FatalStep(typeId(), m_fault, parent);
    }

private:
    Fault m_fault;
};

class FatalSummaryStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;

    QString toString() const override
    {
        std::abort();
    }
    Operation *clone(QObject *parent) const override
    {
        return new FatalSummaryStep(typeId(), parent);
    }
};

// Deleting one that ran is fatal; the prototype never does.
class FatalDestructorStep : public FixtureStep
{
public:
    using FixtureStep::FixtureStep;
    ~FatalDestructorStep() override
    {
        if (m_hasRun)
            std::abort();
    }

    void doOperation() const override
    {
        m_hasRun = true;
    }
    Operation *clone(QObject *parent) const override
    {
        return new FatalDestructorStep(typeId(), parent);
    }

private:
    mutable bool m_hasRun = false;
};
} // namespace

class FatalSetterStep : public FixtureStep
{
    Q_OBJECT
    Q_PROPERTY(int setting READ setting WRITE setSetting)

public:
    using FixtureStep::FixtureStep;

    int setting() const
    {
        return 0;
    }
    void setSetting(int)
    {
        std::abort();
    }
    Operation *clone(QObject *parent) const override
    {
        return new FatalSetterStep(typeId(), parent);
    }
};

class FatalSteps : public FixturePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID IOperationPlugin_iid)

public:
    ~FatalSteps() override
    {
        if (isFatalToUnload)
            std::abort();
    }

    QList<Operation *> createPrototypes() override
    {
        return {new FixtureStep("fixture.first"),
                new FatalStep("fixture.abort", std::abort),
                new FatalStep("fixture.crash", writeToNowhere),
                new FatalStep("fixture.recursion", useUpTheStack),
                new FatalStep("fixture.noexcept", throwWhereNothingMayBeThrown),
                new FatalStep("fixture.memory", useUpTheMemory),
                new FatalStep("fixture.exit", exitAsIfAllWereWell),
                new FatalStep("fixture.leave", leaveAsIfAllWereWell),
                new FatalStep("fixture.kill", kill),
                new FatalStep("fixture.hang", hang),
                new FatalStep("fixture.interrupt", interrupt),
                new FatalStep("fixture.terminate", terminate),
                new FatalStep("fixture.unloading", abortWhenUnloaded),
                new FatalStep("fixture.daemon", leaveDaemon),
                new FatalStep("fixture.abort" + QString(200, 'x'), std::abort),
                new FatalSummaryStep("fixture.summary"),
                new FatalDestructorStep("fixture.destructor"),
                new FatalSetterStep("fixture.setter")};
    }
};

#include "FatalSteps.moc"
