#pragma once

#include "ScriptRunner.h"
#include "host/values/Result.h"

#include <QByteArray>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace StepHost
{
class StepCatalogue;

/// What a run in a process of its own and the process that asked for it tell each other. What comes from the other side
/// is not trusted: whatever does not fit is an error.

/// A step as it is handed over: made anew by its type, with its record and its settings.
struct SentStep
{
    QString typeId;
    QByteArray record;
    QVariantMap settings;
    bool enabled = true;
};

/// A setting that is about to be changed.
struct SentSetting
{
    int number = 0; ///< Of the step in its script.
    QString property;
    QVariant value;
};

/// A run that is asked for, or a trial of steps before another process has to do with them.
struct RunRequest
{
    enum Task : quint8 {
        Run, ///< Run `steps` on `variables`.
        Probe, ///< Make a step of each type and its texts.
        Trial, ///< Read `scripts`, change `setting` of the one of `steps`; then wait for the next request.
        TaskCount
    };

    QStringList plugins; ///< Paths of the plug-ins that the steps come from.
    std::vector<ScriptVariable> variables;
    std::vector<SentStep> steps;
    Task task = Run;
    QList<QByteArray> scripts; ///< Each in either form.
    SentSetting setting;
    bool waits = false; ///< Before each enabled step, tell RunNote::Waiting and wait for an answer.
};

/// What a run is told while it goes on.
struct RunAnswer
{
    enum Kind : quint8 {
        EndSoon, ///< End before the next step.
        Wait, ///< From now on, wait as with RunRequest::waits.
        Order, ///< What to do with the step that it waits before: `order`, once `variables` and `removed` are changed.
        KindCount
    };

    Kind kind = EndSoon;
    RunOrder order = RunOrder::GoOn;
    std::vector<ScriptVariable> variables;
    QStringList removed;
};

/// What a run tells while it goes on.
struct RunNote
{
    enum Kind : quint8 {
        Work, ///< What is being done now: `text`, which fits behind "while".
        Refused, ///< The run cannot begin, or a trial failed, for the reason `text`. Nothing follows.
        Waiting, ///< The run waits before the step `index` for an answer.
        Starting, ///< The step `index` begins.
        Finished, ///< The step `index` had its turn: `result`, `variables` that changed and the `removed` ones.
        Ended, ///< It is over: `end`; what a probe or a trial has to say is in `result.warnings`. Nothing follows.
        KindCount
    };

    Kind kind = Work;
    QString text;
    int index = -1;
    StepResult result;
    std::vector<ScriptVariable> variables;
    QStringList removed;
    RunEnd end = RunEnd::Completed;
};

/// Whether \a value can be handed over: it and what it holds are of types of Qt's own that can be written to a stream,
/// nested no more than 1,000 deep.
bool isSendable(const QVariant &value);

/// The request to run \a script on \a scope, and to wait before each step if it \a waits. Refused are a step that throws
/// when it saves its record, and values that are not sendable.
Result<QByteArray> packRequest(const Script &script, const VariableScope &scope,
                               const StepCatalogue &catalogue, bool waits = false);

/// The request to try \a scripts, which are in either form.
QByteArray packTrial(const QList<QByteArray> &scripts, const StepCatalogue &catalogue);

/// The request to try \a step with \a setting. Refused are a step that throws when it saves its record, and a value that is
/// not sendable.
Result<QByteArray> packTrial(const Operation &step, const SentSetting &setting,
                             const StepCatalogue &catalogue);

/// The request to load \a plugin and make a step of each of its types and their texts.
QByteArray packProbe(const QString &plugin);

/// The request in \a bytes; nothing when they are none.
std::optional<RunRequest> unpackRequest(const QByteArray &bytes);

QByteArray packAnswer(const RunAnswer &answer);

/// The answer in \a bytes; nothing when they are none.
std::optional<RunAnswer> unpackAnswer(const QByteArray &bytes);

QByteArray packNote(const RunNote &note);

/// The note in \a bytes; nothing when they are none.
std::optional<RunNote> unpackNote(const QByteArray &bytes);

/// What differs in \a now from \a before.
struct VariableChanges
{
    std::vector<ScriptVariable> variables; ///< That are new or have another type or value.
    QStringList removed;

    static VariableChanges between(const VariableScope &before, const VariableScope &now);

    /// Makes \a scope, which is as the one before, as the one after.
    static void apply(const std::vector<ScriptVariable> &variables, const QStringList &removed,
                      VariableScope &scope);
};

/// Makes of the bytes of a stream the messages that were sent, each behind its length.
class MessageReader
{
public:
    /// \a message as it is sent.
    static QByteArray framed(const QByteArray &message);

    void append(const QByteArray &bytes);

    /// The next message that is there as a whole.
    std::optional<QByteArray> next();

    /// Whether what came is no message, so nothing that follows can be one.
    bool isBroken() const;

private:
    QByteArray m_bytes;
    bool m_isBroken = false;
};
} // namespace StepHost
