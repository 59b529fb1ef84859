#include "ValueDialog.h"

#include "ImportDialog.h"
#include "ListValueModel.h"
#include "ModelRows.h"
#include "TableValueModel.h"
#include "host/files/InputFile.h"
#include "host/files/ValueFile.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ChoiceDelegate.h"
#include "tools/workbench/look/ColoredLabel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Workbench
{
using StepHost::ItemKind;
using StepHost::ItemValue;

namespace
{
QVector<ChoiceDelegate::Choice> kindChoices()
{
    QVector<ChoiceDelegate::Choice> choices;
    const QVector<ItemKind> kinds = ItemValue::editableKinds();
    for (const ItemKind kind : kinds)
        choices.append({int(kind), TypeNames::of(kind)});
    return choices;
}

/// One edit. Values share what they have in common with the one before, so even a long list costs little.
class ValueCommand : public QUndoCommand
{
public:
    using SetValue = std::function<void(const QVariantList &)>;

    ValueCommand(const QVariantList &before, const QVariantList &after, const SetValue &setValue)
        : m_before(before), m_after(after), m_setValue(setValue)
    {
    }

    void undo() override
    {
        m_setValue(m_before);
    }

    void redo() override
    {
        // When it is pushed, the edit is done already.
        if (m_isDone)
            m_setValue(m_after);
        m_isDone = true;
    }

private:
    QVariantList m_before;
    QVariantList m_after;
    SetValue m_setValue;
    bool m_isDone = false;
};

constexpr int undoLimit = 100;

const QLatin1String folderKey("values/folder");
} // namespace

ValueDialog::ValueDialog(const QString &name, VarType type, const QVariantList &value, QWidget *parent)
    : QDialog(parent), m_type(type), m_view(new PaneView<QTableView>), m_count(new QLabel),
      m_message(new ColoredLabel(Colors::warning))
{
    const QString shownName = StepHost::inOneLine(shortened(name));
    setWindowTitle(type == VarType::Table ? tr("Table “%1”").arg(shownName) : tr("List “%1”").arg(shownName));
    if (type == VarType::Table) {
        m_table = new TableValueModel(this);
        m_model = m_table;
    } else {
        m_list = new ListValueModel(this);
        m_model = m_list;
    }
    connect(m_model, &ValueModel::refused, this, &ValueDialog::showMessage);
    setValue(value);
    m_undoStack.setUndoLimit(undoLimit);

    m_view->setObjectName(QStringLiteral("values"));
    m_view->setModel(m_model);
    m_view->setAccessibleName(windowTitle());
    m_view->setWordWrap(false);
    // Otherwise nothing but the table could be reached by Tab.
    m_view->setTabKeyNavigation(false);
    m_view->setAlternatingRowColors(true);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                            | QAbstractItemView::AnyKeyPressed);
    if (m_list) {
        m_view->setItemDelegateForColumn(ListValueModel::TypeColumn, new ChoiceDelegate(kindChoices(), this));
        m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_view->horizontalHeader()->setSectionResizeMode(ListValueModel::ValueColumn, QHeaderView::Stretch);
        m_view->horizontalHeader()->setSortIndicatorShown(false);
        m_view->horizontalHeader()->setSectionsClickable(false);
    }

    auto *buttons = new QDialogButtonBox;
    buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole)->setDefault(false);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    const QList<QAbstractButton *> allButtons = buttons->buttons();
    for (QAbstractButton *button : allButtons)
        static_cast<QPushButton *>(button)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    m_message->setObjectName(QStringLiteral("message"));
    m_message->hide();

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_count);
    bottom->addStretch();
    bottom->addWidget(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->setMenuBar(nullptr);
    layout->addWidget(createToolBar());
    layout->addWidget(m_view, 1);
    layout->addWidget(m_message);
    layout->addLayout(bottom);
    m_view->setFocus();
    resize(760, 540);

    connectModel();
    showCount();
}

void ValueDialog::connectModel()
{
    connect(m_model, &QAbstractItemModel::modelReset, this, &ValueDialog::showCount);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &ValueDialog::showCount);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, &ValueDialog::showCount);
    // What is edited in a cell comes from the view, not through edit().
    connect(m_model, &QAbstractItemModel::dataChanged, this, &ValueDialog::noteEdit);
}

void ValueDialog::noteEdit()
{
    if (m_isEditing)
        return;
    const QVariantList before = m_noted;
    m_noted = value();
    if (!ItemValue::same(QVariant(before), QVariant(m_noted)))
        m_undoStack.push(
            new ValueCommand(before, m_noted, [this](const QVariantList &value) { setValue(value); }));
}

