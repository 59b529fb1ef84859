#pragma once

#include <QDialog>

namespace Workbench
{
/// Shows in which lines two texts differ, each with a few lines around it.
class DifferenceDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param first, second the texts
    /// \param firstName, secondName what they are, for the user
    DifferenceDialog(const QString &first, const QString &firstName, const QString &second,
                     const QString &secondName, QWidget *parent = nullptr);
};
} // namespace Workbench
