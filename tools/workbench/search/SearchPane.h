#pragma once

#include "host/scripts/ScriptSearch.h"

#include <QScrollArea>
#include <QTimer>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QTreeView;

namespace Workbench
{
class ScriptDocument;
class SearchModel;

/// Finds texts in the steps, settings and variables of the script and replaces them, and lists where a variable is used.
/// Activating a place leads there. Where there is little room, it scrolls.
class SearchPane : public QScrollArea
{
    Q_OBJECT

public:
    /// Searches \a document, which has to outlive the pane.
    explicit SearchPane(ScriptDocument &document, QWidget *parent = nullptr);

    /// Lists where the variable \a name is used.
    void showUses(const QString &name);

signals:
    /// The user wants to see the setting \a property of the step in \a row of the script, or just the step when that is
    /// empty.
    void settingRequested(int row, const QString &property);
    /// The user wants to see the variable \a name.
    void variableRequested(const QString &name);

private:
    QLineEdit *createField(const QString &name, const QString &text);
    QPushButton *createButton(const QString &name, const QString &text, void (SearchPane::*slot)()) const;
    QWidget *createFields();
    void createView();
    StepHost::SearchPattern pattern() const;
    void find();
    void replaceAll();
    void searchAgain();
    void showHits(const QVector<StepHost::SearchHit> &hits, const QString &summary);
    void go(const QModelIndex &index);
    void updateButtons();

    ScriptDocument &m_document;
    SearchModel *m_model;
    QLineEdit *m_text;
    QLineEdit *m_replacement;
    QCheckBox *m_matchCase;
    QCheckBox *m_isWhole;
    QPushButton *m_find;
    QPushButton *m_replace;
    QLabel *m_summary;
    QTreeView *m_view;
    QTimer m_timer; ///< For the next search after changes.
    std::function<void()> m_lastSearch; ///< Done again when the script has changed; none before the first.
};
} // namespace Workbench
