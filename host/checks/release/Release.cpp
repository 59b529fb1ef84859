#include "Release.h"

#include <QDataStream>
#include <QFile>
#include <QSaveFile>

#include <algorithm>

namespace StepHost
{
constexpr static auto streamVersion = QDataStream::Qt_5_15;

// Not in a namespace without a name: Qt's operators for lists would not find them there.
static QDataStream &operator<<(QDataStream &stream, const ReleasedSetting &setting)
{
    return stream << setting.name << setting.type << setting.byDefault << setting.choices;
}

static QDataStream &operator>>(QDataStream &stream, ReleasedSetting &setting)
{
    return stream >> setting.name >> setting.type >> setting.byDefault >> setting.choices;
}

static QDataStream &operator<<(QDataStream &stream, const ReleasedRecord &record)
{
    return stream << record.bytes << record.settings;
}

static QDataStream &operator>>(QDataStream &stream, ReleasedRecord &record)
{
    return stream >> record.bytes >> record.settings;
}

static QDataStream &operator<<(QDataStream &stream, const ReleasedRun &run)
{
    return stream << run.with << run.settings << qint32(run.content) << run.result;
}

static QDataStream &operator>>(QDataStream &stream, ReleasedRun &run)
{
    qint32 content = 0;
    stream >> run.with >> run.settings >> content >> run.result;
    run.content = scopeContents().contains(ScopeContent(content)) ? ScopeContent(content) : run.content;
    return stream;
}

static QDataStream &operator<<(QDataStream &stream, const ReleasedStep &step)
{
    return stream << step.typeId << step.settings << step.records << step.runs;
}

static QDataStream &operator>>(QDataStream &stream, ReleasedStep &step)
{
    return stream >> step.typeId >> step.settings >> step.records >> step.runs;
}

static QDataStream &operator<<(QDataStream &stream, const ReleasedScript &script)
{
    return stream << script.fileName << script.steps << script.results;
}

static QDataStream &operator>>(QDataStream &stream, ReleasedScript &script)
{
    return stream >> script.fileName >> script.steps >> script.results;
}

const ReleasedSetting *ReleasedStep::find(const QString &name) const
{
    const auto *const it =
        std::find_if(settings.begin(), settings.end(),
                     [&name](const ReleasedSetting &setting) { return setting.name == name; });
    return it == settings.end() ? nullptr : it;
}

bool writeRelease(const QString &fileName, const Release &release)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setVersion(streamVersion);
    stream << release.pluginId << release.version << release.steps << release.scripts;
    return stream.status() == QDataStream::Ok && file.commit();
}

Result<Release> readRelease(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return failure(QStringLiteral("it tells nothing"));
    QDataStream stream(&file);
    stream.setVersion(streamVersion);
    Release release;
    stream >> release.pluginId >> release.version >> release.steps >> release.scripts;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return failure(QStringLiteral("what it tells cannot be read"));
    return release;
}
} // namespace StepHost
