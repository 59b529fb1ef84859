#pragma once

#include "hostapi/VariableScope.h"

#include <QWidget>

#include <optional>

class QAction;
class QKeySequence;
class QModelIndex;
class QSettings;
class QTableView;

namespace Workbench
{
class RunSession;
class ScriptDocument;
class VariablesModel;

/// The table of the script's variables, and the actions that change them.
class VariablesPane : public QWidget
{
    Q_OBJECT

public:
    VariablesPane(ScriptDocument &document, RunSession &session, QWidget *parent = nullptr);

    VariablesModel &model() const;

    /// Where the dialogs for values keep what they remember.
    void setSettings(QSettings &settings);

    /// Adds an empty variable \a name of the type \a type, or says why it cannot be.
    void addVariable(const QString &name, VarType type);

    /// Makes the variable \a name the current one.
    void setCurrentVariable(const QString &name);

    /// The actions on variables, for a menu; null stands for a separator.
    QList<QAction *> editActions() const;

signals:
    /// An edit was not carried out, for \a reason.
    void refused(const QString &reason);
    /// The user wants to see where the variable \a name is used.
    void usesRequested(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createView();
    QAction *addEditAction(const QString &text, const QString &shortText, const QString &icon,
                           const QKeySequence &key, const QString &name);
    void createActions();
    void showResult();
    void updateActions();
    void addNewVariable();
    void removeVariable();
    bool mayRemove(const QString &name);
    void renameVariable(const QString &from, const QString &to);
    void activate(const QModelIndex &index);
    void editValue(int row);
    void editRunValue(int row);
    std::optional<VariableScope> editedIn(const VariableScope &variables, const QString &name);
    void viewResult(int row);
    void keepResults();

    ScriptDocument &m_document;
    RunSession &m_session;
    VariablesModel *m_model;
    QTableView *m_view;
    QSettings *m_settings = nullptr;
    QList<QAction *> m_editActions;
    QAction *m_remove = nullptr;
    QAction *m_edit = nullptr;
    QAction *m_uses = nullptr;
    QAction *m_keep = nullptr;
};
} // namespace Workbench
