#pragma once

#include "ScriptEdits.h"
#include "WatchedFile.h"
#include "host/scripts/ScriptFile.h"
#include "hostapi/VariableScope.h"

#include <QObject>
#include <QUndoStack>

#include <functional>

namespace StepHost
{
class StepCatalogue;
class StepTrial;
} // namespace StepHost

namespace Workbench
{
class ScriptModel;
class TriedSettings;

/// The script that is being edited: its steps, the variables that it starts with, its file and its undo
/// stack. Every change by one of the editing members is one step of undo.
class ScriptDocument : public QObject
{
    Q_OBJECT

public:
    /// An empty script. Its steps are made by \a catalogue, which has to outlive the document.
    explicit ScriptDocument(const StepHost::StepCatalogue &catalogue, QObject *parent = nullptr);
    ~ScriptDocument() override;

    /// From now on \a trial tries what comes into the script, before the script has it: what steps do with certain settings
    /// shall not be done to this process. It has to outlive the document.
    void setTrial(StepHost::StepTrial &trial);

    const StepHost::StepCatalogue &catalogue() const;
    ScriptModel &model() const;
    QUndoStack &undoStack();
    const VariableScope &variables() const;

    /// A copy of the step in \a row; without an operation when the plug-in gives no clone.
    StepHost::ScriptStep copyStep(int row) const;

    /// Says that there is no copy of the step in \a row.
    static QString noCopy(int row);

    /// A copy of the script, its steps as copyStep() copies them.
    StepHost::Script copy() const;

    /// The steps of \a rows as a script in the form \a form, which insertScript() takes; empty when that form
    /// would lose something of them.
    QByteArray stepsAs(StepHost::ScriptForm form, const QList<int> &rows) const;

    /// Places a new step of type \a typeId in front of \a row. Does nothing for a type that there is not.
    void placeStep(const QString &typeId, int row);

    /// Places the steps of \a script, in either form, in front of \a row, as ScriptEdits::paste() does. If it cannot be
    /// read, emits refused().
    void insertScript(const QByteArray &script, int row);

    /// Has insertScript() ask \a question.
    void setClashQuestion(const ScriptEdits::ClashQuestion &question);

    /// Puts copies of the steps of \a rows in front of the row \a target.
    void duplicateSteps(const QList<int> &rows, int target);

    void removeSteps(const QList<int> &rows);

    /// Moves the steps of \a rows in front of the row \a target.
    void moveSteps(const QList<int> &rows, int target);

    void setEnabled(const QList<int> &rows, bool enabled);

    /// Gives the property \a property of the step in \a row the value \a value; with setTrial(), maybe later. If it cannot have
    /// it, emits refused().
    void setSetting(int row, const QString &property, const QVariant &value);

    /// Changes the variables that the script starts with; \a action names what was done.
    void setVariables(const VariableScope &variables, const QString &action);

    /// The absolute path of the script's file; empty for a script that has none yet.
    QString fileName() const;

    /// The script's file as it was opened or saved last.
    WatchedFile &file();

    /// The script as JSON, or why it cannot be written so.
    StepHost::Result<QByteArray> toJson() const;

    /// The script in \a bytes, in either form, as toJson() would write it; when they are no script, their text.
    QString readableText(const QByteArray &bytes) const;

    /// Begins a new, empty script without undo.
    void clear();

    /// Opens the file \a fileName, in either form, instead of the present script.
    /// \return an empty text, or why it cannot be read; the present script is left alone then.
    QString open(const QString &fileName);

    /// Calls \a then when \a scripts, each in either form, were tried: with an empty text, or why they must not be read here.
    /// Without setTrial() that is at once.
    using Tried = std::function<void(const QString &error)>;
    void whenTried(const QList<QByteArray> &scripts, const Tried &then);

    /// Opens the file \a fileName as open() does, after its content was tried. \a then is called with what open() returns.
    void openTried(const QString &fileName, const Tried &then);

    /// Makes the steps of \a steps, each a script in either form, with \a variables the present script, which was to be
    /// saved as \a fileName and is not yet. An empty one stands for a step that could not be kept: remarked() tells.
    /// \return an empty text, or why the steps cannot be read
    QString restore(const QVector<QByteArray> &steps, const VariableScope &variables,
                    const QString &fileName);

    /// Saves the script as \a fileName, in binary form when the suffix is that of the binary form, else in JSON.
    /// A file of that name is replaced whole or not at all; remarked() tells what it could not keep.
    /// \return an empty text, or why it cannot be written.
    QString save(const QString &fileName);

signals:
    /// The file, or another script, has taken the place of the present one.
    void fileNameChanged();
    /// The script is another one now.
    void replaced();
    void variablesChanged();
    /// The \a count steps from \a row on were changed or placed.
    void touched(int row, int count);
    /// An edit was not carried out, for \a reason.
    void refused(const QString &reason);
    /// What was asked for is done, and the user should know \a remark.
    void remarked(const QString &remark);

private:
    friend class ChangeScriptCommand;
    friend class ChangeVariablesCommand;

    void showVariables(const VariableScope &variables);
    StepHost::Result<QByteArray> write(StepHost::ScriptForm form) const;
    QString show(const QString &fileName, const QByteArray &content);
    void replace(StepHost::Script script);
    void changeSetting(int row, const QString &property, const QVariant &value);
    void refuseSetting(int row, const QString &property, const QString &reason);
    void readInto(const QByteArray &script, int row);

    const StepHost::StepCatalogue &m_catalogue;
    ScriptModel *m_model;
    VariableScope m_variables;
    WatchedFile m_file;
    StepHost::StepTrial *m_trial = nullptr;
    std::unique_ptr<TriedSettings> m_triedSettings; ///< Null without a trial.
    ScriptEdits::ClashQuestion m_clashQuestion;
    // Declared last: its commands hold steps and refer to the document.
    QUndoStack m_undoStack;
};
} // namespace Workbench
