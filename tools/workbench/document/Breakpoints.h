#pragma once

#include "host/values/Result.h"

#include <QByteArray>
#include <QObject>
#include <QSet>

class Operation;

namespace Workbench
{
class ScriptDocument;

/// The steps of a document before which its runs wait.
///
/// A breakpoint follows its step, also out of the script and back in by undo. They are kept beside the script, in a file
/// that is called like it with `.workbench` behind, and never in the script: it is written when the script is saved, or
/// when they change while the script is as its file, and goes with the last of them.
class Breakpoints : public QObject
{
    Q_OBJECT

public:
    /// Those of \a document, which has to outlive this object.
    explicit Breakpoints(ScriptDocument &document, QObject *parent = nullptr);

    /// Whether the step \a step has one.
    bool contains(const Operation *step) const;

    /// Whether there are any.
    bool isEmpty() const;

    /// Gives the steps of \a rows one each, or takes theirs when all of them have one.
    void toggle(const QList<int> &rows);

    /// Takes all of them.
    void clear();

    /// The file that they are kept in for the script \a scriptFile.
    static QString fileFor(const QString &scriptFile);

signals:
    void changed();
    /// They could not be kept, for \a reason.
    void failed(const QString &reason);

private:
    void add(const Operation *step);
    void show();
    void load();
    void keep();
    QByteArray toJson() const;

    ScriptDocument &m_document;
    QSet<const Operation *> m_steps;
    QByteArray m_kept; ///< What is in the file; empty when there is none.
};
} // namespace Workbench
