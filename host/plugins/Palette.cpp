#include "Palette.h"

#include "StepTexts.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace StepHost
{
namespace
{
// Wider than a manifest's int, so that no weight is as large.
constexpr qint64 noWeight = std::numeric_limits<qint64>::max();

qint64 weightOf(const QMap<QString, int> &weights, const QString &key)
{
    const auto it = weights.constFind(key);
    return it == weights.constEnd() ? noWeight : qint64(*it);
}

struct RankedEntry
{
    std::tuple<qint64, QString, qint64, QString> rank;
    PaletteEntry entry;
};
} // namespace

QVector<PaletteEntry> paletteOrder(const QVector<PaletteSource> &sources)
{
    QVector<RankedEntry> ranked;
    for (int i = 0; i < sources.size(); ++i) {
        for (const Operation *prototype : sources.at(i).prototypes) {
            const QString category = stepText(*prototype, &Operation::root);
            qint64 categoryWeight = noWeight;
            for (const PaletteSource &source : sources)
                categoryWeight = std::min(categoryWeight, weightOf(source.manifest.categoryOrder, category));
            const QString typeId = prototype->typeId();
            const qint64 typeWeight = weightOf(sources.at(i).manifest.typeOrder, typeId);
            ranked.append({{categoryWeight, category, typeWeight, typeId}, {category, prototype, i}});
        }
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const RankedEntry &a, const RankedEntry &b) { return a.rank < b.rank; });
    QVector<PaletteEntry> entries;
    for (const RankedEntry &item : qAsConst(ranked))
        entries.append(item.entry);
    return entries;
}
} // namespace StepHost
