#include "Trials.h"

#include "SettingValues.h"
#include "TrialSettings.h"
#include "host/plugins/StepSettings.h"
#include "host/running/Breadcrumb.h"
#include "host/running/WarningCapture.h"
#include "hostapi/Operation.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QElapsedTimer>
#include <QSet>

#include <random>

namespace StepHost
{
namespace
{
constexpr int wantedWrites = 3; // For each branch.
constexpr int runsOfBranch = 150;
constexpr int runsAtLeast = 2000; // Before a step counts as one that does not write.
constexpr int wantedSkips = 12;
constexpr int wantedInAll = 60;

/// Makes settings for one step, ever more at random.
class TrialSource
{
public:
    TrialSource(const Operation &step, unsigned seed);

    /// One more trial. The earlier its `number`, the closer it keeps to the schema.
    Trial next(int number);

    int settingCount() const
    {
        return m_values.size();
    }
    const QVariantList &branchesOf(int setting) const
    {
        return m_values.at(setting).branches;
    }
    QVariantList valuesOf(int setting) const
    {
        return m_values.at(setting).fitting + m_values.at(setting).other;
    }

private:
    // Not std::uniform_int_distribution: its numbers differ between libraries.
    int below(int limit)
    {
        return int(m_random() % std::mt19937::result_type(limit));
    }
    QVariant anyOf(const QVariantList &values)
    {
        return values.at(below(values.size()));
    }

    QVector<TrialValues> m_values;
    int m_firstContent;
    std::mt19937 m_random;
};

TrialSource::TrialSource(const Operation &step, unsigned seed) : m_firstContent(int(seed % 4)), m_random(seed)
{
    const EditorSchema schema = readEditorSchema(*step.metaObject());
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (int i = 0; i < settings.size(); ++i)
        m_values.append(trialValues(settings.at(i), schema.settings.at(i), settings.at(i).read(&step)));
}

Trial TrialSource::next(int number)
{
    constexpr int plainTrials = 40; // Only what the schema asks for.
    Trial trial;
    for (int i = 0; i < m_values.size(); ++i) {
        const TrialValues &values = m_values.at(i);
        // The first ones take what comes first, so that several list settings name several lists.
        const bool isFitting = number < plainTrials || values.other.isEmpty() || below(4) != 0;
        if (number < values.fitting.size() && number < 4)
            trial.settings.append(values.fitting.at((number + i) % values.fitting.size()));
        else
            trial.settings.append(anyOf(isFitting ? values.fitting : values.other));
    }
    const QVector<ScopeContent> &contents = scopeContents();
    trial.content = number < plainTrials ? contents.at((number + m_firstContent) % 4)
                                         : contents.at(below(contents.size()));
    return trial;
}

/// Collects what the trials of one step come to.
class TrialSearch
{
public:
    TrialSearch(Operation &step, unsigned seed) : m_step(step), m_source(step, seed) { }

    StepTrials find();

private:
    void search(int runs, int setting, const QVariant &value);
    void varyEachSetting(const Trial &trial);
    bool tryOut(const Trial &trial);
    bool isWorthKeeping(const TrialRun &skipped);
    // A step that takes its time is looked at less closely.
    bool isOver() const
    {
        constexpr int patience = 2000;
        return m_timer.elapsed() > patience;
    }

