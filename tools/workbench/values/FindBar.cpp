#include "FindBar.h"

#include "ValueModel.h"
#include "tools/workbench/look/ColoredLabel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/ThemedIcon.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
bool holds(const QVariant &value, const QString &text)
{
    switch (ItemValue::kind(value)) {
    case ItemKind::Empty:
        return false;
    case ItemKind::Text:
        return value.toString().contains(text, Qt::CaseInsensitive);
    default:
        return ItemValue::editText(value).contains(text, Qt::CaseInsensitive);
    }
}
} // namespace

QModelIndex findCell(const ValueModel &model, const QModelIndex &from, const QString &text, bool isForward)
{
    const qint64 columns = model.valueColumns();
    const qint64 cells = columns * model.rowCount();
    if (cells == 0 || text.isEmpty())
        return QModelIndex();
    const qint64 end = isForward ? -1 : cells;
    qint64 at = from.isValid() ? from.row() * columns + qMin<qint64>(from.column(), columns - 1) : end;
    for (qint64 i = 0; i < cells; ++i) {
        at = (at + (isForward ? 1 : cells - 1)) % cells;
        const int row = int(at / columns);
        const int column = int(at % columns);
        if (holds(model.valueAt(row, column), text))
            return model.index(row, column);
    }
    return QModelIndex();
}

FindBar::FindBar(const ValueModel &model, QTableView &view, QWidget *parent)
    : QWidget(parent), m_model(model), m_view(view), m_text(new QLineEdit),
      m_message(new ColoredLabel(Colors::warning))
{
    m_text->setObjectName(QStringLiteral("find"));
    m_text->setPlaceholderText(tr("Find"));
    m_text->setAccessibleName(tr("Find"));
    m_text->setClearButtonEnabled(true);
    m_message->setObjectName(QStringLiteral("found"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    const auto addButton = [&](const QString &icon, const QString &text, bool isForward) {
        auto *button = new QToolButton;
        button->setIcon(themedIcon(icon));
        button->setToolTip(text);
        button->setAccessibleName(text);
        connect(button, &QToolButton::clicked, this, [this, isForward] { findNext(isForward); });
        layout->addWidget(button);
    };
    addButton(QStringLiteral("up"), tr("Find previous (%1)").arg(QStringLiteral("Shift+F3")), false);
    addButton(QStringLiteral("down"), tr("Find next (%1)").arg(QStringLiteral("F3")), true);
    layout->addWidget(m_message);
    connect(m_text, &QLineEdit::textChanged, m_message, &QLabel::clear);
    hide();
}

void FindBar::begin()
{
    show();
    m_text->setFocus();
    m_text->selectAll();
}

void FindBar::findNext(bool isForward)
{
    if (m_text->text().isEmpty())
        return begin();
    const QModelIndex found = findCell(m_model, m_view.currentIndex(), m_text->text(), isForward);
    m_message->setText(found.isValid() ? QString() : tr("Not found"));
    if (!found.isValid())
        return;
    m_view.selectionModel()->setCurrentIndex(found, QItemSelectionModel::ClearAndSelect);
    m_view.scrollTo(found);
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isShift = event->modifiers().testFlag(Qt::ShiftModifier);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        findNext(!isShift);
        break;
    case Qt::Key_Escape:
        hide();
        m_view.setFocus();
        break;
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}
} // namespace Workbench
