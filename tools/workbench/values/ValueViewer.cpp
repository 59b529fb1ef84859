#include "ValueViewer.h"

#include "FindBar.h"
#include "ItemDifferenceModel.h"
#include "ListValueModel.h"
#include "TableValueModel.h"
#include "ValueView.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
bool isList(const QVariant &value)
{
    return ItemValue::kind(value) == ItemKind::List;
}

// Rows, be it of a table or of a list.
bool holdsRows(const QVariantList &items)
{
    return !items.isEmpty() && std::all_of(items.cbegin(), items.cend(), isList);
}

QAction *addAction(QWidget *widget, const QString &text, const QKeySequence &key)
{
    auto *action = new QAction(text, widget);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    widget->addAction(action);
    return action;
}

QWidget *gridOf(const QVariantList &items, const QString &title)
{
    auto *page = new QWidget;
    const bool isTable = holdsRows(items);
    ValueModel *model =
        isTable ? static_cast<ValueModel *>(new TableValueModel(page)) : new ListValueModel(page);
    model->setReadOnly(true);
    model->setValue(items);
    auto *view = new ValueView(*model, !isTable);
    view->setAccessibleName(title);
    auto *findBar = new FindBar(*model, *view);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(view, 1);
    layout->addWidget(findBar);
    findBar->show();
    page->setFocusProxy(view);
    QObject::connect(addAction(page, ValueViewer::tr("Find…"), QKeySequence::Find), &QAction::triggered,
                     findBar, &FindBar::begin);
    QObject::connect(addAction(page, ValueViewer::tr("Find next"), Qt::Key_F3), &QAction::triggered, findBar,
                     [findBar] { findBar->findNext(true); });
    QObject::connect(addAction(page, ValueViewer::tr("Find previous"), Qt::SHIFT | Qt::Key_F3),
                     &QAction::triggered, findBar, [findBar] { findBar->findNext(false); });
    return page;
}
QWidget *viewOf(const QVariant &value, const QString &title)
{
    if (isList(value))
        return gridOf(value.toList(), title);
    auto *text = new QPlainTextEdit(StepHost::inLines(ItemValue::editText(value)));
    text->setObjectName(QStringLiteral("text"));
    text->setAccessibleName(title);
    text->setReadOnly(true);
    return text;
}

QWidget *differenceOf(const QVariantList &before, const QVariantList &after)
{
    auto *page = new QWidget;
    auto *model = new ItemDifferenceModel(before, after, page);
    auto *view = new PaneView<QTableView>;
    view->setObjectName(QStringLiteral("difference"));
    view->setAccessibleName(ValueViewer::tr("What changed"));
    view->setModel(model);
    view->setWordWrap(false);
    view->setTabKeyNavigation(false);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 8);
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->horizontalHeader()->resizeSection(ItemDifferenceModel::KindColumn, 100);
    view->horizontalHeader()->resizeSection(ItemDifferenceModel::OldPlaceColumn, 70);
    view->horizontalHeader()->resizeSection(ItemDifferenceModel::NewPlaceColumn, 70);
    view->horizontalHeader()->setSectionResizeMode(ItemDifferenceModel::OldColumn, QHeaderView::Stretch);
    view->horizontalHeader()->setSectionResizeMode(ItemDifferenceModel::NewColumn, QHeaderView::Stretch);
    auto *only = new QCheckBox(ValueViewer::tr("Only what differs"));
    only->setObjectName(QStringLiteral("only"));
    QObject::connect(only, &QCheckBox::toggled, model, &ItemDifferenceModel::setOnlyDifferent);
    auto *summary = new QLabel(model->summary());
    summary->setObjectName(QStringLiteral("summary"));
    auto *top = new QHBoxLayout;
    top->addWidget(summary);
    top->addStretch();
    top->addWidget(only);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(view, 1);
    return page;
}
} // namespace

ValueViewer::ValueViewer(const QString &name, const QVariant &value, const std::optional<QVariant> &before,
                         QWidget *parent)
    : QDialog(parent), m_tabs(new QTabWidget)
{
    setWindowTitle(tr("Value of “%1”").arg(StepHost::inOneLine(shortened(name))));
    m_tabs->setObjectName(QStringLiteral("tabs"));
    addPage(tr("After the last run"), [value] { return viewOf(value, tr("After the last run")); });
    if (before) {
        addPage(tr("Before"), [old = *before] { return viewOf(old, tr("Before")); });
        if (isList(value) && isList(*before)) {
            addPage(tr("What changed"),
                    [value, old = *before] { return differenceOf(old.toList(), value.toList()); });
        }
    }
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_tabs, &QTabWidget::currentChanged, this, &ValueViewer::showPage);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(buttons);
    resize(760, 560);
    showPage(0);
    m_tabs->currentWidget()->setFocus();
}

void ValueViewer::addPage(const QString &title, const Make &make)
{
    auto *page = new QWidget;
    new QVBoxLayout(page);
    m_pages.push_back(make);
    m_tabs->addTab(page, title);
}

void ValueViewer::showPage(int index)
{
    const Make make = std::exchange(m_pages.at(std::size_t(index)), nullptr);
    if (!make)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QWidget *content = make();
    m_tabs->widget(index)->layout()->addWidget(content);
    m_tabs->widget(index)->setFocusProxy(content);
    QApplication::restoreOverrideCursor();
}
} // namespace Workbench
