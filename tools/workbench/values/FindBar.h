#pragma once

#include <QModelIndex>
#include <QWidget>

class QLabel;
class QLineEdit;
class QTableView;

namespace Workbench
{
class ValueModel;

/// The first cell behind \a from, or before it, whose whole text holds \a text, in upper or lower case. Goes on at the
/// other end; \a from itself comes last, and an invalid one stands for the end from which is searched.
QModelIndex findCell(const ValueModel &model, const QModelIndex &from, const QString &text, bool isForward);

/// A line below a table in which a text is searched. Hidden until it is wanted.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// Searches \a model, and shows what is found as the current cell of \a view.
    FindBar(const ValueModel &model, QTableView &view, QWidget *parent = nullptr);

    /// Shows the bar and takes the keyboard.
    void begin();

    /// Goes to the next cell, or the one before.
    void findNext(bool isForward);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    const ValueModel &m_model;
    QTableView &m_view;
    QLineEdit *m_text;
    QLabel *m_message;
};
} // namespace Workbench
