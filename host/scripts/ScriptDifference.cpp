#include "ScriptDifference.h"

#include "ScriptJson.h"
#include "host/plugins/StepRecord.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"

#include <QMetaProperty>

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace StepHost
{
namespace
{
const QLatin1String recordName("(record)");

struct NamedValue
{
    QString name;
    QByteArray json;

    bool operator<(const NamedValue &other) const
    {
        return std::tie(name, json) < std::tie(other.name, other.json);
    }
    bool operator==(const NamedValue &other) const
    {
        return name == other.name && json == other.json;
    }
};

/// A step or a variable, as it is compared.
struct Item
{
    QString key; ///< A step's type, a variable's name.
    std::vector<NamedValue> values;

    bool operator<(const Item &other) const
    {
        return std::tie(key, values) < std::tie(other.key, other.values);
    }
    bool operator==(const Item &other) const
    {
        return key == other.key && values == other.values;
    }
};

using Items = std::vector<Item>;

// Which item of the second script one of the first is, and the other way round; -1 for none.
struct Matching
{
    std::vector<int> afterOf;
    std::vector<int> beforeOf;

    Matching(std::size_t before, std::size_t after) : afterOf(before, -1), beforeOf(after, -1) { }

    void match(int before, int after)
    {
        afterOf[std::size_t(before)] = after;
        beforeOf[std::size_t(after)] = before;
    }
};

template<typename Write>
Result<QByteArray> jsonOf(const Write &write)
{
    QByteArray bytes;
    JsonWriter json(bytes, JsonWriter::InLine);
    const Result<void> written = write(json);
    if (!written)
        return failure(written.error());
    return bytes;
}

Result<Item> itemOf(const ScriptVariable &variable)
{
    const Result<QByteArray> value =
        jsonOf([&](JsonWriter &json) { return writeVariableValue(json, variable.value, variable.type); });
    if (!value)
        return failure(QStringLiteral("the value of %1 %2").arg(quoted(variable.name), value.error()));
    return Item{variable.name,
                {{QStringLiteral("type"), '"' + varTypeName(variable.type).toUtf8() + '"'},
                 {QStringLiteral("value"), *value}}};
}

Result<Item> itemOf(const ScriptStep &step)
{
    Item item{step.operation->typeId(), {{QStringLiteral("enabled"), step.enabled ? "true" : "false"}}};
    const QVector<QMetaProperty> settings = scriptSettingsOf(*step.operation);
    for (const QMetaProperty &setting : settings) {
        const QString name = QString::fromUtf8(setting.name());
        const Result<QByteArray> value =
            jsonOf([&](JsonWriter &json) { return writeSetting(json, *step.operation, setting); });
        if (!value)
            return failure(QStringLiteral("the property \"%1\" %2").arg(name, value.error()));
        item.values.push_back({name, *value});
    }
    item.values.push_back({recordName, '"' + recordOf(*step.operation).toBase64() + '"'});
    return item;
}

template<typename Source>
Result<Items> itemsOf(const std::vector<Source> &sources)
{
    Items items;
    items.reserve(sources.size());
    for (const Source &source : sources) {
        Result<Item> item = itemOf(source);
        if (!item)
            return failure(item.error());
        items.push_back(std::move(*item));
    }
    return items;
}

// Matches items that are the same: those at both ends, and of what is between the first of a kind with the first.
void matchSame(const Items &before, const Items &after, Matching &matching)
{
    int first = 0;
    int lastBefore = int(before.size()) - 1;
    int lastAfter = int(after.size()) - 1;
    while (first <= lastBefore && first <= lastAfter
           && before[std::size_t(first)] == after[std::size_t(first)]) {
        matching.match(first, first);
        ++first;
    }
    while (first <= lastBefore && first <= lastAfter
           && before[std::size_t(lastBefore)] == after[std::size_t(lastAfter)])
        matching.match(lastBefore--, lastAfter--);
    std::multimap<Item, int> left;
    for (int i = first; i <= lastBefore; ++i)
        left.emplace(before[std::size_t(i)], i);
    for (int i = first; i <= lastAfter; ++i) {
        const auto same = left.lower_bound(after[std::size_t(i)]);
        if (same == left.end() || !(same->first == after[std::size_t(i)]))
            continue;
        matching.match(same->second, i);
        left.erase(same);
    }
}

// Those of the first script that keep their order in the second: as many as can be.
std::vector<bool> inOrder(const Matching &matching)
{
    const std::vector<int> &afterOf = matching.afterOf;
    std::vector<int> ends; // For each length of a rising row, the item at which the lowest one ends.
    std::vector<int> previous(afterOf.size(), -1);
    for (int i = 0; i < int(afterOf.size()); ++i) {
        const int after = afterOf[std::size_t(i)];
        if (after < 0)
            continue;
        const auto end = std::lower_bound(ends.begin(), ends.end(), after, [&](int item, int place) {
            return afterOf[std::size_t(item)] < place;
        });
        if (end != ends.begin())
            previous[std::size_t(i)] = *(end - 1);
        if (end == ends.end())
            ends.push_back(i);
        else
            *end = i;
    }
    std::vector<bool> stays(afterOf.size(), false);
    for (int i = ends.empty() ? -1 : ends.back(); i >= 0; i = previous[std::size_t(i)])
        stays[std::size_t(i)] = true;
    return stays;
}

// For each item, and for the end, how many before it stay where they are.
std::vector<int> gapsOf(const std::vector<bool> &stays)
{
    std::vector<int> gaps;
    int gap = 0;
    for (const bool stayed : stays) {
        gaps.push_back(gap);
        gap += stayed ? 1 : 0;
    }
    return gaps;
}

using Place = std::pair<int, QString>; // A gap and a key.
using Places = std::map<Place, std::vector<int>>;

// The items that `matches` has nothing for, by place.
Places leftOver(const Items &items, const std::vector<int> &matches, const std::vector<int> &gaps)
{
    Places left;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (matches[i] < 0)
            left[Place(gaps[i], items[i].key)].push_back(int(i));
    }
    return left;
}

// Matches what is left by key: the first with the first of those in one gap, and then the only ones of their key.
void matchChanged(const Items &before, const Items &after, const std::vector<int> &gapsBefore,
                  const std::vector<int> &gapsAfter, Matching &matching)
{
    const Places inGaps = leftOver(before, matching.afterOf, gapsBefore);
    const Places inGapsAfter = leftOver(after, matching.beforeOf, gapsAfter);
    for (const auto &place : inGapsAfter) {
        const auto like = inGaps.find(place.first);
        for (std::size_t i = 0; like != inGaps.end() && i < like->second.size() && i < place.second.size();
             ++i)
            matching.match(like->second[i], place.second[i]);
    }
    const Places left = leftOver(before, matching.afterOf, std::vector<int>(before.size(), 0));
    const Places leftAfter = leftOver(after, matching.beforeOf, std::vector<int>(after.size(), 0));
    for (const auto &place : leftAfter) {
        const auto like = left.find(place.first);
        if (like != left.end() && like->second.size() == 1 && place.second.size() == 1)
            matching.match(like->second.front(), place.second.front());
    }
}

std::vector<ValueChange> valuesOf(const Item &item, bool isBefore)
{
    std::vector<ValueChange> values;
    for (const NamedValue &value : item.values) {
        if (value.name == recordName)
            continue;
        values.push_back(
            {value.name, isBefore ? value.json : QByteArray(), isBefore ? QByteArray() : value.json});
    }
    return values;
}

// Items of one key have the same values. A record holds the settings, too, and so tells nothing when these differ.
std::vector<ValueChange> changesBetween(const Item &before, const Item &after)
{
    std::vector<ValueChange> changes;
    for (std::size_t i = 0; i < before.values.size() && i < after.values.size(); ++i) {
        if (!(before.values[i] == after.values[i]))
            changes.push_back({before.values[i].name, before.values[i].json, after.values[i].json});
    }
    if (changes.size() > 1 && changes.back().name == recordName)
        changes.pop_back();
    return changes;
}

// How many items before each of the second script stay where they are, of which those of the first script are known.
std::vector<int> gapsAfterOf(const Matching &matching, const std::vector<bool> &stays)
{
    std::vector<bool> staysAfter;
    for (const int before : matching.beforeOf)
        staysAfter.push_back(before >= 0 && stays[std::size_t(before)]);
    return gapsOf(staysAfter);
}

std::vector<ItemChange> changesOf(const Items &before, const Items &after)
{
    Matching same(before.size(), after.size());
    matchSame(before, after, same);
    const std::vector<bool> stays = inOrder(same);
    Matching matching = same;
    matchChanged(before, after, gapsOf(stays), gapsAfterOf(same, stays), matching);

    std::vector<std::pair<int, ItemChange>> changes; // Each with the place where it is told.
    const std::vector<bool> keeps = inOrder(matching);
    const std::vector<int> gapsBefore = gapsOf(keeps);
    const std::vector<int> gapsAfter = gapsAfterOf(matching, keeps);
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (matching.afterOf[i] < 0)
            changes.push_back({gapsBefore[i], {ChangeKind::Removed, int(i), -1, valuesOf(before[i], true)}});
    }
    for (std::size_t i = 0; i < after.size(); ++i) {
        const int from = matching.beforeOf[i];
        ItemChange change{ChangeKind::Moved, from, int(i), {}};
        if (from < 0)
            change = {ChangeKind::Added, -1, int(i), valuesOf(after[i], false)};
        else if (same.beforeOf[i] < 0)
            change = {ChangeKind::Changed, from, int(i), changesBetween(before[std::size_t(from)], after[i])};
        else if (stays[std::size_t(from)])
            continue;
        changes.emplace_back(gapsAfter[i], change);
    }
    std::stable_sort(changes.begin(), changes.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<ItemChange> result;
    result.reserve(changes.size());
    for (auto &change : changes)
        result.push_back(std::move(change.second));
    return result;
}
} // namespace

QString changeName(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Added:
        return QStringLiteral("added");
    case ChangeKind::Removed:
        return QStringLiteral("removed");
    case ChangeKind::Moved:
        return QStringLiteral("moved");
    case ChangeKind::Changed:
        break;
    }
    return QStringLiteral("changed");
}

Result<ScriptDifference> differenceOf(const Script &before, const Script &after)
{
    const Result<Items> variablesBefore = itemsOf(before.variables);
    const Result<Items> variablesAfter = itemsOf(after.variables);
    const Result<Items> stepsBefore = itemsOf(before.steps);
    const Result<Items> stepsAfter = itemsOf(after.steps);
    for (const Result<Items> *items : {&variablesBefore, &variablesAfter, &stepsBefore, &stepsAfter}) {
        if (!*items)
            return failure(items->error());
    }
    return ScriptDifference{changesOf(*variablesBefore, *variablesAfter),
                            changesOf(*stepsBefore, *stepsAfter)};
}
} // namespace StepHost
