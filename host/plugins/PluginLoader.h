#pragma once

#include "host/values/Result.h"
#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"

#include <QList>
#include <QPluginLoader>
#include <QString>
#include <QStringList>

#include <memory>

namespace StepHost
{
/// The capabilities that this host offers to plug-ins.
QStringList knownCapabilities();

/// Why a plug-in was refused.
enum class PluginRefusal {
    NotFound, ///< There is no file of that name, or it is no file.
    NotAPlugin, ///< The file is no library, or a library without Qt plug-in metadata.
    WrongInterface, ///< The metadata names another interface, or the root object does not implement it.
    LoadFailed, ///< The system or Qt refused to load the library.
    WrongApiVersion, ///< Built for a version of the contract that this host does not know.
    UnknownCapability, ///< It needs a capability that this host does not have.
    BadPrototype, ///< A prototype is null, listed twice, owned by another object, or without a type id.
    ForeignTypeId, ///< A type id does not begin with the manifest's prefix.
    DuplicatePlugin, ///< A plug-in of the same id is loaded, of the same version or another one.
    DuplicateTypeId, ///< Two prototypes, of this plug-in or of two loaded ones, have the same type id.
    Threw, ///< A member of the plug-in threw an exception.
};

/// Why a plug-in was refused, and a text for the user that names the file, what was found and what would be
/// right.
struct PluginError
{
    PluginRefusal refusal;
    QString reason;
    QString fileName = QString(); ///< As it was named.
    QString typeIdPrefix = QString(); ///< Of its steps; empty when one did not come to know it.
};

/// The error of the plug-in \a fileName, which told \a manifest or, before it could, an empty one. Its texts are not
/// those of the library, which may be unloaded.
PluginError pluginError(PluginRefusal refusal, const QString &fileName, const QString &reason,
                        const PluginManifest &manifest);

/// A loaded and vetted plug-in: its library, its root object and one prototype of each of its steps.
///
/// The destructor deletes the prototypes and unloads the library. By then everything that came from the
/// plug-in has to be gone: clones of its prototypes, and also texts and values, which may lie in the
/// library's own memory.
class Plugin
{
public:
    ~Plugin();

    /// The absolute path of the library.
    QString fileName() const;

    /// What the plug-in tells about itself, as read when it was loaded.
    const PluginManifest &manifest() const;

    /// The root object. It belongs to the plug-in.
    IOperationPlugin *instance() const;

    /// The prototypes in the plug-in's order, none null, each with a type id of its own. They belong to
    /// this object.
    const QList<Operation *> &prototypes() const;

private:
    friend Result<std::unique_ptr<Plugin>, PluginError> loadPlugin(const QString &fileName);

    explicit Plugin(const QString &fileName);
    Q_DISABLE_COPY(Plugin)

    QPluginLoader m_loader;
    IOperationPlugin *m_instance = nullptr;
    PluginManifest m_manifest;
    QList<Operation *> m_prototypes;
};

/// Loads the plug-in \a fileName and vets it.
///
/// The interface id in the library's metadata is checked before any of its code runs. A refused library
/// is unloaded again. Never throws.
Result<std::unique_ptr<Plugin>, PluginError> loadPlugin(const QString &fileName);
} // namespace StepHost
