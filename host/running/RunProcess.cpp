#include "RunProcess.h"

#include "ProcessTree.h"
#include "RunChannel.h"
#include "RunWorker.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace StepHost
{
namespace
{
constexpr int pollIntervalMs = 50;
constexpr int maxPrinted = 10000;

bool wantsToWait(const RunObserver &observer)
{
    return observer.before && (!observer.wantsToWait || observer.wantsToWait());
}
} // namespace

/// A run that goes on.
class RunProcess::Session
{
public:
    Session(const RunObserver &observer, int stepCount, VariableScope &scope, bool waits)
        : m_observer(observer), m_scope(scope), m_isWaiting(waits)
    {
        m_result.steps.resize(std::size_t(stepCount));
        m_worker.setProcessChannelMode(QProcess::SeparateChannels);
    }

    ~Session()
    {
        m_worker.kill();
        m_worker.waitForFinished(-1);
    }

    /// Whether the process itself said why there is no run.
    bool isRefused() const
    {
        return m_isRefused;
    }

    /// What the process told of the plug-ins.
    QStringList remarks() const
    {
        return m_remarks;
    }

    RunResult carryOut(const QByteArray &request)
    {
        m_worker.start(QCoreApplication::applicationFilePath(), {QLatin1String(runWorkerName)});
        if (!m_worker.waitForStarted(-1)) {
            noRun(ErrorTexts::tr("no process could be started: %1").arg(m_worker.errorString()));
            return m_result;
        }
        m_worker.write(MessageReader::framed(request));
        while (!m_isOver && m_worker.state() != QProcess::NotRunning)
            goOn();
        // What it told before it ended.
        m_worker.waitForFinished(pollIntervalMs);
        readNotes();
        if (!m_isOver)
            endEarly(endOf(m_worker));
        keepPrinted();
        return m_result;
    }

private:
    void goOn()
    {
        m_worker.waitForReadyRead(pollIntervalMs);
        readNotes();
        keepPrinted();
        if (m_isOver)
            return;
        if (m_observer.shouldEnd && m_observer.shouldEnd()) {
            m_result.end = RunEnd::Stopped;
            m_worker.kill();
            m_worker.waitForFinished(-1);
            readNotes();
            if (!m_isOver)
                endEarly(tr("it was stopped in the middle"));
        } else if (!m_isAskedToStop && m_observer.shouldStop && m_observer.shouldStop()) {
            m_isAskedToStop = true;
            send(RunAnswer());
        } else if (!m_isWaiting && wantsToWait(m_observer)) {
            m_isWaiting = true;
            RunAnswer answer;
            answer.kind = RunAnswer::Wait;
            send(answer);
        }
    }

    void send(const RunAnswer &answer)
    {
        m_worker.write(MessageReader::framed(packAnswer(answer)));
        // While the process has something to tell, waiting for that alone would write nothing.
        m_worker.waitForBytesWritten(pollIntervalMs);
    }

    // The process waits before the step `index` for what to do with it.
    void sendOrder(int index)
    {
        RunAnswer answer;
        answer.kind = RunAnswer::Order;
        const VariableScope before = m_scope;
        if (m_observer.before)
            answer.order = m_observer.before(index, m_scope);
        VariableChanges changes = VariableChanges::between(before, m_scope);
        answer.variables = std::move(changes.variables);
        answer.removed = changes.removed;
        send(answer);
    }

    void readNotes()
    {
        m_reader.append(m_worker.readAllStandardOutput());
        while (!m_isOver) {
            const std::optional<QByteArray> message = m_reader.next();
            if (!message)
                break;
            const std::optional<RunNote> note = unpackNote(*message);
            if (note)
                take(*note);
            else
                endEarly(tr("what it told of the run was not understood"));
        }
        if (!m_isOver && m_reader.isBroken())
            endEarly(tr("what it told of the run was not understood"));
    }

    void take(const RunNote &note)
    {
        const bool isStep = note.index >= 0 && note.index < int(m_result.steps.size());
        switch (note.kind) {
        case RunNote::Refused:
            m_isRefused = true;
            noRun(note.text);
            break;
        case RunNote::Work:
            m_work = note.text;
            break;
        case RunNote::Waiting:
            m_hasBegun = true;
            if (isStep)
                sendOrder(note.index);
            break;
        case RunNote::Starting:
            m_running = isStep ? note.index : -1;
            m_hasBegun = true;
            if (isStep && m_observer.starting)
                m_observer.starting(note.index);
            break;
        case RunNote::Finished:
            if (isStep)
                finishStep(note);
            break;
        case RunNote::Ended:
            m_result.end = note.end;
            m_remarks = note.result.warnings;
            m_isOver = true;
            break;
        case RunNote::KindCount:
            break;
        }
    }

    void finishStep(const RunNote &note)
    {
        m_running = -1;
        m_hasBegun = true;
        m_result.steps[std::size_t(note.index)] = note.result;
        VariableChanges::apply(note.variables, note.removed, m_scope);
        if (m_observer.finished)
            m_observer.finished(note.index, note.result);
        if (m_observer.progress)
            m_observer.progress(note.index + 1, int(m_result.steps.size()));
    }

    void noRun(const QString &reason)
    {
        m_result.end = RunEnd::NotRun;
        m_result.error = reason;
        m_isOver = true;
    }

    // The process has ended, for `reason`, before the run was over.
    void endEarly(const QString &reason)
    {
        m_isOver = true;
        if (!m_hasBegun) {
            if (m_result.end == RunEnd::Stopped) {
                m_result.error = m_work;
                return;
            }
            noRun(m_work.isEmpty() ? reason : ErrorTexts::tr("%1, while %2").arg(reason, m_work));
            return;
        }
        if (m_result.end != RunEnd::Stopped)
            m_result.end = RunEnd::StepFailed;
        if (m_running < 0) {
            m_result.error = reason;
            return;
        }
        StepResult &step = m_result.steps[std::size_t(m_running)];
        step.outcome = StepOutcome::Failed;
        step.failure = reason;
        if (m_observer.finished)
            m_observer.finished(m_running, step);
    }

    void keepPrinted()
    {
        const QByteArray printed = m_worker.readAllStandardError();
        m_result.printed += printed.left(maxPrinted - m_result.printed.size());
    }

    const RunObserver &m_observer;
    VariableScope &m_scope;
    ChildProcess m_worker;
    MessageReader m_reader;
    RunResult m_result;
    QStringList m_remarks;
    QString m_work; ///< What the process was at before the run began.
    int m_running = -1; ///< The step whose turn it is.
    bool m_isRefused = false;
    bool m_hasBegun = false;
    bool m_isAskedToStop = false;
    bool m_isWaiting; ///< The process waits before each step.
    bool m_isOver = false;
};

RunResult RunProcess::run(const Script &script, VariableScope &scope, const StepCatalogue &catalogue,
                          const RunObserver &observer)
{
    const bool waits = wantsToWait(observer);
    const Result<QByteArray> request = packRequest(script, scope, catalogue, waits);
    if (!request) {
        RunResult result;
        result.steps.resize(script.steps.size());
        result.end = RunEnd::NotRun;
        result.error = request.error();
        return result;
    }
    return Session(observer, int(script.steps.size()), scope, waits).carryOut(*request);
}

Result<QStringList> RunProcess::probe(const QString &fileName, int timeLimit)
{
    constexpr int msPerSecond = 1000;
    QElapsedTimer clock;
    clock.start();
    RunObserver observer;
    observer.shouldEnd = [&clock, timeLimit] { return clock.hasExpired(timeLimit); };
    VariableScope scope;
    Session session(observer, 0, scope, false);
    const RunResult result = session.carryOut(packProbe(QFileInfo(fileName).absoluteFilePath()));
    if (result.end == RunEnd::Stopped)
        return failure(tr("%1: it took longer than %2 s, while %3")
                           .arg(fileName, QString::number(timeLimit / msPerSecond), result.error));
    if (result.end == RunEnd::NotRun && !session.isRefused())
        return failure(tr("%1: %2").arg(fileName, result.error));
    QStringList remarks;
    const QStringList told = session.remarks();
    for (const QString &remark : told)
        remarks.append(tr("%1: %2").arg(fileName, remark));
    if (!result.printed.isEmpty())
        remarks.append(tr("%1 printed: %2").arg(fileName, messageLine(QString::fromUtf8(result.printed))));
    return remarks;
}
} // namespace StepHost
