#include "CheckProcess.h"

#include "CheckContext.h"
#include "host/checks/snapshot/ProcessFacts.h"
#include "host/running/Breadcrumb.h"
#include "host/running/ProcessTree.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QProcessEnvironment>
#include <QSaveFile>
#include <QUuid>

namespace StepHost
{
namespace
{
constexpr CheckOutcome outcomes[] = {CheckOutcome::Passed, CheckOutcome::Warning, CheckOutcome::Skipped,
                                     CheckOutcome::Failed, CheckOutcome::Crashed, CheckOutcome::TimedOut};

const QString seedVariable = QStringLiteral("QUILLMAP_CHECK_SEED");
const QString scriptsVariable = QStringLiteral("QUILLMAP_CHECK_SCRIPTS");
const QString companionsVariable = QStringLiteral("QUILLMAP_CHECK_COMPANIONS");
const QString releaseVariable = QStringLiteral("QUILLMAP_CHECK_RELEASE");

std::optional<CheckResult> readCheckResult(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    for (const CheckOutcome outcome : outcomes) {
        if (outcomeWord(outcome) != object.value(QLatin1String("outcome")).toString())
            continue;
        CheckResult result;
        result.outcome = outcome;
        result.reason = object.value(QLatin1String("reason")).toString();
        const QJsonArray facts = object.value(QLatin1String("facts")).toArray();
        for (const QJsonValue &fact : facts)
            result.facts.append(
                {fact[QLatin1String("what")].toString(), fact[QLatin1String("value")].toString()});
        return result;
    }
    return std::nullopt;
}

// Gives a process folders of its own for what it writes.
void setFolders(QProcessEnvironment &environment, const QString &folder)
{
#ifdef Q_OS_WIN
    Q_UNUSED(folder)
    Q_UNUSED(environment)
#else
    static const char *const variables[] = {
        "HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"};
    for (const char *variable : variables) {
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(variable).toLower();
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        environment.insert(QLatin1String(variable), path);
    }
    environment.insert(QLatin1String(checkFolderVariable), folder);
#endif
}

const QString againVariable = QStringLiteral("QUILLMAP_CHECK_AGAIN");
const QString elsewhereVariable = QStringLiteral("QUILLMAP_CHECK_ELSEWHERE");

// Nobody but root sets a clock, but between the two ends of the date line there are 26 hours: whatever time it is, it is
// another day here than elsewhere.
const QString firstTimeZone = QStringLiteral("<+14>-14");
const QString lastTimeZone = QStringLiteral("<-12>12");

void setElsewhere(QProcessEnvironment &environment)
{
    const bool isGerman = QLocale::system().language() == QLocale::German;
    environment.insert(QStringLiteral("LC_ALL"),
                       isGerman ? QStringLiteral("fr_FR.UTF-8") : QStringLiteral("de_DE.UTF-8"));
    environment.insert(QStringLiteral("LANGUAGE"), isGerman ? QStringLiteral("fr") : QStringLiteral("de"));
    environment.insert(QStringLiteral("TZ"), lastTimeZone);
    environment.insert(elsewhereVariable, QStringLiteral("1"));
}

// A library that was built with a sanitizer takes only its own allocator, which has to be there before all others.
void preloadSanitizer(QProcessEnvironment &environment, const QString &runtime)
{
    if (runtime.isEmpty())
        return;
    const QString preload = QStringLiteral("LD_PRELOAD");
    environment.insert(preload, (runtime + QLatin1Char(' ') + environment.value(preload)).trimmed());
    // What Qt keeps until the end of a process is no leak of the plug-in's, and what damaged records ask for is a lot.
    const QString name = QStringLiteral("ASAN_OPTIONS");
    environment.insert(
        name,
        QStringLiteral("detect_leaks=0:quarantine_size_mb=16:clear_shadow_mmap_threshold=1048576:")
            + environment.value(name));
}
} // namespace

CheckProcess::CheckProcess(const CheckTask &task, const CheckRunOptions &options)
    : m_task(task), m_timeLimit(options.timeLimit), m_mark(QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    QProcessEnvironment variables = environment();
    setCheckSetup(variables, options);
    m_process.setProcessEnvironment(variables);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    const QString current = m_task.folder + QLatin1String("/current");
    if (QDir().mkpath(current))
        m_process.setWorkingDirectory(current);
    connect(&m_process, &QProcess::readyReadStandardError, this, &CheckProcess::readErrors);
    connect(&m_process, &QProcess::started, this, [this] { m_processId = m_process.processId(); });
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &CheckProcess::finishEnded);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            failToStart();
    });
    connect(&m_timer, &QTimer::timeout, this, &CheckProcess::timeOut);
    m_timer.setSingleShot(true);
    m_process.setProgram(options.program);
    m_process.setArguments(QStringList(options.arguments)
                           << m_task.pluginFile << m_task.checkId << resultFile());
}

CheckProcess::~CheckProcess()
{
    m_process.disconnect(this);
    if (m_process.state() != QProcess::NotRunning)
        endProcessTree(m_process, m_processId, m_mark);
    m_process.waitForFinished(-1);
}

QProcessEnvironment CheckProcess::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    markProcessTree(environment, m_mark);
    setFolders(environment, m_task.folder);
    if (m_task.isAgain)
        environment.insert(againVariable, QStringLiteral("1"));
    if (m_task.worlds == CheckWorlds::Elsewhere)
        environment.insert(QStringLiteral("TZ"), firstTimeZone);
    if (m_task.worlds == CheckWorlds::Elsewhere && m_task.isAgain)
        setElsewhere(environment);
    preloadSanitizer(environment, m_task.preload);
    return environment;
}

