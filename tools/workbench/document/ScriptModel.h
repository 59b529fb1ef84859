#pragma once

#include "StepRow.h"
#include "host/plugins/EditorSchema.h"

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <QSet>
#include <QTimer>
#include <QUuid>

#include <memory>
#include <vector>

namespace Workbench
{
/// The steps of a script, one a row, and what became of each in the last run.
///
/// The members that change a step carry the change out at once and know no undo; they are for the commands
/// on the undo stack. What a user does to a row in a view is sent out as a request instead.
class ScriptModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        NumberRole = Qt::UserRole, ///< `int`: the step's number, from 1.
        OutcomeRole, ///< `int`: StepHost::StepOutcome
        OutcomeTextRole, ///< `QString`: the outcome in a word, for the user; empty for a step that was not run.
        OutdatedRole, ///< `bool`: the outcome is that of the step with other settings than it has now.
        WarningsRole, ///< `QStringList`: what the step had to say, also why it failed, a line each.
        ProblemsRole, ///< `QStringList`: what is to be said of its settings before it runs, a line each; none for a step
        ///< that ran with these settings, or that is not enabled.
        LineCountRole, ///< `int`: how many lines WarningsRole and ProblemsRole have.
        RunningRole, ///< `bool`: it is this step's turn in a run that goes on.
        NextRole, ///< `bool`: the run waits before this step.
        BreakpointRole, ///< `bool`: runs wait before this step. To set it is a request.
    };
    /// `Qt::AccessibleTextRole` has all that is drawn of a step, in words.

    explicit ScriptModel(QObject *parent = nullptr);
    ~ScriptModel() override;

    /// The step in \a row, which has to exist. It belongs to the model.
    const Operation &step(int row) const;

    /// Whether the step in \a row is run.
    bool isEnabled(int row) const;

    /// The problems of the step in \a row before it runs; none when it is not enabled. In a long script they may be those
    /// of a moment ago: problemsChanged() tells.
    QVector<StepHost::StepProblem> problems(int row) const;

    /// The variables that the script starts with: what they are is a part of what is to be said of the steps.
    void setVariables(const VariableScope &variables);

    /// Shows \a steps instead of the present ones.
    void setSteps(std::vector<StepHost::ScriptStep> steps);

    /// Puts \a steps in front of \a row.
    void insertSteps(int row, std::vector<StepHost::ScriptStep> steps);

    /// Takes the \a count steps from \a row on out of the script.
    std::vector<StepHost::ScriptStep> takeSteps(int row, int count);

    /// Moves the \a count steps from row \a from on so that the first of them stands in row \a to.
    void moveSteps(int from, int count, int to);

    void setEnabled(int row, bool enabled);

    /// Shows the step in \a row once more, wherever it is shown.
    void showStep(int row);

    /// Gives the property \a property of the step in \a row the value \a value.
    void setSetting(int row, const QString &property, const QVariant &value);

    /// What became of a step.
    struct Result
    {
        int row;
        StepHost::StepResult result;
        const StepHost::ScriptStep *step; ///< What the step was like.
    };

    /// Notes what became of steps.
    void setResults(const QVector<Result> &results);

    /// Forgets what became of all steps.
    void clearResults();

    /// Marks the step in \a row as the one that is running; -1 marks none.
    void setRunningRow(int row);

    /// Marks the step in \a row as the one that a run waits before; -1 marks none.
    void setNextRow(int row);

    /// Marks \a steps as those that runs wait before.
    void setBreakpoints(const QSet<const Operation *> &steps);

    /// What Recovery keeps of the step in \a row; nothing when the step was changed since it was set.
    const std::optional<QByteArray> &keptStep(int row) const;
    void setKeptStep(int row, const QByteArray &bytes);

    /// The row of the step \a step; -1 when the script does not have it.
    int rowOf(const Operation *step) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::DropActions supportedDropActions() const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    /// The problems() of some steps are others now.
    void problemsChanged();
    /// The user wants the step in \a row to be run, or not.
    void enableRequested(int row, bool enabled);
    /// The user wants the step in \a row to have a breakpoint, or none any more.
    void breakpointRequested(int row);
    /// The user dropped a step of type \a typeId in front of \a row.
    void placeRequested(const QString &typeId, int row);
    /// The user dropped the steps of \a rows in front of \a row.
    void moveRequested(const QList<int> &rows, int row);
    /// The user dropped copies of the steps of \a rows in front of \a row.
    void duplicateRequested(const QList<int> &rows, int row);
    /// The user dropped the steps of \a script, in either form, in front of \a row.
    void insertRequested(const QByteArray &script, int row);

private:
    bool isStep(const QModelIndex &index) const;
    StepRow &at(int row);
    const StepRow &at(int row) const;
    QIcon icon(const QString &path) const;
    QString spokenText(int row) const;
    void rowsChanged(int first, int last);
    bool check(StepRow &row);
    void checkRest();
    bool checkRows(int first, int last);

    std::vector<std::unique_ptr<StepRow>> m_rows;
    VariableScope m_variables;
    int m_runningRow = -1;
    const Operation *m_next = nullptr; ///< Just for telling it apart.
    QSet<const Operation *> m_breakpoints; ///< The same.
    QHash<const QMetaObject *, StepHost::EditorSchema> m_schemas; ///< Of the classes of the steps.
    QTimer m_checkTimer; ///< Looks at the steps that are not checked yet, some at a time.
    mutable QHash<QString, QIcon> m_icons; ///< By path, so that a drawing is rendered once.
    QUuid m_id; ///< Tells rows dragged within this script from those of another.
};
} // namespace Workbench
