#include "PalettePane.h"

#include "PaletteModel.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ThemedIcon.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace Workbench
{
PalettePane::PalettePane(const StepHost::StepCatalogue &catalogue, QWidget *parent)
    : QWidget(parent), m_search(new QLineEdit), m_filter(new QSortFilterProxyModel(this)),
      m_tree(new PaneView<QTreeView>)
{
    m_filter->setSourceModel(new PaletteModel(catalogue, this));
    m_filter->setFilterRole(PaletteModel::SearchRole);
    m_filter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_filter->setRecursiveFilteringEnabled(true);

    m_search->setObjectName(QStringLiteral("paletteSearch"));
    m_search->setPlaceholderText(tr("Search"));
    m_search->setToolTip(tr("Search by name or type"));
    m_search->setAccessibleName(tr("Search steps"));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(themedIcon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &PalettePane::search);
    connect(m_search, &QLineEdit::returnPressed, this, [this] { place(firstStep()); });

    m_tree->setObjectName(QStringLiteral("paletteTree"));
    m_tree->setAccessibleName(tr("Steps on offer"));
    m_tree->setModel(m_filter);
    m_tree->setHeaderHidden(true);
    m_tree->setIndentation(12);
    m_tree->setIconSize(QSize(24, 24));
    m_tree->setDragEnabled(true);
    m_tree->setDragDropMode(QAbstractItemView::DragOnly);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->expandAll();
    connect(m_tree, &QTreeView::activated, this, &PalettePane::place);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_search);
    layout->addWidget(m_tree);
    setFocusProxy(m_search);
}

void PalettePane::search(const QString &text)
{
    m_filter->setFilterFixedString(text.trimmed());
    m_tree->expandAll();
    m_tree->setCurrentIndex(firstStep());
}

void PalettePane::place(const QModelIndex &index)
{
    const QVariant typeId = index.data(PaletteModel::TypeIdRole);
    if (typeId.isValid())
        emit placeRequested(typeId.toString());
    else
        m_tree->setExpanded(index, !m_tree->isExpanded(index));
}

QModelIndex PalettePane::firstStep() const
{
    return m_filter->index(0, 0, m_filter->index(0, 0));
}

bool PalettePane::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
        m_tree->setFocus(Qt::TabFocusReason);
        if (!m_tree->currentIndex().parent().isValid())
            m_tree->setCurrentIndex(firstStep());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
} // namespace Workbench