QString CheckProcess::resultFile() const
{
    return m_task.folder + QLatin1String("/result");
}

void CheckProcess::start(const Done &done)
{
    m_done = done;
    m_elapsed.start();
    startOnce();
}

void CheckProcess::startOnce()
{
    ++m_starts;
    m_timer.start(m_timeLimit);
    m_process.start();
}

// That a process does not start is the system's doing, never the plug-in's, and may be over in a moment.
void CheckProcess::failToStart()
{
    constexpr int maxStarts = 3;
    constexpr int pause = 100;
    m_timer.stop();
    if (m_starts < maxStarts)
        QTimer::singleShot(pause, this, &CheckProcess::startOnce);
    else
        finish(CheckOutcome::Crashed,
               QStringLiteral("the process of the check does not start: %1").arg(m_process.errorString()));
}

void CheckProcess::timeOut()
{
    m_isTimedOut = true;
    endProcessTree(m_process, m_processId, m_mark);
}

// Keeps only the end, however much there is.
void CheckProcess::readErrors()
{
    constexpr int kept = 1000;
    m_errors = (m_errors + m_process.readAllStandardError()).right(kept);
}

void CheckProcess::finish(CheckOutcome outcome, const QString &reason)
{
    m_timer.stop();
    m_done({{m_task.checkId, outcome, messageLine(reason), m_elapsed.elapsed()}, std::nullopt});
}

QString CheckProcess::crashReason(int exitCode, QProcess::ExitStatus status, bool isDone)
{
    readErrors();
    const QString when =
        isDone ? QStringLiteral("after the check") : QStringLiteral("before the check was done");
    QString reason;
    if (status != QProcess::CrashExit)
        reason = QStringLiteral("the process ended %1 (exit code %2)").arg(when).arg(exitCode);
    else
        reason = QStringLiteral("the process crashed %1 (signal or code %2, %3)")
                     .arg(when)
                     .arg(exitCode)
                     .arg(signalName(exitCode));
    const QString call = lastBreadcrumb(breadcrumbFileOf(resultFile()));
    if (!call.isEmpty())
        reason += QStringLiteral(" in %1").arg(call);
    const QString lastLine = QString::fromUtf8(m_errors.trimmed().split('\n').last());
    if (!lastLine.isEmpty())
        reason += QStringLiteral("; its last words: %1").arg(lastLine);
    return reason;
}

void CheckProcess::finishEnded(int exitCode, QProcess::ExitStatus status)
{
    endProcessTree(m_process, m_processId, m_mark);
    m_timer.stop();
    const QString call = lastBreadcrumb(breadcrumbFileOf(resultFile()));
    std::optional<CheckResult> result = readCheckResult(resultFile());
    if (result) {
        result->id = m_task.checkId;
        result->milliseconds = m_elapsed.elapsed();
    }
    const bool isEnded = status == QProcess::NormalExit && exitCode == 0 && !m_isTimedOut;
    // What ends the process while it introduces itself is found by the checks of these calls.
    if (result && (isEnded || call == QLatin1String(introducingCall))) {
        m_done({*result, std::nullopt});
        return;
    }
    if (m_isTimedOut) {
        QString reason = QStringLiteral("the check did not end within its limit of %1 ms").arg(m_timeLimit);
        if (!call.isEmpty())
            reason += QStringLiteral("; it was in %1").arg(call);
        finish(CheckOutcome::TimedOut, reason);
        return;
    }
    const CheckResult crash{m_task.checkId, CheckOutcome::Crashed,
                            messageLine(crashReason(exitCode, status, result.has_value())),
                            m_elapsed.elapsed()};
    const bool isLate = call == QLatin1String(unloadingCall) || call == QLatin1String(endingCall);
    m_done({crash, isLate ? result : std::nullopt});
}

void setCheckSetup(QProcessEnvironment &environment, const CheckRunOptions &options)
{
    environment.insert(seedVariable, QString::number(options.seed));
    environment.insert(scriptsVariable, options.scripts.join(QLatin1Char('\n')));
    environment.insert(companionsVariable, options.companions.join(QLatin1Char('\n')));
    environment.insert(releaseVariable, options.releaseFile);
}

CheckSetup handedCheckSetup(const IconRenderer &renderer)
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    CheckSetup setup{renderer, environment.value(seedVariable, QStringLiteral("1")).toUInt()};
    setup.isAgain = environment.contains(againVariable);
    setup.isElsewhere = environment.contains(elsewhereVariable);
    setup.scripts = environment.value(scriptsVariable).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    setup.companions = environment.value(companionsVariable).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    setup.releaseFile = environment.value(releaseVariable);
    return setup;
}

bool writeCheckResult(const QString &fileName, const CheckResult &result)
{
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    json.key("outcome").text(outcomeWord(result.outcome));
    json.key("reason").text(result.reason);
    json.key("facts").openArray();
    for (const CheckFact &fact : result.facts) {
        json.openObject();
        json.key("what").text(fact.what);
        json.key("value").text(fact.value);
        json.close();
    }
    json.close();
    json.close();
    QSaveFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0 && file.commit();
}

QString breadcrumbFileOf(const QString &resultFile)
{
    return resultFile + QLatin1String(".at");
}
} // namespace StepHost
