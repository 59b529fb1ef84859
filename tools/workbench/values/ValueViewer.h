#pragma once

#include <QDialog>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

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
    using Make = std::function<QWidget *()>;

    void addPage(const QString &title, const Make &make);
    void showPage(int index);

    QTabWidget *m_tabs;
    std::vector<Make>
        m_pages; ///< Each is made when it is looked at first, as a long value takes its time; then null.
};
} // namespace Workbench
