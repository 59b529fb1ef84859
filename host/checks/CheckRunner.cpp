#include "CheckRunner.h"

#include "host/running/ProcessTree.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QUuid>

#include <memory>
#include <optional>

namespace StepHost
{
namespace
{
constexpr CheckOutcome outcomes[] = {CheckOutcome::Passed, CheckOutcome::Warning, CheckOutcome::Skipped,
                                     CheckOutcome::Failed, CheckOutcome::Crashed, CheckOutcome::TimedOut};

std::optional<CheckOutcome> outcomeOf(const QString &word)
{
    for (const CheckOutcome outcome : outcomes) {
        if (outcomeWord(outcome) == word)
            return outcome;
    }
    return std::nullopt;
}

/// One check in a process of its own.
class CheckProcess : public QObject
{
public:
    CheckProcess(const QString &fileName, const QString &id, const QString &resultFile,
                 const CheckRunOptions &options, const std::function<void(const CheckResult &)> &done);

private:
    void start();
    void failToStart();
    void timeOut();
    void readErrors();
    void finish(CheckOutcome outcome, const QString &reason);
    void finishEnded(int exitCode, QProcess::ExitStatus status);

    QString m_id;
    QString m_resultFile;
    int m_timeLimit;
    std::function<void(const CheckResult &)> m_done;
    QString m_mark = QUuid::createUuid().toString(QUuid::WithoutBraces);
    qint64 m_processId = 0;
    int m_starts = 0;
    bool m_isTimedOut = false;
    QByteArray m_errors;
    QElapsedTimer m_elapsed;
    QTimer m_timer;
    ChildProcess m_process;
};

CheckProcess::CheckProcess(const QString &fileName, const QString &id, const QString &resultFile,
                           const CheckRunOptions &options,
                           const std::function<void(const CheckResult &)> &done)
    : m_id(id), m_resultFile(resultFile), m_timeLimit(options.timeLimit), m_done(done)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    markProcessTree(environment, m_mark);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
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
    m_elapsed.start();
    m_process.setProgram(options.program);
    m_process.setArguments(QStringList(options.arguments) << fileName << id << resultFile);
    start();
}

void CheckProcess::start()
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
        QTimer::singleShot(pause, this, &CheckProcess::start);
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
    m_done({m_id, outcome, messageLine(reason), m_elapsed.elapsed()});
}

void CheckProcess::finishEnded(int exitCode, QProcess::ExitStatus status)
{
    endProcessTree(m_process, m_processId, m_mark);
    if (m_isTimedOut) {
        finish(CheckOutcome::TimedOut,
               QStringLiteral("the check did not end within its limit of %1 ms").arg(m_timeLimit));
        return;
    }
    QFile file(m_resultFile);
    const QJsonObject result =
        file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    const std::optional<CheckOutcome> outcome = outcomeOf(result.value(QLatin1String("outcome")).toString());
    if (outcome && status == QProcess::NormalExit && exitCode == 0) {
        finish(*outcome, result.value(QLatin1String("reason")).toString());
        return;
    }
    readErrors();
    const QString when =
        outcome ? QStringLiteral("after the check") : QStringLiteral("before the check was done");
    QString reason = status == QProcess::CrashExit
        ? QStringLiteral("the process crashed %1 (signal or code %2)").arg(when).arg(exitCode)
        : QStringLiteral("the process ended %1 (exit code %2)").arg(when).arg(exitCode);
    const QString lastLine = QString::fromUtf8(m_errors.trimmed().split('\n').last());
    if (!lastLine.isEmpty())
        reason += QStringLiteral("; its last words: %1").arg(lastLine);
    finish(CheckOutcome::Crashed, reason);
}

/// Does the checks of one plug-in.
class PluginRun
{
public:
    PluginRun(const QString &fileName, const CheckRunOptions &options, const std::function<void()> &progress)
        : m_fileName(fileName), m_options(options), m_progress(progress)
    {
    }

    /// The results of `checks`, in their order.
    QVector<CheckResult> run(const QVector<PluginCheck> &checks);

private:
    QVector<CheckResult> runHere(const QVector<PluginCheck> &checks) const;
    QVector<CheckResult> notStarted(const QVector<PluginCheck> &checks) const;
    void startMore();

