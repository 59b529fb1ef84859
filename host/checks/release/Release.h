#pragma once

#include "host/checks/trial/TrialScope.h"
#include "host/values/Result.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariantMap>
#include <QVector>

/// What one release of a plug-in gives, in a form that outlives its library and its process.
namespace StepHost
{
/// A setting of a step, as scripts and records know it.
struct ReleasedSetting
{
    QString name;
    QString type; ///< The name of its type.
    QVariant byDefault; ///< Invalid for a value that only the plug-in knows.
    QMap<int, QString> choices; ///< What a choice editor or an enumeration offers, by value.
};

/// A record of a step, and what it stands for.
struct ReleasedRecord
{
    QByteArray bytes;
    QVariantMap settings; ///< By name, without values that only the plug-in knows.
};

/// A run that wrote variables.
struct ReleasedRun
{
    QString with; ///< Settings and variables in one line, for a message.
    QVariantMap settings; ///< As in ReleasedRecord.
    ScopeContent content = ScopeContent::Mixed;
    QString result; ///< As of resultText().
};

struct ReleasedStep
{
    QString typeId;
    QVector<ReleasedSetting> settings;
    QVector<ReleasedRecord> records;
    QVector<ReleasedRun> runs;

    /// The setting \a name; null when there is none.
    const ReleasedSetting *find(const QString &name) const;
};

/// What each step of a script came to, in order.
struct ReleasedScript
{
    QString fileName;
    QStringList steps; ///< Each in one line, for a message: its number and its type.
    QStringList results; ///< As of resultText().
};

struct Release
{
    QString pluginId;
    QString version;
    QVector<ReleasedStep> steps;
    QVector<ReleasedScript> scripts;
};

/// Writes \a release to the file \a fileName, in place of what was there. Returns whether that could be done.
bool writeRelease(const QString &fileName, const Release &release);

/// Reads what writeRelease() has written. An error has no file name.
Result<Release> readRelease(const QString &fileName);
} // namespace StepHost
