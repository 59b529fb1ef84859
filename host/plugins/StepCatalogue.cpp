#include "StepCatalogue.h"

#include "StepTexts.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

namespace StepHost
{
namespace
{
QString versionOf(const Plugin &plugin)
{
    return ErrorTexts::tr("version %1").arg(quoted(plugin.manifest().version));
}
} // namespace

StepCatalogue::StepCatalogue() = default;

StepCatalogue::~StepCatalogue() = default;

Result<void, PluginError> StepCatalogue::addPlugin(const QString &fileName)
{
    Result<std::unique_ptr<Plugin>, PluginError> loaded = loadPlugin(fileName);
    if (!loaded)
        return tl::unexpected<PluginError>(loaded.error());

    std::unique_ptr<Plugin> plugin = std::move(*loaded);
    const auto refuse = [&fileName, &plugin](PluginRefusal refusal, const QString &reason) {
        return tl::unexpected<PluginError>(pluginError(refusal, fileName, reason, plugin->manifest()));
    };
    for (const std::unique_ptr<Plugin> &other : m_plugins) {
        if (other->manifest().pluginId == plugin->manifest().pluginId)
            return refuse(PluginRefusal::DuplicatePlugin,
                          ErrorTexts::tr("it is %1 of %2, and plug-in \"%3\", %4 of it, is loaded already")
                              .arg(versionOf(*plugin), quoted(plugin->manifest().pluginId), other->fileName(),
                                   versionOf(*other)));
    }
    for (const Operation *prototype : plugin->prototypes()) {
        const QString typeId = prototype->typeId();
        if (const Plugin *owner = pluginOf(typeId))
            return refuse(PluginRefusal::DuplicateTypeId,
                          ErrorTexts::tr("plug-in \"%1\" has a step of type %2 already")
                              .arg(owner->fileName(), quoted(typeId)));
    }
    for (const Operation *prototype : plugin->prototypes()) {
        const QString typeId = prototype->typeId();
        m_entries.insert(typeId, Entry{plugin.get(), prototype});
        m_typeIds.append(typeId);
    }
    m_plugins.push_back(std::move(plugin));
    return {};
}

void StepCatalogue::passOver(const PluginError &error)
{
    m_passedOver.push_back(error);
}

QString StepCatalogue::noSuchType(const QString &typeId) const
{
    QStringList files;
    for (const PluginError &error : m_passedOver) {
        if (typeId.startsWith(error.typeIdPrefix))
            files.append(quoted(error.fileName));
    }
    QString text = notAmong(ErrorTexts::tr("step type"), typeId, m_typeIds);
    if (!files.isEmpty())
        text = ErrorTexts::tr("%1; it may be of a plug-in that was passed over: %2")
                   .arg(text, files.join(QLatin1String(", ")));
    return text;
}

QStringList StepCatalogue::sharedIcons() const
{
    QStringList lines;
    if (m_plugins.size() < 2)
        return lines;
    QHash<QString, const Plugin *> owners;
    for (const std::unique_ptr<Plugin> &plugin : m_plugins) {
        for (const Operation *prototype : plugin->prototypes()) {
            const QString icon = stepText(*prototype, &Operation::icon);
            const Plugin *&owner = owners[icon];
            if (!owner)
                owner = plugin.get();
            if (icon.isEmpty() || owner == plugin.get())
                continue;
            lines.append(ErrorTexts::tr("plug-in \"%1\", %2, and plug-in \"%3\", %4, both have an icon %5; "
                                        "steps of one are shown with that of the other")
                             .arg(owner->fileName(), versionOf(*owner), plugin->fileName(),
                                  versionOf(*plugin), quoted(icon)));
            break;
        }
    }
    return lines;
}

const std::vector<std::unique_ptr<Plugin>> &StepCatalogue::plugins() const
{
    return m_plugins;
}

const QStringList &StepCatalogue::typeIds() const
{
    return m_typeIds;
}

const Operation *StepCatalogue::prototype(const QString &typeId) const
{
    return m_entries.value(typeId).prototype;
}

const Plugin *StepCatalogue::pluginOf(const QString &typeId) const
{
    return m_entries.value(typeId).plugin;
}

Operation *StepCatalogue::create(const QString &typeId, QObject *parent) const
{
    const Operation *model = prototype(typeId);
    return model ? cloneStep(*model, parent) : nullptr;
}
} // namespace StepHost
