#pragma once

#include "hostapi/VariableScope.h"

#include <QWidget>

class QModelIndex;
class QPushButton;
class QTreeView;

namespace Workbench
{
class ProblemsModel;
class ScriptModel;

/// The list of the problems that the script's steps have before they run. Activating one leads to its setting; what is
/// missing can be made by a button.
class ProblemsPane : public QWidget
{
    Q_OBJECT

public:
    /// The problems of the steps of \a script, which has to outlive the pane.
    explicit ProblemsPane(const ScriptModel &script, QWidget *parent = nullptr);

signals:
    /// There are \a count problems now.
    void countChanged(int count);
    /// The user wants to see the setting \a property of the step in \a row of the script.
    void settingRequested(int row, const QString &property);
    /// The user wants a variable \a name of the type \a type.
    void variableWanted(const QString &name, VarType type);

private:
    void createView();
    void go(const QModelIndex &index);
    void create();
    void showCurrent();
    void showCount();

    ProblemsModel *m_model;
    QTreeView *m_view;
    QPushButton *m_create;
};
} // namespace Workbench
