// Checks of what an older release of the plug-in gave: scripts and records that its users have.

#include "ReleaseNotes.h"
#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/trial/SettingValues.h"
#include "host/checks/trial/Trials.h"
#include "host/running/Breadcrumb.h"
#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QVersionNumber>

#include <algorithm>

namespace StepHost
{
namespace
{
// Done on the older release, in a process of its own; all others are done on the newer one.
void checkLoads(CheckContext &context)
{
    if (!QFileInfo(context.fileName()).isFile())
        fail(QStringLiteral("there is no file %1").arg(inOneLine(context.fileName())));
    writeReleaseNotes(context, context.setup().releaseFile);
}

Release olderRelease(const CheckContext &context)
{
    if (context.setup().releaseFile.isEmpty())
        skip(QStringLiteral("no older release is named; --baseline FILE names one"));
    const Result<Release> release = readRelease(context.setup().releaseFile);
    if (!release)
        skip(QStringLiteral("the older release cannot be compared: %1").arg(release.error()));
    return *release;
}

/// Calls `check` with each step that both releases have, and what the older one tells of it.
void forEachCommonStep(CheckContext &context,
                       const std::function<void(Operation &, const ReleasedStep &)> &check)
{
    const Release older = olderRelease(context);
    context.forEachStep([&](Operation &step) {
        const QString typeId = step.typeId();
        for (const ReleasedStep &before : older.steps) {
            if (before.typeId == typeId)
                check(step, before);
        }
    });
}

// Settings are told apart by `baseline.settings` where they are not the same.
void forEachCommonSetting(
    CheckContext &context,
    const std::function<void(const ReleasedSetting &before, const ReleasedSetting &now)> &check)
{
    forEachCommonStep(context, [&check](const Operation &step, const ReleasedStep &before) {
        const ReleasedStep now = describedStep(step);
        for (const ReleasedSetting &setting : before.settings) {
            const ReleasedSetting *same = now.find(setting.name);
            if (same && same->type == setting.type)
                check(setting, *same);
        }
    });
}

void checkPlugin(CheckContext &context)
{
    const Release older = olderRelease(context);
    const QString id = context.plugin().pluginId();
    if (id != older.pluginId)
        fail(QStringLiteral("pluginId() is %1, and was %2; to a host that is another plug-in")
                 .arg(quoted(id), quoted(older.pluginId)));
    const QString version = context.plugin().version();
    if (QVersionNumber::fromString(version) < QVersionNumber::fromString(older.version))
        fail(QStringLiteral("version() is %1, less than that of the older release, %2")
                 .arg(quoted(version), quoted(older.version)));
}

void checkTypes(CheckContext &context)
{
    const Release older = olderRelease(context);
    QStringList gone;
    for (const ReleasedStep &step : older.steps)
        gone.append(step.typeId);
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        gone.removeAll(step->typeId());
    for (QString &typeId : gone)
        typeId = quoted(typeId);
    if (!gone.isEmpty())
        fail(QStringLiteral("the type id %1 is gone, and scripts with it are refused")
                 .arg(gone.join(QLatin1String(", "))));
}

void checkSettings(CheckContext &context)
{
    forEachCommonStep(context, [](const Operation &step, const ReleasedStep &before) {
        const ReleasedStep now = describedStep(step);
        for (const ReleasedSetting &setting : before.settings) {
            const ReleasedSetting *same = now.find(setting.name);
            if (!same)
                fail(QStringLiteral("the setting %1 is gone, and scripts that give it are refused")
                         .arg(quoted(setting.name)));
            if (same->type != setting.type)
                fail(QStringLiteral("the setting %1 is of the type %2, and was of the type %3")
                         .arg(quoted(setting.name), quoted(same->type), quoted(setting.type)));
        }
    });
}

void checkDefaults(CheckContext &context)
{
    forEachCommonSetting(context, [](const ReleasedSetting &before, const ReleasedSetting &now) {
        if (before.byDefault.isValid() && !isSameValue(before.byDefault, now.byDefault))
            fail(QStringLiteral("the setting %1 of a new step is %2, and was %3: scripts that leave it out "
                                "mean something else now")
                     .arg(quoted(before.name), shownValue(now.byDefault), shownValue(before.byDefault)));
    });
}

// The first choice that was not there or is another one now.
void expectChoices(const ReleasedSetting &before, const ReleasedSetting &now)
{
    QString renamed;
    for (auto it = before.choices.begin(); it != before.choices.end(); ++it) {
        if (now.choices.value(it.key()) == *it)
            continue;
        const QString was =
            QStringLiteral("%1 of the setting %2, %3,").arg(it.key()).arg(quoted(before.name), quoted(*it));
        const int place = now.choices.key(*it, it.key());
        if (place != it.key())
            fail(QStringLiteral("the choice %1 is %2 now; records hold the number")
                     .arg(was, QString::number(place)));
        if (!now.choices.contains(it.key()))
            fail(QStringLiteral("the choice %1 is gone").arg(was));
        if (renamed.isEmpty())
            renamed = QStringLiteral("the choice %1 is called %2 now; it has to mean the same")
                          .arg(was, quoted(now.choices.value(it.key())));
    }
    if (!renamed.isEmpty())
        warn(renamed);
}

void checkChoices(CheckContext &context)
{
    forEachCommonSetting(context, expectChoices);
}

void expectReleasedSettings(const Operation &step, const ReleasedStep &before, const ReleasedRecord &record)
{
    const QVariantMap settings = plainSettings(step);
    const ReleasedStep now = describedStep(step);
    for (auto it = record.settings.begin(); it != record.settings.end(); ++it) {
        const ReleasedSetting *was = before.find(it.key());
        const ReleasedSetting *same = now.find(it.key());
        if (!was || !same || same->type != was->type)
            continue;
        const QVariant value = settings.value(it.key());
        if (!isSameValue(value, *it))
            fail(QStringLiteral("of a record of the older release the setting %1 is loaded as %2; it was "
                                "saved as %3")
                     .arg(quoted(it.key()), shownValue(value), shownValue(*it)));
    }
}

void checkRecords(CheckContext &context)
{
    forEachCommonStep(context, [](Operation &step, const ReleasedStep &before) {
        for (const ReleasedRecord &record : before.records) {
            noteCall("loadOperation() for a record of the older release", &step);
            const Result<void> loaded = loadWholeRecord(step, record.bytes);
            if (!loaded)
                fail(QStringLiteral("a record of the older release, of %1 bytes, is refused: %2")
                         .arg(QString::number(record.bytes.size()), loaded.error()));
            expectReleasedSettings(step, before, record);
        }
    });
}

// Whether whatever the step could be set to it can be set to still.
bool keepsSettings(const Operation &step, const ReleasedStep &before)
{
    const ReleasedStep now = describedStep(step);
    return std::all_of(before.settings.begin(), before.settings.end(),
                       [&now](const ReleasedSetting &setting) {
                           const ReleasedSetting *same = now.find(setting.name);
                           return same && same->type == setting.type;
                       });
}

void checkRuns(CheckContext &context)
{
    forEachCommonStep(context, [](Operation &step, const ReleasedStep &before) {
        if (!keepsSettings(step, before))
            return;
        for (const ReleasedRun &released : before.runs) {
            applyPlainSettings(step, released.settings);
            VariableScope scope;
            fillTrialScope(scope, released.content);
            const TrialRun now = runOn(step, scope);
            const QString result = resultText(now);
            if (result != released.result)
                fail(QStringLiteral("with %1 it writes %2, and wrote %3")
                         .arg(released.with, result, released.result));
        }
    });
}

void expectSameResults(const ReleasedScript &before, const ReleasedScript &now)
{
    for (int i = 0; i < qMin(before.results.size(), now.results.size()); ++i) {
        if (now.results.at(i) != before.results.at(i))
            fail(QStringLiteral("%1 of %2 writes %3, and wrote %4")
                     .arg(before.steps.at(i), quoted(QFileInfo(before.fileName).fileName()),
                          now.results.at(i), before.results.at(i)));
    }
}

void checkScripts(CheckContext &context)
{
    const Release older = olderRelease(context);
    for (const ReleasedScript &script : older.scripts) {
        const Result<ReleasedScript> now = scriptRun(context, script.fileName);
        if (!now)
            fail(QStringLiteral("a script that the older release runs is refused: %1").arg(now.error()));
        expectSameResults(script, *now);
    }
}
} // namespace

QVector<PluginCheck> baselineChecks()
{
    return {
        {baselineLoadsId, "The older release loads, and tells what it gives.", checkLoads},
        {"baseline.plugin", "It is the same plug-in, and no older one.", checkPlugin},
        {"baseline.types", "Every type id of the older release is still there.", checkTypes},
        {"baseline.settings", "Every setting is still there, and of the same type.", checkSettings},
        {"baseline.defaults", "A setting that a script leaves out is what it was.", checkDefaults},
        {"baseline.choices", "Every choice is still there, under its number.", checkChoices},
        {"baseline.records", "Records of the older release are loaded with the settings that were saved.",
         checkRecords},
        {"baseline.runs", "Settings that made a step write make it write the same.", checkRuns},
        {"baseline.scripts", "Scripts run as they did.", checkScripts},
    };
}
} // namespace StepHost