    QString m_fileName;
    CheckRunOptions m_options;
    std::function<void()> m_progress;
    QTemporaryDir m_directory;
    QVector<PluginCheck> m_checks;
    QVector<CheckResult> m_results;
    int m_started = 0;
    int m_done = 0;
    QEventLoop m_loop;
};

QVector<CheckResult> PluginRun::run(const QVector<PluginCheck> &checks)
{
    if (m_options.program.isEmpty())
        return runHere(checks);
    if (!m_directory.isValid())
        return notStarted(checks);
    m_checks = checks;
    m_results = QVector<CheckResult>(checks.size());
    m_started = 0;
    m_done = 0;
    // From within the loop, so that a process that fails at once finds it running.
    QTimer::singleShot(0, &m_loop, [this] { startMore(); });
    if (!checks.isEmpty())
        m_loop.exec();
    return m_results;
}

QVector<CheckResult> PluginRun::runHere(const QVector<PluginCheck> &checks) const
{
    QVector<CheckResult> results;
    for (const PluginCheck &check : checks) {
        results.append(runPluginCheck(check, m_fileName, m_options.renderer));
        m_progress();
    }
    return results;
}

QVector<CheckResult> PluginRun::notStarted(const QVector<PluginCheck> &checks) const
{
    QVector<CheckResult> results;
    for (const PluginCheck &check : checks) {
        results.append(
            {check.id, CheckOutcome::Crashed,
             QStringLiteral("there is no folder for its result: %1").arg(m_directory.errorString()), 0});
        m_progress();
    }
    return results;
}

void PluginRun::startMore()
{
    while (m_started < m_checks.size() && m_started - m_done < qMax(1, m_options.jobs)) {
        const int number = m_started++;
        const auto process = std::make_shared<CheckProcess *>(nullptr);
        *process =
            new CheckProcess(m_fileName, m_checks.at(number).id, m_directory.filePath(m_checks.at(number).id),
                             m_options, [this, number, process](const CheckResult &result) {
                                 if (*process)
                                     (*process)->deleteLater();
                                 m_results[number] = result;
                                 ++m_done;
                                 m_progress();
                                 if (m_done == m_checks.size())
                                     m_loop.quit();
                                 else
                                     startMore();
                             });
    }
}
} // namespace

QVector<PluginReport> checkPlugins(const QStringList &files, const QVector<PluginCheck> &checks,
                                   const CheckRunOptions &options)
{
    const PluginCheck &loads = pluginChecks().first();
    QVector<PluginCheck> others;
    for (const PluginCheck &check : checks) {
        if (check.id != loads.id)
            others.append(check);
    }
    const bool isLoadsAsked = others.size() < checks.size();
    int done = 0;
    const int total = files.size() * (others.size() + 1);
    const auto progress = [&] {
        ++done;
        if (options.progress)
            options.progress(done, total);
    };
    QVector<PluginReport> reports;
    for (const QString &file : files) {
        PluginRun run(QFileInfo(file).absoluteFilePath(), options, progress);
        const CheckResult loading = run.run({loads}).constFirst();
        PluginReport report{file, {}};
        const bool isLoaded = loading.outcome == CheckOutcome::Passed;
        if (isLoadsAsked || !isLoaded)
            report.results.append(loading);
        if (isLoaded) {
            report.results += run.run(others);
        } else {
            for (const PluginCheck &check : qAsConst(others)) {
                report.results.append(
                    {check.id, CheckOutcome::Skipped, QStringLiteral("the library does not load"), 0});
                progress();
            }
        }
        reports.append(report);
    }
    return reports;
}

bool runCheckWorker(const QString &fileName, const QString &id, const QString &resultFile,
                    const IconRenderer &renderer)
{
    const PluginCheck *check = findPluginCheck(id);
    if (!check)
        return false;
    leadProcessTree();
    const CheckResult result = runPluginCheck(*check, fileName, renderer);
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    json.key("outcome").text(outcomeWord(result.outcome));
    json.key("reason").text(result.reason);
    json.close();
    QSaveFile file(resultFile);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0 && file.commit();
}
} // namespace StepHost
