#include "ScriptFile.h"

#include "BinaryScript.h"
#include "host/files/FileErrors.h"
#include "host/files/InputFile.h"
#include "host/plugins/StepRecord.h"
#include "host/plugins/StepSettings.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace StepHost
{
namespace
{
// Whether a step that gets its properties alone has its record too.
bool isAllInProperties(const Operation &step, const StepCatalogue &catalogue)
{
    const std::unique_ptr<Operation> twin(catalogue.create(step.typeId(), nullptr));
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings)
        setting.write(twin.get(), setting.read(&step));
    return twin && recordOf(*twin) == recordOf(step);
}

// Whether a step that gets its record alone has its properties too.
bool isAllInRecord(const Operation &step, const StepCatalogue &catalogue)
{
    const std::unique_ptr<Operation> twin(catalogue.create(step.typeId(), nullptr));
    if (!twin || !loadWholeRecord(*twin, recordOf(step)))
        return false;
    const QVector<QMetaProperty> settings = settingsOf(step);
    return std::all_of(settings.begin(), settings.end(), [&](const QMetaProperty &setting) {
        return setting.read(twin.get()) == setting.read(&step);
    });
}
} // namespace

std::optional<ScriptForm> scriptFormOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("json"))
        return ScriptForm::Json;
    if (suffix == QLatin1String("qms"))
        return ScriptForm::Binary;
    return std::nullopt;
}

QStringList scriptsBeside(const QString &pluginFile)
{
    const QFileInfo library(pluginFile);
    const QDir folder(library.absolutePath() + QLatin1Char('/') + library.completeBaseName()
                      + QLatin1String(".scripts"));
    QStringList scripts;
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (scriptFormOf(name))
            scripts.append(folder.filePath(name));
    }
    return scripts;
}

Result<Script> readAnyScript(const QByteArray &bytes, const StepCatalogue &catalogue,
                             const StepReading &reading)
{
    return isBinaryScript(bytes) ? readBinaryScript(bytes, catalogue, reading)
                                 : readScript(bytes, catalogue, reading);
}

Result<Script> readScriptFile(const QString &fileName, const StepCatalogue &catalogue)
{
    const Result<QByteArray> bytes = readInputFile(fileName);
    if (!bytes)
        return failure(bytes.error());
    return readAnyScript(*bytes, catalogue).map_error([&fileName](const QString &error) {
        return fileName + QLatin1String(": ") + error;
    });
}

Result<QByteArray> writeScript(const Script &script, ScriptForm form, const StepCatalogue &catalogue)
{
    const bool isBinary = form == ScriptForm::Binary;
    for (std::size_t i = 0; i < script.steps.size(); ++i) {
        const Operation &step = *script.steps[i].operation;
        if (!(isBinary ? isAllInRecord(step, catalogue) : isAllInProperties(step, catalogue))) {
            const QString loss = isBinary
                ? FileErrors::tr(
                    "its record does not hold all its properties, so the binary form would lose some")
                : FileErrors::tr("it has state beside its properties, which JSON would lose");
            return failure(FileErrors::tr("step %1 (%2): %3").arg(i + 1).arg(step.typeId(), loss));
        }
    }
    return isBinary ? writeBinaryScript(script) : writeScript(script);
}
} // namespace StepHost
