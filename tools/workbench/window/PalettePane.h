#pragma once

#include <QWidget>

class QLineEdit;
class QModelIndex;
class QSortFilterProxyModel;
class QTreeView;

namespace StepHost
{
class StepCatalogue;
}

namespace Workbench
{
/// The palette with its search field. Steps are placed by dragging, by double-click and by Enter.
class PalettePane : public QWidget
{
    Q_OBJECT

public:
    explicit PalettePane(const StepHost::StepCatalogue &catalogue, QWidget *parent = nullptr);

signals:
    /// The user wants a new step of type \a typeId.
    void placeRequested(const QString &typeId);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void search(const QString &text);
    void place(const QModelIndex &index);
    QModelIndex firstStep() const;

    QLineEdit *m_search;
    QSortFilterProxyModel *m_filter;
    QTreeView *m_tree;
};
} // namespace Workbench
