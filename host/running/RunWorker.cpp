#include "RunWorker.h"

#include "OutputChannel.h"
#include "ProcessTree.h"
#include "RunChannel.h"
#include "StepProbe.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"

#include <QCoreApplication>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>
#include <QtEndian>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

namespace StepHost
{
namespace
{
constexpr int exitOrphaned = 1;

std::FILE *channel = nullptr;
std::atomic<bool> shouldStop{false};
std::atomic<bool> shouldWait{false};

void tell(const RunNote &note)
{
    const QByteArray framed = MessageReader::framed(packNote(note));
    std::fwrite(framed.constData(), 1, std::size_t(framed.size()), channel);
    std::fflush(channel);
}

[[noreturn]] void end(const RunNote &note)
{
    tell(note);
    std::fflush(stdout);
    // Nothing that the plug-ins would do at the end is of use any more.
    std::_Exit(0);
}

[[noreturn]] void refuse(const QString &reason)
{
    RunNote note;
    note.kind = RunNote::Refused;
    note.text = reason;
    end(note);
}

void tellWork(const QString &work)
{
    RunNote note;
    note.text = work;
    tell(note);
}

// The next message of who asked for the run. Ends the program when there is nobody any more.
QByteArray readMessage()
{
    char length[sizeof(quint32)];
    if (std::fread(length, 1, sizeof length, stdin) != sizeof length)
        std::_Exit(exitOrphaned);
    QByteArray message(int(qFromBigEndian<quint32>(length)), Qt::Uninitialized);
    if (std::fread(message.data(), 1, std::size_t(message.size()), stdin) != std::size_t(message.size()))
        std::_Exit(exitOrphaned);
    return message;
}

/// The orders that have come, for the step that waits for one.
class Orders
{
public:
    void put(const RunAnswer &order)
    {
        const QMutexLocker locker(&m_mutex);
        m_order = order;
        m_hasCome.wakeAll();
    }

    RunAnswer take()
    {
        const QMutexLocker locker(&m_mutex);
        while (!m_order)
            m_hasCome.wait(&m_mutex);
        const RunAnswer order = std::move(*m_order);
        m_order.reset();
        return order;
    }

private:
    QMutex m_mutex;
    QWaitCondition m_hasCome;
    std::optional<RunAnswer> m_order;
};

Orders &orders()
{
    static Orders all;
    return all;
}

// Takes what can still come: the wish to stop, and orders for the step that waits.
[[noreturn]] void listen()
{
    for (;;) {
        const std::optional<RunAnswer> answer = unpackAnswer(readMessage());
        if (!answer)
            std::_Exit(exitOrphaned);
        if (answer->kind == RunAnswer::EndSoon)
            shouldStop = true;
        else if (answer->kind == RunAnswer::Wait)
            shouldWait = true;
        else
            orders().put(*answer);
    }
}

Script makeScript(const RunRequest &request, const StepCatalogue &catalogue)
{
    Script script;
    for (const SentStep &sent : request.steps) {
        tellWork(ErrorTexts::tr("step %1 was made").arg(script.steps.size() + 1));
        ScriptStep step;
        step.enabled = sent.enabled;
        step.operation = makeSentStep(sent, catalogue);
        if (!step.operation)
            refuse(ErrorTexts::tr("step %1: the plug-in gives no copy of it").arg(script.steps.size() + 1));
        script.steps.push_back(std::move(step));
    }
    return script;
}

// Tries what is asked for, until nobody asks any more.
[[noreturn]] void tryAll(RunRequest request, const StepCatalogue &catalogue)
{
    for (;;) {
        const Result<QStringList> tried = carryOutTrial(request, catalogue, tellWork);
        RunNote note;
        note.kind = tried ? RunNote::Ended : RunNote::Refused;
        if (tried)
            note.result.warnings = *tried;
        else
            note.text = tried.error();
        tell(note);
        std::optional<RunRequest> next = unpackRequest(readMessage());
        if (!next)
            refuse(ErrorTexts::tr("the run was not understood"));
        request = std::move(*next);
    }
}

// Notes what differs in `now` from `before`.
void noteChanges(const VariableScope &before, const VariableScope &now, RunNote &note)
{
    VariableChanges changes = VariableChanges::between(before, now);
    for (ScriptVariable &variable : changes.variables) {
        if (isSendable(variable.value))
            continue;
        note.result.warnings.append(
            ErrorTexts::tr("the value of %1 cannot be shown: its type is %2")
                .arg(quoted(variable.name), QLatin1String(variable.value.typeName())));
        variable.value = QVariant();
    }
    note.variables = std::move(changes.variables);
    note.removed = changes.removed;
}

// Waits before the step `index` for what to do with it.
RunOrder orderFor(int index, VariableScope &scope)
{
    RunNote note;
    note.kind = RunNote::Waiting;
    note.index = index;
    tell(note);
    const RunAnswer answer = orders().take();
    VariableChanges::apply(answer.variables, answer.removed, scope);
    return answer.order;
}

[[noreturn]] void work()
{
    const std::optional<RunRequest> request = unpackRequest(readMessage());
    if (!request)
        refuse(ErrorTexts::tr("the run was not understood"));
    if (request->task != RunRequest::Trial) {
        static QThread *const listener = QThread::create(listen);
        listener->start();
    }
    StepCatalogue catalogue;
    for (const QString &plugin : request->plugins) {
        tellWork(ErrorTexts::tr("the plug-in %1 was loaded").arg(plugin));
        const auto added = catalogue.addPlugin(plugin);
        if (!added)
            refuse(added.error().reason);
    }
    if (request->task == RunRequest::Trial)
        tryAll(*request, catalogue);
    const QStringList remarks =
        request->task == RunRequest::Probe ? probeTypes(catalogue, tellWork) : QStringList();
    const Script script = makeScript(*request, catalogue);
    VariableScope scope;
    for (const ScriptVariable &variable : request->variables) {
        scope.declare(referenceTo(variable.name), variable.type);
        scope.set(referenceTo(variable.name), variable.value);
    }

    VariableScope told = scope;
    RunObserver observer;
    observer.shouldStop = [] { return shouldStop.load(); };
    if (request->waits)
        shouldWait = true;
    observer.wantsToWait = [] { return shouldWait.load(); };
    observer.before = [&told](int index, VariableScope &variables) {
        const RunOrder order = orderFor(index, variables);
        told = variables;
        return order;
    };
    observer.starting = [](int index) {
        RunNote note;
        note.kind = RunNote::Starting;
        note.index = index;
        tell(note);
    };
    observer.finished = [&](int index, const StepResult &result) {
        RunNote note;
        note.kind = RunNote::Finished;
        note.index = index;
        note.result = result;
        noteChanges(told, scope, note);
        tell(note);
        told = scope;
    };
    RunNote last;
    last.kind = RunNote::Ended;
    last.result.warnings = remarks;
    last.end = runScript(script, scope, observer).end;
    end(last);
}
} // namespace

bool isRunWorker(int argc, char **argv)
{
    return argc > 1 && std::strcmp(argv[1], runWorkerName) == 0;
}

void workOnRun(int &argc, char **argv, void (*prepare)(QCoreApplication &))
{
    channel = takeStandardOutput();
    // Neither may a request be read too far, nor what was printed be lost in a crash.
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    leadProcessTree();
    QCoreApplication application(argc, argv);
    if (prepare)
        prepare(application);
    work();
}
} // namespace StepHost
