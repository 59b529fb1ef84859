#include "DifferenceReport.h"

#include "host/plugins/StepTexts.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"

#include <QStringList>

#include <algorithm>
#include <functional>

namespace StepHost
{
namespace
{
const ChangeKind countedKinds[] = {ChangeKind::Added, ChangeKind::Removed, ChangeKind::Moved,
                                   ChangeKind::Changed};

TextColour colourOf(ChangeKind kind)
{
    return kind == ChangeKind::Added  ? TextColour::Good
        : kind == ChangeKind::Removed ? TextColour::Bad
                                      : TextColour::Caution;
}

// The item that `change` is about: the one that is there afterwards, if any.
template<typename Item>
const Item &itemOf(const ItemChange &change, const std::vector<Item> &before, const std::vector<Item> &after)
{
    return change.after < 0 ? before[std::size_t(change.before)] : after[std::size_t(change.after)];
}

QString summaryOf(const ScriptStep &step)
{
    return stepText(*step.operation, &Operation::toString);
}

// Such as "3" or "4 -> 2".
QString placeOf(const ItemChange &change)
{
    if (change.before < 0 || change.after < 0 || change.before == change.after)
        return QString::number(qMax(change.before, change.after) + 1);
    return QStringLiteral("%1 -> %2").arg(change.before + 1).arg(change.after + 1);
}

QString cut(const QString &value, int columns)
{
    return cutToColumns(value, columns, QStringLiteral(" ... (%1 characters)").arg(value.size()));
}

// One line: the name of the value, and what it was and is.
QString valueLine(const ValueChange &value, const QString &lead, const TextLook &look)
{
    const QString name = lead + inOneLine(value.name) + QLatin1String(": ");
    const QString before = inOneLine(QString::fromUtf8(value.before));
    const QString after = inOneLine(QString::fromUtf8(value.after));
    const QString arrow = before.isEmpty() || after.isEmpty() ? QString() : QStringLiteral(" -> ");
    if (look.columns == 0)
        return name + before + arrow + after;
    // A half for each; what the shorter one leaves is the longer one's.
    const int room = qMax(2, look.columns - columnsOf(name) - arrow.size());
    return name + cut(before, qMax(room / 2, room - columnsOf(after))) + arrow
        + cut(after, qMax(room / 2, room - columnsOf(before)));
}

struct Section
{
    QByteArray title;
    const std::vector<ItemChange> &changes;
    bool showsAll; ///< Whether the values of what was added or removed are shown, too.
    std::function<QString(const ItemChange &)> label;
};

QByteArray sectionText(const Section &section, const TextLook &look)
{
    if (section.changes.empty())
        return QByteArray();
    int width = 0;
    for (const ItemChange &change : section.changes)
        width = qMax(width, placeOf(change).size());
    constexpr int kindWidth = 7;
    const QString indent(2 + kindWidth + 2 + width + 2, QLatin1Char(' '));
    QByteArray text = section.title + '\n';
    for (const ItemChange &change : section.changes) {
        const QByteArray kind = changeName(change.kind).leftJustified(kindWidth).toUtf8();
        text += "  " + coloured(kind, colourOf(change.kind), look) + "  "
            + placeOf(change).leftJustified(width).toUtf8() + "  " + inOneLine(section.label(change)).toUtf8()
            + '\n';
        if (!section.showsAll && change.kind != ChangeKind::Changed)
            continue;
        for (const ValueChange &value : change.values)
            text += valueLine(value, indent, look).toUtf8() + '\n';
    }
    return text + '\n';
}

// Such as "variables: 1 added, 2 changed".
QStringList countsOf(const QString &noun, const std::vector<ItemChange> &changes)
{
    QStringList counts;
    for (const ChangeKind kind : countedKinds) {
        const auto count = std::count_if(changes.begin(), changes.end(),
                                         [kind](const ItemChange &change) { return change.kind == kind; });
        if (count > 0)
            counts.append(QString::number(count) + QLatin1Char(' ') + changeName(kind));
    }
    if (counts.isEmpty())
        return counts;
    return {noun + QLatin1String(": ") + counts.join(QLatin1String(", "))};
}

void writeChange(JsonWriter &json, const ItemChange &change, const std::function<void()> &writeItem)
{
    json.openObject(JsonWriter::InLine).key("change").text(changeName(change.kind));
    if (change.before >= 0)
        json.key("before").number(change.before + 1);
    if (change.after >= 0)
        json.key("after").number(change.after + 1);
    writeItem();
    json.key("values").openArray();
    for (const ValueChange &value : change.values) {
        json.openObject();
        writeText(json.key("name"), value.name);
        if (!value.before.isEmpty())
            json.key("before").raw(value.before);
        if (!value.after.isEmpty())
            json.key("after").raw(value.after);
        json.close();
    }
    json.close().close();
}
} // namespace

QByteArray differenceToText(const DifferenceReport &report, const TextLook &look)
{
    const auto nameOf = [&report](const ItemChange &change) {
        return itemOf(change, report.before.variables, report.after.variables).name;
    };
    const auto summary = [&report](const ItemChange &change) {
        return summaryOf(itemOf(change, report.before.steps, report.after.steps));
    };
    const ScriptDifference &difference = report.difference;
    const QStringList counts = countsOf(QStringLiteral("variables"), difference.variables)
        + countsOf(QStringLiteral("steps"), difference.steps);
    return sectionText({"Variables", difference.variables, true, nameOf}, look)
        + sectionText({"Steps", difference.steps, false, summary}, look)
        + (counts.isEmpty() ? QByteArray("no differences") : counts.join(QLatin1String("; ")).toUtf8())
        + '\n';
}

QByteArray differenceToJson(const DifferenceReport &report)
{
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject().key("variables").openArray();
    for (const ItemChange &change : report.difference.variables) {
        const ScriptVariable &variable = itemOf(change, report.before.variables, report.after.variables);
        writeChange(json, change, [&] { writeText(json.key("name"), variable.name); });
    }
    json.close().key("steps").openArray();
    for (const ItemChange &change : report.difference.steps) {
        const ScriptStep &step = itemOf(change, report.before.steps, report.after.steps);
        writeChange(json, change, [&] {
            writeText(json.key("type"), step.operation->typeId());
            writeText(json.key("summary"), summaryOf(step));
        });
    }
    json.close().close();
    return bytes + '\n';
}
} // namespace StepHost
