#include "ProblemsPane.h"

#include "tools/workbench/document/ProblemsModel.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace Workbench
{
ProblemsPane::ProblemsPane(const ScriptModel &script, QWidget *parent)
    : QWidget(parent), m_model(new ProblemsModel(script, this)), m_view(new PaneView<QTreeView>),
      m_create(new QPushButton)
{
    createView();
    m_create->setObjectName(QStringLiteral("createMissing"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_create, 0, Qt::AlignLeft);
    setFocusProxy(m_view);
    connect(m_create, &QPushButton::clicked, this, &ProblemsPane::create);
    connect(m_view, &QTreeView::activated, this, &ProblemsPane::go);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, &ProblemsPane::showCurrent);
    for (const auto changed : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model, changed, this, &ProblemsPane::showCount);
    showCurrent();
}

void ProblemsPane::createView()
{
    m_view->setObjectName(QStringLiteral("problems"));
    m_view->setAccessibleName(tr("Problems"));
    m_view->setModel(m_model);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    QHeaderView *header = m_view->header();
    header->setStretchLastSection(false);
    header->resizeSection(ProblemsModel::StepColumn, 130);
    header->setSectionResizeMode(ProblemsModel::ProblemColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(ProblemsModel::RemedyColumn, QHeaderView::ResizeToContents);
    // Of those that are seen: there may be many.
    header->setResizeContentsPrecision(0);
}

void ProblemsPane::go(const QModelIndex &index)
{
    emit settingRequested(m_model->stepRow(index.row()), m_model->problem(index.row()).property);
}

void ProblemsPane::create()
{
    const StepHost::StepProblem problem = m_model->problem(m_view->currentIndex().row());
    emit variableWanted(problem.missing, problem.missingType);
}

void ProblemsPane::showCurrent()
{
    const QModelIndex current = m_view->currentIndex();
    const bool isMissing = current.isValid() && !m_model->problem(current.row()).missing.isEmpty();
    if (isMissing)
        m_create->setText(menuText(current.siblingAtColumn(ProblemsModel::RemedyColumn).data().toString()));
    m_create->setVisible(isMissing);
}

void ProblemsPane::showCount()
{
    showCurrent();
    emit countChanged(m_model->rowCount());
}
} // namespace Workbench
