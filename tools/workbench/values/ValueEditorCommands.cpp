#include "FindBar.h"
#include "ValueEditor.h"
#include "ValueModel.h"
#include "ValueView.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/TypeNames.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

QAction *ValueEditor::addCommand(const QString &text, const QString &icon, const QKeySequence &key,
                                 const std::function<void()> &command, Qt::ShortcutContext context)
{
    auto *action = new QAction(themedIcon(icon), text, this);
    action->setShortcut(key);
    action->setShortcutContext(context);
    action->setToolTip(QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, command);
    m_view->addAction(action);
    return action;
}

// Arrows speak for themselves, and leave room for the others.
void ValueEditor::addIcon(QAction *action)
{
    m_toolBar->addAction(action);
    static_cast<QToolButton *>(m_toolBar->widgetForAction(action))
        ->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

void ValueEditor::createCommands()
{
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize(QSize(16, 16));
    createRowCommands();
    createTypeMenu();
    m_toolBar->addSeparator();
    const auto addUndo = [this](QAction *action, const QString &text, const QString &icon,
                                const QKeySequence &key) {
        action->setIcon(themedIcon(icon));
        action->setIconText(text);
        action->setShortcut(key);
        addIcon(action);
    };
    addUndo(m_history->stack().createUndoAction(this, tr("Undo")), tr("Undo"), QStringLiteral("undo"),
            QKeySequence::Undo);
    addUndo(m_history->stack().createRedoAction(this, tr("Redo")), tr("Redo"), QStringLiteral("redo"),
            Qt::CTRL | Qt::Key_Y);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ValueEditor::createRowCommands()
{
    m_toolBar->addAction(addCommand(m_table ? tr("Add row") : tr("Add"), QStringLiteral("add"),
                                    Qt::CTRL | Qt::Key_Return, [this] { insertRow(1); }));
    m_toolBar->addAction(addCommand(m_table ? tr("Remove rows") : tr("Remove"), QStringLiteral("delete"),
                                    Qt::CTRL | Qt::Key_Delete, [this] { removeRows(); }));
    if (m_table) {
        m_toolBar->addAction(addCommand(tr("Add column"), QStringLiteral("add"), Qt::CTRL | Qt::Key_Right,
                                        [this] { insertColumn(); }));
    }
    addIcon(addCommand(tr("Up"), QStringLiteral("up"), Qt::ALT | Qt::Key_Up, [this] { moveRows(-1); }));
    addIcon(addCommand(tr("Down"), QStringLiteral("down"), Qt::ALT | Qt::Key_Down, [this] { moveRows(1); }));
    m_toolBar->addAction(addCommand(tr("Sort"), QStringLiteral("sort"), Qt::CTRL | Qt::Key_T,
                                    [this] { sort(Qt::AscendingOrder); }));

    auto *button = new QToolButton;
    button->setText(tr("Edit"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(button);
    createClipboardCommands(*menu);
    menu->addSeparator();
    menu->addAction(addCommand(m_table ? tr("Add row above") : tr("Add above"), QStringLiteral("add"),
                               Qt::CTRL | Qt::SHIFT | Qt::Key_Return, [this] { insertRow(0); }));
    if (m_table) {
        menu->addAction(addCommand(tr("Remove columns"), QStringLiteral("delete"),
                                   Qt::CTRL | Qt::Key_Backspace, [this] { removeColumns(); }));
    }
    menu->addAction(addCommand(tr("Sort backwards"), QStringLiteral("sort"), Qt::CTRL | Qt::SHIFT | Qt::Key_T,
                               [this] { sort(Qt::DescendingOrder); }));
    menu->addSeparator();
    menu->addAction(addCommand(tr("Find…"), QStringLiteral("search"), QKeySequence::Find,
                               [this] { m_findBar->begin(); }));
    menu->addAction(addCommand(tr("Find next"), QStringLiteral("down"), Qt::Key_F3,
                               [this] { m_findBar->findNext(true); }));
    menu->addAction(addCommand(tr("Find previous"), QStringLiteral("up"), Qt::SHIFT | Qt::Key_F3,
                               [this] { m_findBar->findNext(false); }));
    button->setMenu(menu);
    m_toolBar->addWidget(button);
}

// Only where the cells have the keyboard: in the line of a search the same keys are for its text.
void ValueEditor::createClipboardCommands(QMenu &menu)
{
    const auto add = [&](const QString &text, const QString &icon, const QKeySequence &key,
                         void (ValueEditor::*command)()) {
        menu.addAction(addCommand(
            text, icon, key, [this, command] { (this->*command)(); }, Qt::WidgetShortcut));
    };
    add(tr("Cut"), QStringLiteral("cut"), QKeySequence(Qt::CTRL | Qt::Key_X), &ValueEditor::cut);
    add(tr("Copy"), QStringLiteral("copy"), QKeySequence(Qt::CTRL | Qt::Key_C), &ValueEditor::copy);
    add(tr("Paste"), QStringLiteral("paste"), QKeySequence(Qt::CTRL | Qt::Key_V), &ValueEditor::paste);
    add(tr("Fill down"), QStringLiteral("down"), QKeySequence(Qt::CTRL | Qt::Key_D), &ValueEditor::fillDown);
    add(m_table ? tr("Empty cells") : tr("Remove selected"), QStringLiteral("delete"),
        QKeySequence(Qt::Key_Delete), &ValueEditor::clear);
}

void ValueEditor::createTypeMenu()
{
    m_type = new QToolButton;
    m_type->setObjectName(QStringLiteral("type"));
    m_type->setToolTip(tr("Convert what is selected to another type"));
    m_type->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(m_type);
    const QVector<ItemKind> kinds = ItemValue::editableKinds();
    for (const ItemKind kind : kinds) {
        menu->addAction(TypeNames::of(kind), this, [this, kind] { convertSelected(kind); });
        // The bar stays as it is from cell to cell.
        m_type->setText(m_table ? tr("Type: %1").arg(TypeNames::of(kind)) : tr("Type"));
        m_type->setMinimumWidth(qMax(m_type->minimumWidth(), m_type->sizeHint().width()));
    }
    m_type->setMenu(menu);
    m_toolBar->addWidget(m_type);
}

// The type of the current cell: in a table nothing else tells it.
void ValueEditor::showType()
{
    const QModelIndex current = m_view->currentIndex();
    m_type->setText(
        current.isValid() && m_table
            ? tr("Type: %1")
                  .arg(TypeNames::of(ItemValue::kind(m_model->valueAt(current.row(), current.column()))))
            : tr("Type"));
}
} // namespace Workbench
