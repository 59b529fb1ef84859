#pragma once

#include <QStyledItemDelegate>
#include <QVector>

namespace Workbench
{
/// Edits an `int` of a model by a choice of texts.
class ChoiceDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    struct Choice
    {
        int value;
        QString text;
    };

    explicit ChoiceDelegate(const QVector<Choice> &choices, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    QVector<Choice> m_choices;
};
} // namespace Workbench
