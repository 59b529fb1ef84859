#pragma once

#include <QStandardItemModel>

namespace StepHost
{
class StepCatalogue;
}

namespace Workbench
{
/// The steps on offer: categories with their steps, in the order in which a host lists them.
class PaletteModel : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Role {
        TypeIdRole = Qt::UserRole, ///< The step's type id; invalid for a category.
        SearchRole, ///< All that a search finds the step by.
    };

    /// Lists the steps of \a catalogue as they are now.
    explicit PaletteModel(const StepHost::StepCatalogue &catalogue, QObject *parent = nullptr);

    Qt::DropActions supportedDragActions() const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
};
} // namespace Workbench
