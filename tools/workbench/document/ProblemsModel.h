#pragma once

#include "host/scripts/StepProblems.h"

#include <QAbstractTableModel>
#include <QTimer>

#include <vector>

namespace Workbench
{
class ScriptModel;

/// What is to be said of the script's steps before they run, one problem a row, in the order of the steps. It follows the
/// script a moment later, once for many changes.
class ProblemsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { StepColumn, ProblemColumn, RemedyColumn, ColumnCount };

    /// The problems of the steps of \a script, which has to outlive this object.
    explicit ProblemsModel(const ScriptModel &script, QObject *parent = nullptr);

    /// The problem in \a row, which has to exist.
    const StepHost::StepProblem &problem(int row) const;

    /// The row of the script in which the step of the problem in \a row stands; -1 when it is gone just now.
    int stepRow(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Line
    {
        const Operation *step; ///< Just for telling it apart: it may be gone.
        int row; ///< In which the step stands.
        StepHost::StepProblem problem;
    };

    static bool isSame(const Line &a, const Line &b);
    QString stepName(const Line &line) const;
    void schedule();
    void update();

    const ScriptModel &m_script;
    std::vector<Line> m_lines;
    QTimer m_timer;
};
} // namespace Workbench