void ValueDialog::edit(const std::function<void()> &action)
{
    m_isEditing = true;
    action();
    m_isEditing = false;
    noteEdit();
}

void ValueDialog::select(const QModelIndex &index)
{
    // Not as the view would select it by itself: the keys that are held down are those of the command.
    m_view->selectionModel()->setCurrentIndex(
        index,
        QItemSelectionModel::ClearAndSelect
            | (m_list ? QItemSelectionModel::Rows : QItemSelectionModel::NoUpdate));
    m_view->scrollTo(index);
}

void ValueDialog::reject()
{
    if (m_undoStack.index() > 0) {
        QMessageBox box(QMessageBox::Warning, tr("Unsaved changes"),
                        tr("Keep what was changed in this dialog?"), QMessageBox::NoButton, this);
        QPushButton *keepButton = box.addButton(tr("Keep"), QMessageBox::AcceptRole);
        QPushButton *discardButton = box.addButton(tr("Discard"), QMessageBox::DestructiveRole);
        box.setEscapeButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
        box.setDefaultButton(keepButton);
        box.exec();
        if (box.clickedButton() == keepButton)
            accept();
        if (box.clickedButton() != discardButton)
            return;
    }
    QDialog::reject();
}

QToolBar *ValueDialog::createToolBar()
{
    auto *bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16));
    const auto add = [this, bar](const QString &text, const QString &icon, const QKeySequence &key,
                                 auto slot) {
        QAction *action = bar->addAction(themedIcon(icon), text, this, slot);
        action->setShortcut(key);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
        return action;
    };
    add(m_table ? tr("Add row") : tr("Add"), QStringLiteral("add"), Qt::CTRL | Qt::Key_Return,
        &ValueDialog::insertItem);
    add(m_table ? tr("Remove rows") : tr("Remove"), QStringLiteral("delete"), Qt::CTRL | Qt::Key_Delete,
        &ValueDialog::removeItems);
    if (m_table) {
        add(tr("Add column"), QStringLiteral("add"), Qt::CTRL | Qt::Key_Right, &ValueDialog::insertColumn);
        add(tr("Remove columns"), QStringLiteral("delete"), Qt::CTRL | Qt::Key_Backspace,
            &ValueDialog::removeColumns);
    } else {
        add(tr("Up"), QStringLiteral("up"), Qt::ALT | Qt::Key_Up, [this] { moveItems(-1); });
        add(tr("Down"), QStringLiteral("down"), Qt::ALT | Qt::Key_Down, [this] { moveItems(1); });
        add(tr("Sort"), QStringLiteral("sort"), Qt::CTRL | Qt::Key_T, &ValueDialog::sortItems);
    }
    addTypeMenu(bar);
    bar->addSeparator();
    const auto addUndo = [bar](QAction *action, const QString &text, const QString &icon,
                               const QKeySequence &key) {
        action->setIcon(themedIcon(icon));
        action->setIconText(text);
        action->setShortcut(key);
        bar->addAction(action);
    };
    addUndo(m_undoStack.createUndoAction(this, tr("Undo")), tr("Undo"), QStringLiteral("undo"),
            QKeySequence::Undo);
    addUndo(m_undoStack.createRedoAction(this, tr("Redo")), tr("Redo"), QStringLiteral("redo"),
            Qt::CTRL | Qt::Key_Y);
    bar->addSeparator();
    add(tr("Import…"), QStringLiteral("open"), Qt::CTRL | Qt::Key_O, &ValueDialog::chooseImport);
    add(tr("Export…"), QStringLiteral("save"), Qt::CTRL | Qt::Key_S, &ValueDialog::chooseExport);
    return bar;
}