    Operation &m_step;
    TrialSource m_source;
    StepTrials m_trials;
    QElapsedTimer m_timer;
    QSet<QString> m_warnings; ///< Of the skipped runs that were kept.
};

// Tries until the step has written often enough. With a setting, that one has the value in every trial.
void TrialSearch::search(int runs, int setting, const QVariant &value)
{
    int writes = 0;
    for (int number = 0; number < runs && writes < wantedWrites && !isOver(); ++number) {
        Trial trial = m_source.next(number);
        if (setting >= 0)
            trial.settings[setting] = value;
        if (tryOut(trial))
            ++writes;
    }
}

bool TrialSearch::tryOut(const Trial &trial)
{
    ++m_trials.runs;
    const TrialRun result = run(m_step, trial);
    if (result.hasWritten && m_trials.writing.size() < wantedInAll)
        m_trials.writing.append(trial);
    else if (!result.hasWritten && isWorthKeeping(result))
        m_trials.skipping.append(trial);
    return result.hasWritten;
}

// Runs that were skipped for the same reason tell nothing new.
bool TrialSearch::isWorthKeeping(const TrialRun &skipped)
{
    const QString warning = skipped.warnings.join(QLatin1Char('\n'));
    if (m_trials.skipping.size() >= wantedInAll
        || (m_warnings.contains(warning) && m_trials.skipping.size() >= wantedSkips))
        return false;
    m_warnings.insert(warning);
    return true;
}

// Whatever a setting may hold while all others let the step write.
void TrialSearch::varyEachSetting(const Trial &trial)
{
    for (int setting = 0; setting < m_source.settingCount(); ++setting) {
        const QVariantList values = m_source.valuesOf(setting);
        for (const QVariant &value : values) {
            if (isOver())
                return;
            Trial varied = trial;
            varied.settings[setting] = value;
            tryOut(varied);
        }
    }
}

// Lists are told by their first elements and a checksum of all.
QString wholeValue(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().left(12);
    return QStringLiteral("%1, checksum %2").arg(shownValue(value), QString::fromLatin1(digest));
}

StepTrials TrialSearch::find()
{
    m_timer.start();
    search(runsOfBranch, -1, QVariant());
    for (int setting = 0; setting < m_source.settingCount(); ++setting) {
        const QVariantList &branches = m_source.branchesOf(setting);
        for (const QVariant &value : branches)
            search(runsOfBranch, setting, value);
    }
    if (m_trials.writing.isEmpty())
        search(runsAtLeast, -1, QVariant());
    if (!m_trials.writing.isEmpty())
        varyEachSetting(Trial(m_trials.writing.constFirst()));
    constexpr int firstOdd = 100;
    for (int number = 0; number < wantedSkips && !isOver(); ++number)
        tryOut(m_source.next(firstOdd + number));
    return m_trials;
}
} // namespace

void applySettings(Operation &step, const QVariantList &values)
{
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (int i = 0; i < settings.size(); ++i)
        settings.at(i).write(&step, values.value(i));
}

VariableScope scopeFor(const Trial &trial)
{
    if (trial.variables)
        return *trial.variables;
    VariableScope scope;
    fillTrialScope(scope, trial.content);
    return scope;
}

TrialRun runOn(Operation &step, VariableScope &scope)
{
    TrialRun run;
    run.before = entriesOf(scope);
    const quint64 writes = scope.writeCount();
    noteCall("setVariableScope()", &step);
    step.setVariableScope(&scope);
    {
        WarningCapture log(WarningCapture::AllLevels);
        noteCall("doOperation()", &step);
        step.doOperation();
        run.warnings = log.takeLines();
        run.others = log.takeOthers();
    }
    step.setVariableScope(nullptr);
    run.after = entriesOf(scope);
    run.hasWritten = scope.writeCount() != writes;
    return run;
}

TrialRun run(Operation &step, const Trial &trial)
{
    applySettings(step, trial.settings);
    VariableScope scope = scopeFor(trial);
    return runOn(step, scope);
}

QString resultText(const TrialRun &run)
{
    QStringList results;
    const QStringList names = changedNames(run.before, run.after);
    for (const QString &name : names)
        results.append(name + QLatin1String(" = ") + wholeValue(run.after.value(name).value));
    return results.isEmpty() ? QStringLiteral("nothing") : results.join(QLatin1String(", "));
}

StepTrials findTrials(Operation &step, unsigned seed)
{
    return TrialSearch(step, seed).find();
}

QString trialText(const Operation &step, const Trial &trial)
{
    QStringList texts;
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (int i = 0; i < settings.size(); ++i)
        texts.append(QString::fromUtf8(settings.at(i).name()) + QLatin1String(" = ")
                     + shownValue(trial.settings.value(i)));
    return QStringLiteral("%1 and %2")
        .arg(texts.isEmpty() ? QStringLiteral("no settings") : texts.join(QLatin1String(", ")),
             trial.variables ? QStringLiteral("the variables of a script") : contentName(trial.content));
}
} // namespace StepHost
