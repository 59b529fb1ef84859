#pragma once

#include <QDialog>
#include <QVariant>

#include <optional>

class QTabWidget;

namespace Workbench
{
/// Shows a value whole, and nothing of it can be changed: a list by its items, rows and tables as a grid, any other value
/// as a text. Beside it, where there is one, the value before, and what became of each item.
class ValueViewer : public QDialog
{
    Q_OBJECT

public:
    /// \param name what the variable is called
    /// \param before the value before the run; nothing when there was none
    ValueViewer(const QString &name, const QVariant &value, const std::optional<QVariant> &before,
                QWidget *parent = nullptr);

private:
    static QWidget *viewOf(const QVariant &value, const QString &title);
    QWidget *differenceOf(const QVariantList &before, const QVariantList &after);
    void showDifference();

    QVariant m_before;
    QVariant m_after;
    QTabWidget *m_tabs;
    int m_differenceTab = -1; ///< Filled when it is looked at, as comparing takes its time; -1 when it is.
};
} // namespace Workbench
