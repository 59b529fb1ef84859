#pragma once

#include <QStyledItemDelegate>

namespace Workbench
{
/// Draws a step of a ScriptModel: check box, number, icon, summary and what became of it in the last run;
/// its warnings, and before a run what is to be said of its settings, stand below, one a line.
class StepDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit StepDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
};
} // namespace Workbench
