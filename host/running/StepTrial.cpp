#include "StepTrial.h"

#include "ProcessTree.h"
#include "RunChannel.h"
#include "RunWorker.h"
#include "host/plugins/StepCatalogue.h"
#include "host/values/ErrorTexts.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <QUuid>

namespace StepHost
{
namespace
{
constexpr int usualTimeLimitMs = 10000;
constexpr int msPerSecond = 1000;
} // namespace

StepTrial::StepTrial(const StepCatalogue &catalogue, QObject *parent)
    : QObject(parent), m_catalogue(catalogue), m_reader(std::make_unique<MessageReader>())
{
    m_clock.setSingleShot(true);
    m_clock.setInterval(usualTimeLimitMs);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        giveUp(ErrorTexts::tr("it took longer than %1 s").arg(m_clock.interval() / msPerSecond));
    });
    // Whoever asks first need not wait for the process then.
    tryScripts({}, this, {});
}

StepTrial::~StepTrial()
{
    endProcess();
    const QList<QProcess *> ended = findChildren<QProcess *>();
    for (QProcess *process : ended)
        process->waitForFinished(-1);
}

void StepTrial::setTimeLimit(int ms)
{
    m_clock.setInterval(ms);
}

void StepTrial::tryScripts(const QList<QByteArray> &scripts, const QObject *asker, const Then &then)
{
    ask(packTrial(scripts, m_catalogue), asker, then);
}

void StepTrial::trySetting(const Operation &step, int number, const QString &property, const QVariant &value,
                           const QObject *asker, const Then &then)
{
    const Result<QByteArray> request = packTrial(step, {number, property, value}, m_catalogue);
    if (request)
        ask(*request, asker, then);
    else
        then(failure(request.error()));
}

void StepTrial::ask(const QByteArray &request, const QObject *asker, const Then &then)
{
    m_requests.push_back({request, asker, then});
    sendNext();
}

void StepTrial::sendNext()
{
    if (m_isAsked || m_requests.empty())
        return;
    m_isAsked = true;
    if (!m_process)
        start();
    m_process->write(MessageReader::framed(m_requests.front().bytes));
    m_clock.start();
}

void StepTrial::start()
{
    m_mark = QUuid::createUuid().toString(QUuid::WithoutBraces);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    markProcessTree(environment, m_mark);
    *m_reader = MessageReader();
    m_work.clear();
    m_process = new ChildProcess(this);
    m_process->setProcessEnvironment(environment);
    // What plug-ins print there, they print here once more.
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process, &QProcess::readyReadStandardOutput, this, &StepTrial::readNotes);
    connect(m_process, &QProcess::started, this, [this] { m_processId = m_process->processId(); });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            passUntried(ErrorTexts::tr("no process could be started: %1").arg(m_process->errorString()));
    });
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, [this] {
        readNotes();
        if (m_process && m_process->state() == QProcess::NotRunning)
            giveUp(endOf(*m_process));
    });
    m_process->start(QCoreApplication::applicationFilePath(), {QLatin1String(runWorkerName)});
}

void StepTrial::readNotes()
{
    if (!m_process)
        return;
    m_reader->append(m_process->readAllStandardOutput());
    while (m_process) {
        const std::optional<QByteArray> message = m_reader->next();
        if (!message)
            break;
        const std::optional<RunNote> note = unpackNote(*message);
        if (note)
            take(*note);
        else
            giveUp(ErrorTexts::tr("what it told was not understood"));
    }
    if (m_process && m_reader->isBroken())
        giveUp(ErrorTexts::tr("what it told was not understood"));
}

void StepTrial::take(const RunNote &note)
{
    // A plug-in that writes to the channel may tell anything.
    if (!m_isAsked)
        return;
    m_clock.start();
    if (note.kind == RunNote::Work)
        m_work = note.text;
    else if (note.kind == RunNote::Refused)
        answer(failure(note.text));
    else if (note.kind == RunNote::Ended)
        answer(note.result.warnings);
}

void StepTrial::endProcess()
{
    if (!m_process)
        return;
    ChildProcess *process = m_process;
    m_process = nullptr;
    process->disconnect(this);
    endProcessTree(*process, m_processId, m_mark);
    m_processId = 0;
    if (process->state() == QProcess::NotRunning)
        process->deleteLater();
    else
        connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), process,
                &QObject::deleteLater);
}

void StepTrial::giveUp(const QString &reason)
{
    const QString work = m_work;
    endProcess();
    if (m_isAsked)
        answer(failure(work.isEmpty() ? reason : ErrorTexts::tr("%1, while %2").arg(reason, work)));
}

void StepTrial::passUntried(const QString &reason)
{
    endProcess();
    // Where there are no processes, nothing is tried, and all can be edited still.
    answer(QStringList(ErrorTexts::tr("the steps were not tried before: %1").arg(reason)));
}

void StepTrial::answer(const Answer &answer)
{
    const Request request = std::move(m_requests.front());
    m_requests.pop_front();
    m_isAsked = false;
    m_work.clear();
    m_clock.stop();
    // Not at once: who is answered may have something to ask that comes first.
    QTimer::singleShot(0, this, &StepTrial::sendNext);
    if (request.then && request.asker)
        request.then(answer);
}

void StepTrial::waitForAnswers(int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!m_requests.empty() && !clock.hasExpired(ms)) {
        sendNext();
        const int left = int(qMax(qint64(1), ms - clock.elapsed()));
        if (m_process)
            m_process->waitForReadyRead(left);
    }
}
} // namespace StepHost
