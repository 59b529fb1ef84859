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

LogPane::LogPane(LogModel &log, QWidget *parent) : QTreeView(parent), m_log(log)
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
        const int step = index.data(LogModel::StepRole).toInt();
        if (step >= 0)
            emit stepRequested(step);
    });
    connect(&log, &QAbstractItemModel::rowsInserted, this, &QTreeView::scrollToBottom, Qt::QueuedConnection);
}

void LogPane::copyLines() const
{
    QStringList lines;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        QStringList cells;
        for (int column = 0; column < LogModel::ColumnCount; ++column)
            cells.append(index.siblingAtColumn(column).data().toString());
        lines.append(cells.join(QLatin1Char('\t')));
    }
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
