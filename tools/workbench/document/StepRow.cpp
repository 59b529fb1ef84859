#include "StepRow.h"

#include "host/plugins/StepSettings.h"
#include "host/plugins/StepTexts.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ToolTipText.h"

namespace Workbench
{
namespace
{
QStringList linesOf(const StepHost::StepResult &result)
{
    QStringList lines;
    for (const QString &warning : result.warnings)
        lines += StepHost::inLines(warning).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines += StepHost::inLines(result.failure).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines;
}
} // namespace

StepRow::StepRow(StepHost::ScriptStep step) : m_step(std::move(step)) { }

const Operation &StepRow::operation() const
{
    return *m_step.operation;
}

bool StepRow::isEnabled() const
{
    return m_step.enabled;
}

StepHost::ScriptStep StepRow::take()
{
    return std::move(m_step);
}

void StepRow::setEnabled(bool enabled)
{
    m_step.enabled = enabled;
    kept.reset();
    compareSettings();
}

void StepRow::setSetting(const QString &property, const QVariant &value)
{
    m_step.operation->setProperty(property.toUtf8().constData(), value);
    kept.reset();
    compareSettings();
}

StepRow::Settings StepRow::settingsOf(const StepHost::ScriptStep &step)
{
    Settings settings;
    settings.enabled = step.enabled;
    const QVector<QMetaProperty> properties = StepHost::settingsOf(*step.operation);
    for (const QMetaProperty &property : properties)
        settings.values.append(property.read(step.operation.get()));
    return settings;
}

void StepRow::compareSettings()
{
    // What the step did with other settings says nothing about it as it is now.
    if (m_result.outcome == StepHost::StepOutcome::NotRun)
        return;
    const Settings settings = settingsOf(m_step);
    m_isOutdated = settings.values != m_ranWith.values || settings.enabled != m_ranWith.enabled;
}

void StepRow::setResult(const StepHost::StepResult &result, const StepHost::ScriptStep &step)
{
    m_result = result;
    m_messages = linesOf(result);
    m_ranWith = settingsOf(step);
    m_isOutdated = false;
    compareSettings();
}

void StepRow::clearResult()
{
    m_result = StepHost::StepResult();
    m_messages.clear();
    m_isOutdated = false;
}

StepHost::StepOutcome StepRow::outcome() const
{
    return m_result.outcome;
}

QString StepRow::outcomeText() const
{
    switch (m_result.outcome) {
    case StepHost::StepOutcome::Wrote:
        return tr("wrote");
    case StepHost::StepOutcome::Skipped:
        return tr("skipped");
    case StepHost::StepOutcome::Failed:
        return tr("failed");
    case StepHost::StepOutcome::Disabled:
        return tr("disabled");
    case StepHost::StepOutcome::NotRun:
        break;
    }
    return QString();
}

bool StepRow::isOutdated() const
{
    return m_isOutdated;
}

const QStringList &StepRow::messages() const
{
    return m_messages;
}

bool StepRow::check(const StepHost::EditorSchema &schema, const VariableScope &variables)
{
    const QVector<StepHost::StepProblem> before = m_problems;
    m_problems = StepHost::StepProblems::ofStep(operation(), schema, variables);
    return m_problems != before;
}

QVector<StepHost::StepProblem> StepRow::problems() const
{
    return m_step.enabled ? m_problems : QVector<StepHost::StepProblem>();
}

QStringList StepRow::problemLines() const
{
    QStringList lines;
    const bool hasRun = m_result.outcome != StepHost::StepOutcome::NotRun && !m_isOutdated;
    if (hasRun || !m_step.enabled)
        return lines;
    for (const StepHost::StepProblem &problem : m_problems)
        lines.append(problem.text);
    return lines;
}

QString StepRow::spokenText(int number, bool isRunning) const
{
    QStringList parts{
        tr("Step %1: %2").arg(number).arg(StepHost::shownStepText(operation(), &Operation::toString))};
    if (!m_step.enabled)
        parts.append(tr("not enabled"));
    if (isRunning)
        parts.append(tr("running…"));
    const QString outcome = outcomeText();
    if (!outcome.isEmpty())
        parts.append(m_isOutdated ? tr("%1, before its settings were changed").arg(outcome) : outcome);
    return shortened((parts + m_messages + problemLines()).join(QLatin1String("; ")));
}

QString StepRow::toolTip() const
{
    QStringList lines{StepHost::shownStepText(operation(), &Operation::description)};
    if (m_isOutdated)
        lines.append(tr("The outcome is from before the settings were changed."));
    return toolTipText((lines + m_messages + problemLines()).join(QLatin1Char('\n')));
}
} // namespace Workbench
