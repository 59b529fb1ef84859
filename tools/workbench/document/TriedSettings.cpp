#include "TriedSettings.h"

#include "ScriptModel.h"
#include "host/plugins/StepSettings.h"

namespace Workbench
{
namespace
{
bool hasValue(const Operation &step, const QString &property, const QVariant &value)
{
    const QVariant present = step.property(property.toUtf8().constData());
    return present == value && present.userType() == value.userType();
}

QVariantList valuesOf(const Operation &step)
{
    QVariantList values;
    const QVector<QMetaProperty> settings = StepHost::settingsOf(step);
    for (const QMetaProperty &setting : settings)
        values.append(setting.read(&step));
    return values;
}
} // namespace

TriedSettings::TriedSettings(const ScriptModel &model, StepHost::StepTrial &trial)
    : m_model(model), m_trial(trial)
{
}

void TriedSettings::change(int row, const QString &property, const QVariant &value)
{
    auto *step = const_cast<Operation *>(&m_model.step(row));
    // Of what is typed meanwhile only the last counts.
    const std::size_t tried = m_isTrying ? 1 : 0;
    if (m_changes.size() > tried && isSame(m_changes.back(), step, property))
        m_changes.back().value = value;
    else
        m_changes.push_back({step, property, value});
    tryNext();
    m_trial.waitForAnswers();
}

bool TriedSettings::isSame(const Change &change, const Operation *step, const QString &property)
{
    return change.step == step && change.property == property;
}

void TriedSettings::tryNext()
{
    if (m_isTrying || m_changes.empty())
        return;
    const Change &next = m_changes.front();
    const int row = m_model.rowOf(next.step);
    if (row < 0 || hasValue(*next.step, next.property, next.value)) {
        m_changes.pop_front();
        tryNext();
        return;
    }
    m_isTrying = true;
    m_triedWith = valuesOf(*next.step);
    m_trial.trySetting(*next.step, row + 1, next.property, next.value, this,
                       [this](const StepHost::StepTrial::Answer &answer) { take(answer); });
}

void TriedSettings::take(const StepHost::StepTrial::Answer &answer)
{
    m_isTrying = false;
    const Change change = m_changes.front();
    const int row = m_model.rowOf(change.step);
    const bool isOther = row >= 0 && valuesOf(*change.step) != m_triedWith;
    // What was undone meanwhile makes another step of it, which is another trial.
    if (!isOther)
        m_changes.pop_front();
    if (row >= 0 && !isOther)
        tell(row, change, answer);
    tryNext();
}

void TriedSettings::tell(int row, const Change &change, const StepHost::StepTrial::Answer &answer)
{
    if (!answer) {
        emit refused(row, change.property, answer.error());
        return;
    }
    for (const QString &remark : *answer)
        emit remarked(remark);
    // What the user typed since then shall not be taken away again.
    if (m_changes.empty() || !isSame(m_changes.front(), change.step, change.property))
        emit passed(row, change.property, change.value);
}
} // namespace Workbench
