#include "ScriptSearch.h"

#include "host/plugins/EditorSchema.h"
#include "host/plugins/StepTexts.h"
#include "host/values/ItemValue.h"
#include "host/values/VariableName.h"
#include "hostapi/Operation.h"

namespace StepHost
{
namespace
{
bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

bool isList(const QVariant &value)
{
    return ItemValue::kind(value) == ItemKind::List;
}

QVariant valueOf(const Operation &step, const QString &property)
{
    return step.property(property.toUtf8().constData());
}

// What the user sees of `value` as `setting`.
QString shownText(const SettingSchema &setting, const QVariant &value)
{
    if (setting.editor == EditorKind::Choice)
        return setting.choices.value(value.toInt());
    return isText(value) ? value.toString() : ItemValue::editText(value);
}

// Notes in `hit` the texts of `value` in which the pattern is.
void findInValue(const QVariant &value, const SearchPattern &pattern, SearchHit &hit)
{
    if (isList(value)) {
        const QVariantList items = value.toList();
        for (const QVariant &item : items)
            findInValue(item, pattern, hit);
        return;
    }
    const QString text = isText(value) ? value.toString() : ItemValue::editText(value);
    if (!pattern.isIn(text))
        return;
    if (hit.count == 0)
        hit.text = text;
    ++hit.count;
}

// `value` with the replacement in its texts; counts those that have changed. A list without any stays the same one.
QVariant replacedInValue(const QVariant &value, const SearchPattern &pattern, const QString &replacement,
                         int &count)
{
    if (isText(value)) {
        const QString text = value.toString();
        const QString changed = pattern.replacedIn(text, replacement);
        if (changed == text)
            return value;
        ++count;
        return changed;
    }
    if (!isList(value))
        return value;
    const QVariantList items = value.toList();
    const int before = count;
    QVariantList changed;
    changed.reserve(items.size());
    for (const QVariant &item : items)
        changed.append(replacedInValue(item, pattern, replacement, count));
    return count == before ? value : QVariant(changed);
}

void findInStep(const Operation &step, int row, const SearchPattern &pattern, QVector<SearchHit> &hits)
{
    for (const QString &text : {stepText(step, &Operation::typeName), step.typeId()}) {
        if (pattern.isIn(text)) {
            hits.append({SearchHit::Step, row, QString(), QString(), text, 1});
            break;
        }
    }
    const EditorSchema schema = readEditorSchema(*step.metaObject());
    for (const SettingSchema &setting : schema.settings) {
        const QString text = shownText(setting, valueOf(step, setting.property));
        if (isVisible(setting, step) && pattern.isIn(text))
            hits.append({SearchHit::Setting, row, setting.property, QString(), text, 1});
    }
}
} // namespace

bool SearchPattern::isIn(const QString &searched) const
{
    if (text.isEmpty())
        return false;
    return isWhole ? searched.compare(text, caseSensitivity) == 0 : searched.contains(text, caseSensitivity);
}

QString SearchPattern::replacedIn(const QString &searched, const QString &replacement) const
{
    if (!isIn(searched))
        return searched;
    return isWhole ? replacement : QString(searched).replace(text, replacement, caseSensitivity);
}

QVector<SearchHit> findInScript(const SearchedScript &script, const SearchPattern &pattern)
{
    QVector<SearchHit> hits;
    for (std::size_t row = 0; row < script.steps.size(); ++row)
        findInStep(*script.steps[row], int(row), pattern, hits);
    const QStringList names = script.variables.names();
    for (const QString &name : names) {
        if (pattern.isIn(name))
            hits.append({SearchHit::VariableName, -1, QString(), name, name, 1});
        SearchHit inValue{SearchHit::Value, -1, QString(), name, QString(), 0};
        findInValue(script.variables.get(referenceTo(name)), pattern, inValue);
        if (inValue.count > 0)
            hits.append(inValue);
    }
    return hits;
}

Replacement replaceInScript(const SearchedScript &script, const SearchPattern &pattern,
                            const QString &replacement)
{
    Replacement replaced;
    replaced.variables = script.variables;
    const QVector<SearchHit> hits = findInScript(script, pattern);
    for (const SearchHit &hit : hits) {
        if (hit.place == SearchHit::Setting) {
            const QVariant before = valueOf(*script.steps[std::size_t(hit.row)], hit.property);
            const QVariant after =
                isText(before) ? pattern.replacedIn(before.toString(), replacement) : before;
            if (after == before)
                continue;
            replaced.settings.append({hit.row, hit.property, after});
            ++replaced.count;
        } else if (hit.place == SearchHit::Value) {
            const QString reference = referenceTo(hit.variable);
            const int before = replaced.count;
            const QVariant value =
                replacedInValue(script.variables.get(reference), pattern, replacement, replaced.count);
            if (replaced.count != before)
                replaced.variables.set(reference, value);
        }
    }
    return replaced;
}
} // namespace StepHost
