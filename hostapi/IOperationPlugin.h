#pragma once

#include "OperationCoreExport.h"
#include "OperationCoreVersion.h"
#include "PluginManifest.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QtPlugin>

class IEditorRegistry;
class Operation;

/// What the root object of a step plug-in offers.
///
/// The root object derives from `QObject` first and from this interface second, and names it in
/// `Q_INTERFACES`, so that `qobject_cast<IOperationPlugin *>` finds it. It belongs to Qt's plug-in
/// loader.
///
/// The identity members return the same answers however often they are called. Nothing throws. The host
/// calls from one thread at a time.
///
/// The virtual members stand in the order of their slots. Plug-ins are compiled against that order:
/// nothing may be inserted, removed or moved.
class OPERATIONCORE_EXPORT IOperationPlugin
{
public:
    IOperationPlugin();
    virtual ~IOperationPlugin();

    /// One new step of each kind that the plug-in offers, without parent. Every call makes a fresh set;
    /// the caller owns it.
    virtual QList<Operation *> createPrototypes() = 0;

    /// The plug-in's persistent id, in reverse domain form. Never translated.
    virtual QString pluginId() const = 0;

    /// Its display name.
    virtual QString name() const = 0;

    /// Its own version, such as `1.0.0`.
    virtual QString version() const = 0;

    /// The version of this contract that it was built for: operationCoreApiVersion. A host refuses one that it
    /// does not know.
    virtual int apiVersion() const = 0;

    /// Everything above in one value, and the weights that order its steps in the palette.
    virtual PluginManifest manifest() const = 0;

    /// Lets the plug-in add property editors of its own to \a registry. Does nothing here.
    ///
    /// A host that has such a registry calls it once, after the plug-in was found fit and before an editor is shown.
    /// stepctl and the workbench have none and never call it.
    virtual void registerEditors(IEditorRegistry &registry);

    /// The host capabilities that the plug-in needs. A host that lacks one refuses the plug-in. There is one so
    /// far: `hasListType`, variables that hold lists.
    virtual QStringList requiredCapabilities() const = 0;

private:
    Q_DISABLE_COPY(IOperationPlugin)
};

Q_DECLARE_INTERFACE(IOperationPlugin, IOperationPlugin_iid)
