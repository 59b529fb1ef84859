#include "VariablesPane.h"

#include "VariablesModel.h"
#include "host/scripts/VariableEdits.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"
#include "tools/workbench/document/RunSession.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/look/ChoiceDelegate.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"
#include "tools/workbench/values/ValueDialog.h"
#include "tools/workbench/values/ValueViewer.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
/// Draws what the last run changed in a colour of its own.
class ResultDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(VariablesModel::ChangedRole).toBool())
            option->palette.setColor(QPalette::Text, Colors::changed(option->palette));
    }
};

bool isContainer(VarType type)
{
    return type == VarType::List || type == VarType::Table;
}
} // namespace

VariablesPane::VariablesPane(ScriptDocument &document, RunSession &session, QWidget *parent)
    : QWidget(parent), m_document(document), m_session(session), m_model(new VariablesModel(this)),
      m_view(new PaneView<QTableView>)
{
    createView();
    createActions();
    auto *bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16));
    for (QAction *action : qAsConst(m_editActions)) {
        if (action)
            bar->addAction(action);
        else
            bar->addSeparator();
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 0, 4, 4);
    layout->setSpacing(2);
    layout->addWidget(bar);
    layout->addWidget(m_view);
    setFocusProxy(m_view);

    connect(&document, &ScriptDocument::variablesChanged, this, [this] {
        m_model->setVariables(m_document.variables());
        updateActions();
    });
    connect(&session, &RunSession::changed, this, &VariablesPane::showResult);
    connect(m_model, &VariablesModel::changeRequested, &document, &ScriptDocument::setVariables);
    connect(m_model, &VariablesModel::runChangeRequested, &session, &RunSession::changeVariables);
    connect(m_model, &VariablesModel::renameRequested, this, &VariablesPane::renameVariable);
    connect(m_model, &VariablesModel::refused, this, &VariablesPane::refused);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &VariablesPane::updateActions);
    updateActions();
}

QAction *VariablesPane::addEditAction(const QString &text, const QString &shortText, const QString &icon,
                                      const QKeySequence &key, const QString &name)
{
    auto *action = new QAction(themedIcon(icon), text, this);
    action->setIconText(shortText);
    action->setObjectName(name);
    action->setShortcut(key);
    action->setToolTip(QStringLiteral("%1 (%2)").arg(shortText, key.toString(QKeySequence::NativeText)));
    m_view->addAction(action);
    m_editActions.append(action);
    return action;
}

