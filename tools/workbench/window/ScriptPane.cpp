#include "ScriptPane.h"

#include "StepDelegate.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/document/StepMime.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDrag>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace Workbench
{
namespace
{
constexpr int dragIconSize = 24;
}

ScriptPane::ScriptPane(ScriptDocument &document, QWidget *parent)
    : PaneView<QListView>(parent), m_document(document)
{
    setObjectName(QStringLiteral("script"));
    setAccessibleName(tr("Steps of the script"));
    setModel(&document.model());
    setItemDelegate(new StepDelegate(this));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);
    setDragDropOverwriteMode(false);
    setAlternatingRowColors(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeMode(QListView::Adjust);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Room for what a row has beside its summary, and a few words of that.
    constexpr int charactersShown = 28;
    setMinimumWidth(fontMetrics().averageCharWidth() * charactersShown + 2 * dragIconSize);

    const auto separator = [this] { m_editActions.append(nullptr); };
    addEditAction(tr("Cu&t"), QStringLiteral("cut"), QKeySequence::Cut, &ScriptPane::cut);
    addEditAction(tr("&Copy"), QStringLiteral("copy"), QKeySequence::Copy, &ScriptPane::copy);
    m_selectionActions = m_editActions;
    addEditAction(tr("&Paste"), QStringLiteral("paste"), QKeySequence::Paste, &ScriptPane::paste);
    m_selectionActions += addEditAction(tr("Dup&licate"), QStringLiteral("duplicate"), Qt::CTRL | Qt::Key_D,
                                        &ScriptPane::duplicate);
    m_selectionActions += addEditAction(tr("&Delete"), QStringLiteral("delete"), QKeySequence::Delete,
                                        &ScriptPane::removeSelected);
    separator();
    m_selectionActions +=
        addEditAction(tr("&Move up"), QStringLiteral("up"), Qt::ALT | Qt::Key_Up, &ScriptPane::moveUp);
    m_selectionActions += addEditAction(tr("Move d&own"), QStringLiteral("down"), Qt::ALT | Qt::Key_Down,
                                        &ScriptPane::moveDown);
    m_selectionActions +=
        addEditAction(tr("&Enable or disable"), QString(), Qt::Key_Space, &ScriptPane::toggleEnabled);

    document.setClashQuestion([this](const QStringList &names) { return askOnClash(names); });
    connect(&document, &ScriptDocument::touched, this, &ScriptPane::showTouched);
    connect(&document.model(), &QAbstractItemModel::modelReset, this, [this] {
        updateActions();
        // What the settings show is selected, too.
        if (model()->rowCount() > 0)
            setCurrentRow(0);
        emit currentRowChanged(currentRow());
    });
    updateActions();
}

QAction *ScriptPane::addEditAction(const QString &text, const QString &icon, const QKeySequence &key,
                                   void (ScriptPane::*slot)())
{
    auto *action = new QAction(text, this);
    if (!icon.isEmpty())
        action->setIcon(themedIcon(icon));
    action->setShortcut(key);
    // Only here, so that the same keys do their usual work in text fields.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, slot);
    addAction(action);
    m_editActions.append(action);
    return action;
}

int ScriptPane::currentRow() const
{
    return currentIndex().row();
}

void ScriptPane::setCurrentRow(int row)
{
    const QModelIndex index = model()->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

QList<QAction *> ScriptPane::editActions() const
{
    return m_editActions;
}

int ScriptPane::rowBehindCurrent() const
{
    return currentRow() >= 0 ? currentRow() + 1 : model()->rowCount();
}

void ScriptPane::placeStep(const QString &typeId)
{
    m_document.placeStep(typeId, rowBehindCurrent());
}

QList<int> ScriptPane::selectedRows() const
{
    QList<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ScriptPane::cut()
{
    copy();
    removeSelected();
}

void ScriptPane::copy()
{
    const QList<int> rows = selectedRows();
    if (rows.isEmpty())
        return;
    // JSON for other programs; the binary form holds what a step keeps beside its properties, too.
    const QByteArray json = ScriptEdits::copyOf(m_document, StepHost::ScriptForm::Json, rows);
    const QByteArray binary = ScriptEdits::copyOf(m_document, StepHost::ScriptForm::Binary, rows);
    auto *steps = new QMimeData;
    steps->setData(StepMime::steps(), binary.isEmpty() ? json : binary);
    steps->setText(QString::fromUtf8(json));
    QApplication::clipboard()->setMimeData(steps);
}

void ScriptPane::paste()
{
    const QMimeData *copied = QApplication::clipboard()->mimeData();
    if (copied->hasFormat(StepMime::steps()))
        m_document.insertScript(copied->data(StepMime::steps()), rowBehindCurrent());
    else if (copied->hasText())
        m_document.insertScript(copied->text().toUtf8(), rowBehindCurrent());
}

std::optional<StepHost::Clash> ScriptPane::askOnClash(const QStringList &names)
{
    const QString shown = StepHost::inOneLine(shortened(names.join(QLatin1String(", "))));
    QMessageBox box(QMessageBox::Question, tr("Paste steps"),
                    tr("The steps bring %n variable(s) along of which this script has another one: %1",
                       nullptr, names.size())
                        .arg(shown),
                    QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton *present = box.addButton(tr("Use the one here"), QMessageBox::AcceptRole);
    const QAbstractButton *renamed = box.addButton(tr("Bring under a new name"), QMessageBox::ActionRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == present)
        return StepHost::Clash::UsePresent;
    if (box.clickedButton() == renamed)
        return StepHost::Clash::BringRenamed;
    return std::nullopt;
}

void ScriptPane::duplicate()
{
    const QList<int> rows = selectedRows();
    if (!rows.isEmpty())
        m_document.duplicateSteps(rows, rows.last() + 1);
}

void ScriptPane::removeSelected()
{
    m_document.removeSteps(selectedRows());
}

void ScriptPane::moveUp()
{
    const QList<int> rows = selectedRows();
    if (!rows.isEmpty() && rows.first() > 0)
        m_document.moveSteps(rows, rows.first() - 1);
}

void ScriptPane::moveDown()
{
    const QList<int> rows = selectedRows();
    if (!rows.isEmpty() && rows.last() < model()->rowCount() - 1)
        m_document.moveSteps(rows, rows.last() + 2);
}

void ScriptPane::toggleEnabled()
{
    const QList<int> rows = selectedRows();
    if (!rows.isEmpty())
        m_document.setEnabled(rows, !m_document.model().isEnabled(rows.first()));
}

void ScriptPane::updateActions()
{
    const bool hasSelection = selectionModel() && selectionModel()->hasSelection();
    for (QAction *action : qAsConst(m_selectionActions))
        action->setEnabled(hasSelection);
}

void ScriptPane::showTouched(int row, int count)
{
    const QItemSelection touched(model()->index(row, 0), model()->index(row + count - 1, 0));
    // The selection stands already while a setting is typed: then nothing may move.
    if (currentRow() == row && count == 1 && selectedRows() == QList<int>{row})
        return;
    selectionModel()->select(touched, QItemSelectionModel::ClearAndSelect);
    selectionModel()->setCurrentIndex(model()->index(row + count - 1, 0), QItemSelectionModel::NoUpdate);
    scrollTo(currentIndex());
}

void ScriptPane::startDrag(Qt::DropActions supportedActions)
{
    const QModelIndexList steps = selectedIndexes();
    if (steps.isEmpty())
        return;
    // The icon alone: a picture of the rows would cover the line that shows where they will stand.
    auto *drag = new QDrag(this);
    drag->setMimeData(model()->mimeData(steps));
    drag->setPixmap(steps.first().data(Qt::DecorationRole).value<QIcon>().pixmap(dragIconSize));
    drag->setHotSpot(QPoint(-dragIconSize / 2, -dragIconSize / 2));
    drag->exec(supportedActions, defaultDropAction());
}

void ScriptPane::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    updateActions();
}

void ScriptPane::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    emit currentRowChanged(current.row());
}

void ScriptPane::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    for (QAction *action : qAsConst(m_editActions)) {
        if (action)
            menu.addAction(action);
        else
            menu.addSeparator();
    }
    menu.exec(event->globalPos());
}

void ScriptPane::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(Colors::subdued(palette()));
    painter.drawText(
        viewport()->rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
        tr("The script has no steps yet.\nDrag one here from the palette, or double-click it there."));
}
} // namespace Workbench
