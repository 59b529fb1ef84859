#include "StepCatalogue.h"

#include "StepTexts.h"
#include "host/values/QuotedText.h"

namespace StepHost
{
StepCatalogue::StepCatalogue() = default;

StepCatalogue::~StepCatalogue() = default;

Result<void, PluginError> StepCatalogue::addPlugin(const QString &fileName)
{
    Result<std::unique_ptr<Plugin>, PluginError> loaded = loadPlugin(fileName);
    if (!loaded)
        return tl::unexpected<PluginError>(loaded.error());

    std::unique_ptr<Plugin> plugin = std::move(*loaded);
    for (const Operation *prototype : plugin->prototypes()) {
        const QString typeId = prototype->typeId();
        if (const Plugin *owner = pluginOf(typeId)) {
            return tl::unexpected<PluginError>(
                {PluginRefusal::DuplicateTypeId,
                 QStringLiteral("plug-in \"%1\" is refused: plug-in \"%2\" has a step of type %3 already")
                     .arg(fileName, owner->fileName(), quoted(typeId))});
        }
    }
    for (const Operation *prototype : plugin->prototypes()) {
        const QString typeId = prototype->typeId();
        m_entries.insert(typeId, Entry{plugin.get(), prototype});
        m_typeIds.append(typeId);
    }
    m_plugins.push_back(std::move(plugin));
    return {};
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
