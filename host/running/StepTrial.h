#pragma once

#include "host/values/Result.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <deque>
#include <functional>
#include <memory>

class Operation;

namespace StepHost
{
class ChildProcess;
class MessageReader;
class StepCatalogue;
struct RunNote;

/// Tries in a process of its own, which is this program started again, what a window is about to do with steps: a step that
/// crashes, hangs, ends its process or throws with certain settings does so there. The program's main() has to ask
/// isRunWorker() first.
///
/// What is asked for is tried one after the other, in the order in which it was asked for, by one process that lives as
/// long as nothing goes wrong. Nothing here waits, but waitForAnswer().
class StepTrial : public QObject
{
public:
    /// What the user should know of the steps, also that they could not be tried because there are no processes; or why the
    /// window must not have to do with them.
    using Answer = Result<QStringList>;
    using Then = std::function<void(const Answer &)>;

    /// Tries steps of the plug-ins of \a catalogue, which has to outlive this object. The process is started at once.
    explicit StepTrial(const StepCatalogue &catalogue, QObject *parent = nullptr);

    /// Ends the process. Whoever was not answered is not answered any more.
    ~StepTrial() override;

    /// Sets for how long the process may have nothing to tell, in milliseconds, before it is taken for one that hangs; ten
    /// seconds unless said.
    void setTimeLimit(int ms);

    /// Reads \a scripts, each in either form, and does with their steps what a window does with them. \a then is called with
    /// the answer, unless \a asker is gone by then. A script that cannot be read is none of what is refused here.
    void tryScripts(const QList<QByteArray> &scripts, const QObject *asker, const Then &then);

    /// Gives a copy of \a step, the step \a number of its script, \a value as its \a property, and does with it what a window
    /// does with it. \a then is called with the answer, unless \a asker is gone by then.
    void trySetting(const Operation &step, int number, const QString &property, const QVariant &value,
                    const QObject *asker, const Then &then);

    /// Waits for all answers, at most for \a ms milliseconds, which nobody takes for a window that hangs.
    void waitForAnswers(int ms = 20);

private:
    struct Request
    {
        QByteArray bytes;
        QPointer<const QObject> asker;
        Then then;
    };

    void ask(const QByteArray &request, const QObject *asker, const Then &then);
    void sendNext();
    void start();
    void readNotes();
    void take(const RunNote &note);
    void endProcess();
    void passUntried(const QString &reason);
    void giveUp(const QString &reason);
    void answer(const Answer &answer);

    const StepCatalogue &m_catalogue;
    std::deque<Request> m_requests; ///< The first of them is being tried, if there is a process.
    ChildProcess *m_process = nullptr; ///< Null until it is needed again.
    std::unique_ptr<MessageReader> m_reader;
    QString m_mark; ///< Of the process and all that it starts.
    qint64 m_processId = 0;
    QString m_work; ///< What the process is at.
    QTimer m_clock;
    bool m_isAsked = false; ///< The first request was sent.
};
} // namespace StepHost
