#include "LogPane.h"

#include "tools/workbench/document/LogModel.h"
#include "tools/workbench/look/Colors.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QStyledItemDelegate>

#include <algorithm>

namespace Workbench
{
namespace
{
/// Draws warnings in a colour of their own.
class LogDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(LogModel::WarningRole).toBool())
            option->palette.setColor(QPalette::Text, Colors::warning(option->palette));
    }
};
} // namespace

LogPane::LogPane(LogModel &log, QWidget *parent) : PaneView<QTreeView>(parent), m_log(log)
{
    setObjectName(QStringLiteral("log"));
    setAccessibleName(tr("Log"));
    setModel(&log);
    setItemDelegate(new LogDelegate(this));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    header()->setStretchLastSection(true);
    header()->resizeSection(LogModel::TimeColumn,
                            fontMetrics().horizontalAdvance(QStringLiteral("00:00:00")) + 24);
    header()->resizeSection(LogModel::StepColumn, 170);
    connect(this, &QTreeView::activated, this, [this](const QModelIndex &index) {
        if (!index.siblingAtColumn(LogModel::StepColumn).data().toString().isEmpty())
            emit stepRequested(qobject_cast<Operation *>(index.data(LogModel::StepRole).value<QObject *>()));
    });
    auto *copy = new QAction(tr("Copy"), this);
    copy->setShortcut(QKeySequence::Copy);
    // Only here: elsewhere the same keys copy steps and texts.
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &LogPane::copyLines);
    addAction(copy);
    connect(&log, &QAbstractItemModel::rowsInserted, this, &QTreeView::scrollToBottom, Qt::QueuedConnection);
}

void LogPane::copyLines() const
{
    QStringList lines;
    QModelIndexList selected = selectionModel()->selectedRows();
    std::sort(selected.begin(), selected.end());
    for (const QModelIndex &index : qAsConst(selected)) {
        QStringList cells;
        for (int column = 0; column < LogModel::ColumnCount; ++column)
            cells.append(index.siblingAtColumn(column).data().toString());
        lines.append(cells.join(QLatin1Char('\t')));
    }
    if (!lines.isEmpty())
        QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void LogPane::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    menu.addAction(tr("Copy"), this, &LogPane::copyLines)->setEnabled(selectionModel()->hasSelection());
    menu.addAction(tr("Clear log"), &m_log, &LogModel::clear);
    menu.exec(event->globalPos());
}
} // namespace Workbench
