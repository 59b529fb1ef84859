#pragma once

#include "CheckRunner.h"
#include "host/running/ProcessTree.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <optional>

class QProcessEnvironment;

namespace StepHost
{
/// What a process is to check, and where.
struct CheckTask
{
    QString pluginFile; ///< An absolute path.
    QString checkId;
    QString
        folder; ///< Exists, and is empty: the process has its home, temporary files and current folder below it.
    QString preload; ///< A library that has to be there before the plug-in; empty for none.
    CheckWorlds worlds = CheckWorlds::One; ///< Of the check.
    bool isAgain = false; ///< Whether the process is the second one for the check.
};

/// How the process of a check ended.
struct CheckProcessEnd
{
    CheckResult result;
    /// The check's own result, when it was there before the library was unloaded, and the process died only then.
    std::optional<CheckResult> beforeUnloading;
};

/// One check in a process of its own.
class CheckProcess : public QObject
{
public:
    using Done = std::function<void(const CheckProcessEnd &)>;

    CheckProcess(const CheckTask &task, const CheckRunOptions &options);

    /// Ends the process, if it runs, and what it started.
    ~CheckProcess() override;

    /// Starts the process. \a done is called once, from the event loop, after everything that it started has ended.
    void start(const Done &done);

    /// The id of the process while it runs; 0 before and after.
    qint64 processId() const
    {
        return m_process.processId();
    }

private:
    QProcessEnvironment environment() const;
    QString resultFile() const;
    void startOnce();
    void failToStart();
    void timeOut();
    void readErrors();
    void finish(CheckOutcome outcome, const QString &reason);
    void finishEnded(int exitCode, QProcess::ExitStatus status);
    QString crashReason(int exitCode, QProcess::ExitStatus status, bool isDone);

    CheckTask m_task;
    int m_timeLimit;
    Done m_done;
    QString m_mark;
    qint64 m_processId = 0;
    int m_starts = 0;
    bool m_isTimedOut = false;
    QByteArray m_errors;
    QElapsedTimer m_elapsed;
    QTimer m_timer;
    ChildProcess m_process;
};

/// Writes \a result for the process that asked for it. Returns whether that could be done.
bool writeCheckResult(const QString &fileName, const CheckResult &result);

/// The file in which a process whose result goes to \a resultFile notes what it is at.
QString breadcrumbFileOf(const QString &resultFile);

/// Hands \a options, as far as they are for a check itself, on to a process in \a environment.
void setCheckSetup(QProcessEnvironment &environment, const CheckRunOptions &options);

/// The other side, in that process.
CheckSetup handedCheckSetup(const IconRenderer &renderer);
} // namespace StepHost
