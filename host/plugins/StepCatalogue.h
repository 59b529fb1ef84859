#pragma once

#include "PluginLoader.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace StepHost
{
/// The steps that are on offer: the plug-ins that are loaded, and their prototypes by type id.
///
/// Owns the plug-ins and unloads them when it is destroyed. Steps created from it, and values that they
/// left in a scope, have to be gone by then.
class StepCatalogue
{
public:
    StepCatalogue();
    ~StepCatalogue();

    /// Loads the plug-in \a fileName and adds its steps. A plug-in that is refused, also because one loaded
    /// before has the same plug-in id or a step of the same type id, adds nothing and is unloaded again.
    Result<void, PluginError> addPlugin(const QString &fileName);

    /// Notes that a plug-in is not there because of \a error, so that noSuchType() can tell.
    void passOver(const PluginError &error);

    /// Says that there is no step of type \a typeId, which there are, and which plug-ins that were passed over may
    /// have it.
    QString noSuchType(const QString &typeId) const;

    /// A line for each two plug-ins that have an icon at the same path, with the versions of both: of icons at one
    /// path only one is ever shown.
    QStringList sharedIcons() const;

    /// The loaded plug-ins in the order in which they were added.
    const std::vector<std::unique_ptr<Plugin>> &plugins() const;

    /// The type ids of all steps: plug-in by plug-in, each in its own order of prototypes.
    const QStringList &typeIds() const;

    /// The prototype of type \a typeId; null when there is none.
    const Operation *prototype(const QString &typeId) const;

    /// The plug-in that brought the step of type \a typeId; null when there is none.
    const Plugin *pluginOf(const QString &typeId) const;

    /// A new step of type \a typeId, which belongs to \a parent or, without one, to the caller. Null when
    /// there is no such type, and when its prototype does not give a clone.
    Operation *create(const QString &typeId, QObject *parent) const;

private:
    Q_DISABLE_COPY(StepCatalogue)

    struct Entry
    {
        const Plugin *plugin = nullptr;
        const Operation *prototype = nullptr;
    };

    // Declared first, so that the plug-ins go last: a type id may lie in a library's memory.
    std::vector<std::unique_ptr<Plugin>> m_plugins;
    QHash<QString, Entry> m_entries;
    QStringList m_typeIds;
    std::vector<PluginError> m_passedOver;
};
} // namespace StepHost
