#include "RunWorker.h"

#include "OutputChannel.h"
#include "ProcessTree.h"
#include "RunChannel.h"
#include "StepProbe.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/ErrorTexts.h"
#include "host/values/ItemValue.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"

#include <QCoreApplication>
#include <QThread>
#include <QtEndian>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace StepHost
{
namespace
{
constexpr int exitOrphaned = 1;

std::FILE *channel = nullptr;
std::atomic<bool> shouldStop{false};

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

QByteArray readRequest()
{
    char length[sizeof(quint32)];
    if (std::fread(length, 1, sizeof length, stdin) != sizeof length)
        std::_Exit(exitOrphaned);
    QByteArray request(int(qFromBigEndian<quint32>(length)), Qt::Uninitialized);
    if (std::fread(request.data(), 1, std::size_t(request.size()), stdin) != std::size_t(request.size()))
        std::_Exit(exitOrphaned);
    return request;
}

// Waits for the one thing that can still come, the wish to stop, and for the end of who would send it.
void listen()
{
    while (std::fgetc(stdin) != EOF)
        shouldStop = true;
    std::_Exit(exitOrphaned);
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
        std::optional<RunRequest> next = unpackRequest(readRequest());
        if (!next)
            refuse(ErrorTexts::tr("the run was not understood"));
        request = std::move(*next);
    }
}

// Notes what differs in `now` from `before`.
void noteChanges(const VariableScope &before, const VariableScope &now, RunNote &note)
{
    const QStringList oldNames = before.names();
    for (const QString &name : oldNames) {
        if (!now.contains(referenceTo(name)))
            note.removed.append(name);
    }
    const QStringList names = now.names();
    for (const QString &name : names) {
        const QString reference = referenceTo(name);
        ScriptVariable variable{name, now.typeOf(reference), now.get(reference)};
        const bool isChanged = !before.contains(reference) || before.typeOf(reference) != variable.type
            || !ItemValue::same(before.get(reference), variable.value);
        if (!isChanged)
            continue;
        if (!isSendable(variable.value)) {
            note.result.warnings.append(ErrorTexts::tr("the value of %1 cannot be shown: its type is %2")
                                            .arg(quoted(name), QLatin1String(variable.value.typeName())));
            variable.value = QVariant();
        }
        note.variables.push_back(variable);
    }
}

[[noreturn]] void work()
{
    const std::optional<RunRequest> request = unpackRequest(readRequest());
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
