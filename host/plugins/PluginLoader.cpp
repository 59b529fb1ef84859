#include "PluginLoader.h"

#include "StepTexts.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QJsonObject>
#include <QSet>

#include <exception>

namespace StepHost
{
namespace
{
using Verdict = Result<void, PluginError>;

tl::unexpected<PluginError> refuse(PluginRefusal refusal, const QString &reason)
{
    return tl::unexpected<PluginError>({refusal, reason});
}

// Looks at the file only; none of the library's code runs.
Verdict vetFile(const QPluginLoader &loader, const QString &fileName)
{
    const QFileInfo file(fileName);
    if (!file.exists())
        return refuse(PluginRefusal::NotFound, ErrorTexts::tr("there is no such file"));
    if (!file.isFile())
        return refuse(PluginRefusal::NotFound, ErrorTexts::tr("this is not a file"));
    const QJsonObject metaData = loader.metaData();
    if (metaData.isEmpty())
        return refuse(PluginRefusal::NotAPlugin, loader.errorString());
    const QString interfaceId = metaData.value(QLatin1String("IID")).toString();
    if (interfaceId != QLatin1String(IOperationPlugin_iid)) {
        return refuse(PluginRefusal::WrongInterface,
                      ErrorTexts::tr("its interface id is %1, a step plug-in has \"%2\"")
                          .arg(quoted(interfaceId), QLatin1String(IOperationPlugin_iid)));
    }
    return {};
}

Verdict vetContract(const IOperationPlugin &plugin, const PluginManifest &manifest)
{
    for (const int version : {plugin.apiVersion(), manifest.apiVersion}) {
        if (version != operationCoreApiVersion) {
            return refuse(PluginRefusal::WrongApiVersion,
                          ErrorTexts::tr("it is built for version %1 of the step contract, this host knows "
                                         "version %2")
                              .arg(version)
                              .arg(operationCoreApiVersion));
        }
    }
    const QStringList needed = plugin.requiredCapabilities() + manifest.requiredCapabilities;
    for (const QString &capability : needed) {
        if (!knownCapabilities().contains(capability)) {
            return refuse(PluginRefusal::UnknownCapability,
                          ErrorTexts::tr("it needs the host capability %1, this host has \"%2\"")
                              .arg(quoted(capability), knownCapabilities().join(QLatin1String("\", \""))));
        }
    }
    return {};
}

// Takes the sound prototypes of `offered` into `owned`, so that they are deleted whatever the verdict.
Verdict takePrototypes(const QList<Operation *> &offered, QList<Operation *> &owned)
{
    Verdict verdict;
    for (int position = 0; position < offered.size(); ++position) {
        Operation *prototype = offered.at(position);
        const auto bad = [position](const QString &text) {
            return refuse(PluginRefusal::BadPrototype, text.arg(position + 1));
        };
        if (!prototype)
            verdict = bad(ErrorTexts::tr("prototype %1 is null"));
        else if (owned.contains(prototype))
            verdict = bad(ErrorTexts::tr("prototype %1 is listed twice"));
        else if (prototype->parent())
            verdict = bad(ErrorTexts::tr("prototype %1 has a parent, so that the host cannot own it"));
        else
            owned.append(prototype);
    }
    return verdict;
}

PluginManifest takenManifest(PluginManifest manifest)
{
    for (QString *text : {&manifest.pluginId, &manifest.name, &manifest.version, &manifest.typeIdPrefix})
        *text = takenText(*text);
    return manifest;
}

Verdict vetTypeIds(const QList<Operation *> &prototypes, const QString &prefix)
{
    constexpr int longestTypeId = 1000;
    QSet<QString> known;
    for (const Operation *prototype : prototypes) {
        const QString typeId = prototype->typeId();
        if (typeId.isEmpty()) {
            return refuse(PluginRefusal::BadPrototype,
                          ErrorTexts::tr("a prototype of class %1 has no type id")
                              .arg(QLatin1String(prototype->metaObject()->className())));
        }
        if (!typeId.startsWith(prefix)) {
            return refuse(PluginRefusal::ForeignTypeId,
                          ErrorTexts::tr("its step %1 is outside its own prefix %2")
                              .arg(quoted(typeId), quoted(prefix)));
        }
        if (typeId.size() > longestTypeId) {
            return refuse(PluginRefusal::BadPrototype,
                          ErrorTexts::tr("the type id of a step, %1, is longer than %2 characters")
                              .arg(quoted(typeId), QString::number(longestTypeId)));
        }
        if (known.contains(typeId)) {
            return refuse(PluginRefusal::DuplicateTypeId,
                          ErrorTexts::tr("it has two steps of type %1").arg(quoted(typeId)));
        }
        known.insert(typeId);
    }
    return {};
}
} // namespace

QStringList knownCapabilities()
{
    return {QStringLiteral("hasListType")};
}

PluginError pluginError(PluginRefusal refusal, const QString &fileName, const QString &reason,
                        const PluginManifest &manifest)
{
    const QString &prefix = manifest.typeIdPrefix;
    return {refusal, ErrorTexts::tr("plug-in \"%1\" is refused: %2").arg(fileName, reason), fileName,
            QString(prefix.constData(), prefix.size())};
}

Plugin::Plugin(const QString &fileName) : m_loader(fileName)
{
    // By default Qt keeps a library loaded for good.
    m_loader.setLoadHints({});
}

Plugin::~Plugin()
{
    qDeleteAll(m_prototypes);
    // A text of the manifest may lie in the library.
    m_manifest = PluginManifest();
    m_loader.unload();
}

QString Plugin::fileName() const
{
    return m_loader.fileName();
}

const PluginManifest &Plugin::manifest() const
{
    return m_manifest;
}

IOperationPlugin *Plugin::instance() const
{
    return m_instance;
}

const QList<Operation *> &Plugin::prototypes() const
{
    return m_prototypes;
}

Result<std::unique_ptr<Plugin>, PluginError> loadPlugin(const QString &fileName)
{
    std::unique_ptr<Plugin> plugin(new Plugin(QFileInfo(fileName).absoluteFilePath()));

    const auto vet = [&plugin, &fileName]() -> Verdict {
        Verdict verdict = vetFile(plugin->m_loader, fileName);
        if (!verdict)
            return verdict;
        QObject *root = plugin->m_loader.instance();
        if (!root)
            return refuse(PluginRefusal::LoadFailed, plugin->m_loader.errorString());
        plugin->m_instance = qobject_cast<IOperationPlugin *>(root);
        if (!plugin->m_instance) {
            return refuse(PluginRefusal::WrongInterface,
                          ErrorTexts::tr("its root object, of class %1, does not implement \"%2\"")
                              .arg(QLatin1String(root->metaObject()->className()),
                                   QLatin1String(IOperationPlugin_iid)));
        }
        plugin->m_manifest = takenManifest(plugin->m_instance->manifest());
        verdict = vetContract(*plugin->m_instance, plugin->m_manifest);
        if (verdict)
            verdict = takePrototypes(plugin->m_instance->createPrototypes(), plugin->m_prototypes);
        if (verdict)
            verdict = vetTypeIds(plugin->m_prototypes, plugin->m_manifest.typeIdPrefix);
        return verdict;
    };

    Verdict verdict;
    try {
        verdict = vet();
    } catch (const std::exception &exception) {
        verdict = refuse(PluginRefusal::Threw,
                         ErrorTexts::tr("it threw an exception: %1")
                             .arg(messageLine(QString::fromUtf8(exception.what()))));
    } catch (...) {
        verdict = refuse(PluginRefusal::Threw, ErrorTexts::tr("it threw an exception"));
    }

    if (!verdict) {
        return tl::unexpected<PluginError>(
            pluginError(verdict.error().refusal, fileName, verdict.error().reason, plugin->m_manifest));
    }
    return plugin;
}
} // namespace StepHost
