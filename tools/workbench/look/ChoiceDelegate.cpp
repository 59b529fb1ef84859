#include "ChoiceDelegate.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace Workbench
{
namespace
{
/// A combo box that is activated by a choice from its list alone. What keys and wheel pass by on the way to another
/// choice is taken over when the editing ends with Return, and forgotten when it ends with Escape.
class ChoiceBox : public QComboBox
{
public:
    using QComboBox::QComboBox;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const QSignalBlocker blocker(this);
        QComboBox::keyPressEvent(event);
    }

    void wheelEvent(QWheelEvent *event) override
    {
        const QSignalBlocker blocker(this);
        QComboBox::wheelEvent(event);
    }
};
} // namespace

ChoiceDelegate::ChoiceDelegate(const QVector<Choice> &choices, QObject *parent)
    : QStyledItemDelegate(parent), m_choices(choices)
{
}

QWidget *ChoiceDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                      const QModelIndex &) const
{
    auto *combo = new ChoiceBox(parent);
    for (const Choice &choice : m_choices)
        combo->addItem(choice.text, choice.value);
    auto *self = const_cast<ChoiceDelegate *>(this);
    connect(combo, QOverload<int>::of(&QComboBox::activated), self, [self, combo] {
        emit self->commitData(combo);
        emit self->closeEditor(combo);
    });
    return combo;
}

void ChoiceDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *combo = static_cast<QComboBox *>(editor);
    combo->setCurrentIndex(combo->findData(index.data(Qt::EditRole)));
}

void ChoiceDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *combo = static_cast<QComboBox *>(editor);
    if (combo->currentIndex() >= 0)
        model->setData(index, combo->currentData());
}
} // namespace Workbench