void VariablesPane::createActions()
{
    QAction *add = addEditAction(tr("&Add variable"), tr("Add"), QStringLiteral("add"),
                                 Qt::CTRL | Qt::SHIFT | Qt::Key_A, QStringLiteral("addVariable"));
    connect(add, &QAction::triggered, this, &VariablesPane::addNewVariable);
    m_remove = addEditAction(tr("&Remove variable"), tr("Remove"), QStringLiteral("delete"),
                             QKeySequence::Delete, QStringLiteral("removeVariable"));
    // Only here: elsewhere the same key removes steps and texts.
    m_remove->setShortcutContext(Qt::WidgetShortcut);
    connect(m_remove, &QAction::triggered, this, &VariablesPane::removeVariable);
    m_edit = addEditAction(tr("&Edit value…"), tr("Edit value…"), QStringLiteral("edit"),
                           Qt::CTRL | Qt::Key_E, QStringLiteral("editValue"));
    connect(m_edit, &QAction::triggered, this, [this] { editValue(m_view->currentIndex().row()); });
    m_uses = addEditAction(tr("&Where it is used"), tr("Uses"), QStringLiteral("search"),
                           Qt::CTRL | Qt::Key_U, QStringLiteral("findUses"));
    connect(m_uses, &QAction::triggered, this,
            [this] { emit usesRequested(m_model->name(m_view->currentIndex().row())); });
    m_editActions.append(nullptr);
    m_keep = addEditAction(tr("&Keep results"), tr("Keep results"), QStringLiteral("keep"),
                           Qt::CTRL | Qt::Key_K, QStringLiteral("keepResults"));
    m_keep->setToolTip(tr("Make the values after the last run those that the script starts with (%1)")
                           .arg(m_keep->shortcut().toString(QKeySequence::NativeText)));
    connect(m_keep, &QAction::triggered, this, &VariablesPane::keepResults);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

QList<QAction *> VariablesPane::editActions() const
{
    return m_editActions;
}

void VariablesPane::createView()
{
    m_view->setObjectName(QStringLiteral("variables"));
    m_view->setAccessibleName(tr("Variables"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setTabKeyNavigation(false);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_view->horizontalHeader()->resizeSection(VariablesModel::NameColumn, 110);
    m_view->horizontalHeader()->resizeSection(VariablesModel::TypeColumn, 80);
    m_view->horizontalHeader()->setSectionResizeMode(VariablesModel::ValueColumn, QHeaderView::Stretch);
    m_view->horizontalHeader()->setSectionResizeMode(VariablesModel::ResultColumn, QHeaderView::Stretch);
    QVector<ChoiceDelegate::Choice> types;
    const QVector<VarType> variableTypes = StepHost::declarableTypes();
    for (const VarType type : variableTypes)
        types.append({int(type), TypeNames::of(type)});
    m_view->setItemDelegateForColumn(VariablesModel::TypeColumn, new ChoiceDelegate(types, this));
    m_view->setItemDelegateForColumn(VariablesModel::ResultColumn, new ResultDelegate(this));
    m_view->installEventFilter(this);
    // What can be edited in its cell is, by the view itself.
    connect(m_view, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (!index.flags().testFlag(Qt::ItemIsEditable))
            activate(index);
    });
}

void VariablesPane::setSettings(QSettings &settings)
{
    m_settings = &settings;
}

VariablesModel &VariablesPane::model() const
{
    return *m_model;
}

void VariablesPane::showResult()
{
    if (m_session.isPaused())
        m_model->setPaused(m_session.before(), m_session.after());
    else if (m_session.hasResult())
        m_model->setResult(m_session.before(), m_session.after());
    else
        m_model->clearResult();
    updateActions();
}

void VariablesPane::updateActions()
{
    const QModelIndex current = m_view->currentIndex();
    const bool isOfScript = current.isValid() && m_model->isOfScript(current.row());
    m_remove->setEnabled(isOfScript);
    m_edit->setEnabled(isOfScript);
    m_uses->setEnabled(current.isValid());
    m_keep->setEnabled(m_session.hasResult() && !m_session.isRunning());
}

bool VariablesPane::eventFilter(QObject *watched, QEvent *event)
{
    // A key that ends the editing of a cell comes by here too, but not to the view itself.
    if (event->type() == QEvent::KeyPress && m_view->hasFocus()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_view->currentIndex().isValid()) {
            activate(m_view->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void VariablesPane::addNewVariable()
{
    const VariableScope &variables = m_document.variables();
    const QString name = StepHost::VariableEdits::freeName(variables, tr("variable%1"));
    m_document.setVariables(*StepHost::VariableEdits::add(variables, name, VarType::List),
                            tr("Add variable"));
    const QModelIndex index = m_model->index(m_model->rowOf(name), VariablesModel::NameColumn);
    m_view->setCurrentIndex(index);
    m_view->setFocus();
    m_view->edit(index);
}

void VariablesPane::addVariable(const QString &name, VarType type)
{
    const auto added = StepHost::VariableEdits::add(m_document.variables(), name, type);
    if (added)
        m_document.setVariables(*added, tr("Add variable"));
    else
        emit refused(added.error());
}

void VariablesPane::removeVariable()
{
    const int row = m_view->currentIndex().row();
    if (row < 0 || !m_model->isOfScript(row) || !mayRemove(m_model->name(row)))
        return;
    VariableScope variables = m_document.variables();
    variables.remove(StepHost::referenceTo(m_model->name(row)));
    m_document.setVariables(variables, tr("Remove variable “%1”").arg(m_model->name(row)));
}

bool VariablesPane::mayRemove(const QString &name)
{
    QStringList steps;
    const QVector<StepHost::VariableUse> uses = ScriptEdits::usesOf(m_document, name);
    for (const StepHost::VariableUse &use : uses) {
        if (use.isShown)
            steps.append(QString::number(use.row + 1));
    }
    steps.removeDuplicates();
    if (steps.isEmpty())
        return true;
    const QString shown = StepHost::inOneLine(shortened(name));
    QMessageBox box(
        QMessageBox::Question, tr("Remove variable"),
        tr("“%1” is used by %n step(s): %2. Without it they may skip their work.", nullptr, steps.size())
            .arg(shown, shortened(steps.join(QLatin1String(", ")))),
        QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton *remove = box.addButton(tr("Remove"), QMessageBox::DestructiveRole);
    const QAbstractButton *show = box.addButton(tr("Show uses"), QMessageBox::ActionRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == show)
        emit usesRequested(name);
    return box.clickedButton() == remove;
}

void VariablesPane::renameVariable(const QString &from, const QString &to)
{
    const StepHost::Result<int> renamed = ScriptEdits::renameVariable(m_document, from, to);
    if (!renamed)
        emit refused(renamed.error());
}

void VariablesPane::setCurrentVariable(const QString &name)
{
    const int row = m_model->rowOf(name);
    if (row < 0)
        return;
    m_view->setCurrentIndex(m_model->index(row, VariablesModel::NameColumn));
    m_view->setFocus(Qt::OtherFocusReason);
}

void VariablesPane::activate(const QModelIndex &index)
{
    if (index.flags().testFlag(Qt::ItemIsEditable))
        m_view->edit(index);
    else if (index.column() == VariablesModel::ValueColumn)
        editValue(index.row());
    else if (index.column() == VariablesModel::ResultColumn && m_session.isPaused())
        editRunValue(index.row());
    else if (index.column() == VariablesModel::ResultColumn)
        viewResult(index.row());
}

void VariablesPane::viewResult(int row)
{
    const QString reference = StepHost::referenceTo(m_model->name(row));
    if (!m_session.hasResult() || !m_session.after().contains(reference))
        return;
    const VariableScope &before = m_session.before();
    ValueViewer(m_model->name(row), m_session.after().get(reference),
                before.contains(reference) ? std::make_optional(before.get(reference)) : std::nullopt, this)
        .exec();
}

void VariablesPane::editValue(int row)
{
    if (row < 0 || !m_model->isOfScript(row))
        return;
    const QString name = m_model->name(row);
    const QString reference = StepHost::referenceTo(name);
    const VarType type = m_document.variables().typeOf(reference);
    if (!isContainer(type)) {
        const QModelIndex index = m_model->index(row, VariablesModel::ValueColumn);
        m_view->setCurrentIndex(index);
        m_view->edit(index);
        return;
    }
    if (const std::optional<VariableScope> edited = editedIn(m_document.variables(), name))
        m_document.setVariables(*edited, tr("Change value of “%1”").arg(name));
}

void VariablesPane::editRunValue(int row)
{
    const QString name = m_model->name(row);
    const VariableScope variables = m_session.after();
    if (!isContainer(variables.typeOf(StepHost::referenceTo(name))))
        return;
    if (const std::optional<VariableScope> edited = editedIn(variables, name))
        m_session.changeVariables(*edited, tr("Change value of “%1”").arg(name));
}

// `variables` with the value that the user gives the list or table `name`; nothing when it stays.
std::optional<VariableScope> VariablesPane::editedIn(const VariableScope &variables, const QString &name)
{
    const QString reference = StepHost::referenceTo(name);
    const QVariantList before = variables.get(reference).toList();
    ValueDialog dialog(name, variables.typeOf(reference), before, this);
    if (m_settings)
        dialog.setSettings(*m_settings);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QVariantList after = dialog.value();
    if (StepHost::ItemValue::same(QVariant(after), QVariant(before)))
        return std::nullopt;
    VariableScope edited = variables;
    edited.set(reference, QVariant(after));
    return edited;
}

void VariablesPane::keepResults()
{
    VariableScope kept = m_session.after();
    const QStringList names = kept.names();
    for (const QString &name : names) {
        if (!StepHost::isVariableName(name)) // A step may make such a variable, a script cannot hold it.
            kept.remove(StepHost::referenceTo(name));
    }
    m_document.setVariables(kept, tr("Keep results"));
}
} // namespace Workbench