void ValueDialog::addTypeMenu(QToolBar *bar)
{
    auto *button = new QToolButton;
    button->setText(tr("Type"));
    button->setToolTip(tr("Convert what is selected to another type"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(button);
    const QVector<ItemKind> kinds = ItemValue::editableKinds();
    for (const ItemKind kind : kinds)
        menu->addAction(TypeNames::of(kind), this, [this, kind] { convertSelected(kind); });
    button->setMenu(menu);
    bar->addWidget(button);
}

QVariantList ValueDialog::value() const
{
    return m_model->value();
}

void ValueDialog::setValue(const QVariantList &value)
{
    m_noted = value;
    m_model->setValue(value);
}

QList<int> ValueDialog::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange &range : m_view->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void ValueDialog::insertItem()
{
    const int row = m_view->currentIndex().isValid() ? m_view->currentIndex().row() + 1 : m_model->rowCount();
    edit([this, row] {
        if (m_table && m_model->columnCount() == 0)
            m_model->insertColumn(0);
        else
            m_model->insertRow(row);
    });
    select(m_model->index(qMin(row, m_model->rowCount() - 1), 0));
    m_view->edit(m_view->currentIndex());
}

void ValueDialog::removeItems()
{
    edit([this] { removeModelRows(*m_model, selectedRows()); });
}

void ValueDialog::insertColumn()
{
    const QModelIndex current = m_view->currentIndex();
    edit([this, current] {
        m_model->insertColumn(current.isValid() ? current.column() + 1 : m_model->columnCount());
    });
}

void ValueDialog::removeColumns()
{
    QList<int> columns;
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : selected)
        columns.append(index.column());
    std::sort(columns.begin(), columns.end());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
    edit([this, &columns] {
        for (auto column = columns.crbegin(); column != columns.crend(); ++column)
            m_model->removeColumn(*column);
    });
}

void ValueDialog::moveItems(int distance)
{
    const QList<int> rows = selectedRows();
    if (rows.isEmpty())
        return;
    const int first = rows.first();
    const int count = rows.last() - first + 1;
    edit([this, first, count, distance] {
        m_list->moveRows(QModelIndex(), first, count, QModelIndex(),
                         distance < 0 ? first - 1 : first + count + 1);
    });
}

void ValueDialog::sortItems()
{
    edit([this] { m_list->sort(ListValueModel::ValueColumn, Qt::AscendingOrder); });
}

void ValueDialog::convertSelected(ItemKind kind)
{
    edit([this, kind] {
        if (m_list)
            m_list->convertRows(selectedRows(), kind);
        else
            m_table->convertCells(m_view->selectionModel()->selectedIndexes(), kind);
    });
}

void ValueDialog::setSettings(QSettings &settings)
{
    m_settings = &settings;
}

QString ValueDialog::folder() const
{
    return m_settings ? m_settings->value(folderKey).toString() : QString();
}

void ValueDialog::keepFolder(const QString &fileName)
{
    if (m_settings)
        m_settings->setValue(folderKey, QFileInfo(fileName).absolutePath());
}

void ValueDialog::chooseImport()
{
    const QString fileName = QFileDialog::getOpenFileName(
        this, tr("Import"), folder(), tr("Text and CSV files (*.txt *.csv *.tsv);;All files (*)"));
    if (!fileName.isEmpty())
        importFile(fileName);
}

void ValueDialog::importFile(const QString &fileName)
{
    const auto bytes = StepHost::readInputFile(fileName);
    showMessage(bytes ? QString() : bytes.error());
    if (!bytes)
        return;
    keepFolder(fileName);
    ImportDialog dialog(fileName, *bytes, m_type, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    edit([&] { m_model->setValue(dialog.appends() ? value() + dialog.value() : dialog.value()); });
}

void ValueDialog::chooseExport()
{
    const QString filter =
        tr("Text files (*.txt);;CSV files (*.csv);;Tab-separated files (*.tsv);;JSON files (*.json)");
    QString chosenFilter = m_table ? filter.section(QLatin1String(";;"), 1, 1) : QString();
    QString fileName = QFileDialog::getSaveFileName(this, tr("Export"), folder(), filter, &chosenFilter);
    if (fileName.isEmpty())
        return;
    // Who chooses a form and types a name without a suffix means that form.
    if (QFileInfo(fileName).suffix().isEmpty())
        fileName += chosenFilter.section(QLatin1Char('*'), -1).chopped(1);
    exportFile(fileName);
}

void ValueDialog::exportFile(const QString &fileName)
{
    const auto written =
        m_list ? StepHost::writeList(fileName, value()) : StepHost::writeTable(fileName, value());
    if (written)
        keepFolder(fileName);
    showMessage(written ? *written : written.error());
}

void ValueDialog::showMessage(const QString &message)
{
    m_message->setText(StepHost::inLines(shortened(message)));
    m_message->setVisible(!message.isEmpty());
}

void ValueDialog::showCount()
{
    m_count->setText(m_table ? tr("%n row(s)", nullptr, m_model->rowCount())
                             : tr("%n item(s)", nullptr, m_model->rowCount()));
}
} // namespace Workbench
