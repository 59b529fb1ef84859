#include "Isolation.h"

#include "FaultWatch.h"
#include "console/Console.h"

#include "host/running/OutputChannel.h"
#include "host/running/ProcessTree.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QUuid>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

namespace
{
constexpr char workerName[] = "isolated-worker";

// What the worker hands over: lines that begin with a mark. The bytes of the result follow the last line.
constexpr char workMark = 'w';
constexpr char resultMark = 'r';
std::FILE *channel = nullptr;

/// What is known of a worker.
struct WorkerState
{
    QByteArray work = "before the work began";
    int status = -1; ///< Until it handed over what came of the work.
};

// Reads the lines that have come. Behind the last one is the result.
void readLines(QProcess &worker, WorkerState &state)
{
    while (state.status < 0 && worker.canReadLine()) {
        const QByteArray line = worker.readLine().chopped(1);
        if (line.startsWith(workMark))
            state.work = line.mid(1);
        else if (line.startsWith(resultMark))
            state.status = line.mid(1).toInt();
    }
}

// How the worker ended that did not hand over a result.
QString endOfWorker(const QProcess &worker)
{
    if (worker.error() == QProcess::FailedToStart)
        return QStringLiteral("no process could be started: ") + worker.errorString();
    return worker.exitStatus() == QProcess::CrashExit
        ? StepHost::signalName(worker.exitCode())
        : QStringLiteral("the process was ended with status %1").arg(worker.exitCode());
}
} // namespace

namespace Isolation
{
void becomeWorker(int &argc, char *argv[])
{
    if (argc < 2 || std::strcmp(argv[1], workerName) != 0)
        return;
    std::move(argv + 2, argv + argc + 1, argv + 1);
    --argc;
    channel = StepHost::takeStandardOutput();
    StepHost::leadProcessTree();
}

bool isWorker()
{
    return channel != nullptr;
}

void noteWork(const QByteArray &work)
{
    std::fprintf(channel, "%c%s\n", workMark, work.constData());
    std::fflush(channel);
}

void handOver(int status, const QByteArray &result)
{
    std::fprintf(channel, "%c%d\n", resultMark, status);
    std::fwrite(result.constData(), 1, std::size_t(result.size()), channel);
    std::fflush(channel);
}

int runWorker(double timeLimit, QByteArray &result)
{
    constexpr int msPerSecond = 1000;
    const int limit = timeLimit > 0 ? qMax(1, int(timeLimit * msPerSecond)) : -1;
    const QString mark = QUuid::createUuid().toString(QUuid::WithoutBraces);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    StepHost::markProcessTree(environment, mark);
    StepHost::ChildProcess worker;
    worker.setProcessEnvironment(environment);
    worker.setInputChannelMode(QProcess::ForwardedInputChannel);
    worker.setProcessChannelMode(QProcess::ForwardedErrorChannel);

    std::optional<FaultWatch> watch(std::in_place, QStringLiteral("while a process of its own did the work"));
    QElapsedTimer timer;
    timer.start();
    worker.start(QCoreApplication::applicationFilePath(),
                 QStringList(QLatin1String(workerName)) + QCoreApplication::arguments().mid(1));
    const qint64 id = worker.waitForStarted(-1) ? worker.processId() : 0;
    WorkerState state;
    const auto timeLeft = [&] { return limit < 0 ? -1 : int(qMax(qint64(0), limit - timer.elapsed())); };
    while (worker.state() != QProcess::NotRunning && worker.waitForReadyRead(timeLeft()))
        readLines(worker, state);
    const bool isLate = worker.state() != QProcess::NotRunning && !worker.waitForFinished(timeLeft());
    if (isLate)
        worker.kill();
    worker.waitForFinished(-1);
    watch.reset();
    // On systems where the watch does not know what was started.
    StepHost::endProcessTree(worker, id, mark);
    readLines(worker, state);
    if (!isLate && worker.exitStatus() == QProcess::NormalExit && state.status == worker.exitCode()) {
        result = worker.readAll();
        return state.status;
    }
    const QString end =
        isLate ? QStringLiteral("the time limit of %1 s ran out").arg(timeLimit) : endOfWorker(worker);
    return refuse(end + QLatin1Char(' ') + QString::fromUtf8(state.work)
                  + QLatin1String("; nothing was written"));
}
} // namespace Isolation
