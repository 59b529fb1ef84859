#include "PaletteModel.h"

#include "host/plugins/Palette.h"
#include "host/plugins/StepCatalogue.h"
#include "host/plugins/StepTexts.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/StepMime.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QMimeData>

namespace Workbench
{
PaletteModel::PaletteModel(const StepHost::StepCatalogue &catalogue, QObject *parent)
    : QStandardItemModel(parent)
{
    QVector<StepHost::PaletteSource> sources;
    for (const auto &plugin : catalogue.plugins())
        sources.append({plugin->manifest(), plugin->prototypes()});

    QStandardItem *category = nullptr;
    const QVector<StepHost::PaletteEntry> entries = StepHost::paletteOrder(sources);
    for (const StepHost::PaletteEntry &entry : entries) {
        const QString categoryText = StepHost::inLines(entry.category);
        if (!category || category->text() != categoryText) {
            category = new QStandardItem(categoryText);
            category->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            appendRow(category);
        }
        const Operation &prototype = *entry.prototype;
        const QString name = StepHost::shownStepText(prototype, &Operation::typeName);
        auto *item = new QStandardItem(stepIcon(StepHost::stepText(prototype, &Operation::icon)), name);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
                       | Qt::ItemNeverHasChildren);
        item->setData(prototype.typeId(), TypeIdRole);
        item->setData(QStringList{entry.category, name, prototype.typeId()}.join(QLatin1Char('\n')),
                      SearchRole);
        item->setToolTip(toolTipText(name + QLatin1Char('\n') + prototype.typeId()));
        category->appendRow(item);
    }
}

Qt::DropActions PaletteModel::supportedDragActions() const
{
    // After a move the view would take the step out of the palette.
    return Qt::CopyAction;
}

QStringList PaletteModel::mimeTypes() const
{
    return {StepMime::stepType()};
}

QMimeData *PaletteModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty() || !indexes.first().data(TypeIdRole).isValid())
        return nullptr;
    auto *data = new QMimeData;
    data->setData(StepMime::stepType(), indexes.first().data(TypeIdRole).toString().toUtf8());
    return data;
}
} // namespace Workbench
