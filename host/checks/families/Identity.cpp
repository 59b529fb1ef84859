#include "host/checks/CheckContext.h"
#include "host/plugins/PluginLoader.h"
#include "host/values/QuotedText.h"

#include <QRegularExpression>
#include <QSet>
#include <QVersionNumber>

namespace StepHost
{
namespace
{
QString listText(const QStringList &texts)
{
    QStringList quotedTexts;
    for (const QString &text : texts)
        quotedTexts.append(quoted(text));
    return QLatin1Char('[') + quotedTexts.join(QLatin1String(", ")) + QLatin1Char(']');
}

void expectText(const char *member, const QString &actual, const QString &expected, const char *source)
{
    if (actual != expected)
        fail(QStringLiteral("%1 is %2, %3 is %4")
                 .arg(QLatin1String(member), quoted(actual), QLatin1String(source), quoted(expected)));
}

void checkNonEmpty(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    if (plugin.pluginId().isEmpty())
        fail(QStringLiteral("pluginId() is empty"));
    if (plugin.name().trimmed().isEmpty())
        fail(QStringLiteral("name() is empty"));
    if (plugin.version().isEmpty())
        fail(QStringLiteral("version() is empty"));
}

void checkIdForm(CheckContext &context)
{
    static const QRegularExpression reverseDomain(QStringLiteral("\\A[A-Za-z0-9_-]+(\\.[A-Za-z0-9_-]+)+\\z"));
    const QString id = context.plugin().pluginId();
    if (!reverseDomain.match(id).hasMatch())
        fail(QStringLiteral("pluginId() is %1, which is not of the form com.example.PluginName")
                 .arg(quoted(id)));
}

void checkVersionForm(CheckContext &context)
{
    int end = 0;
    const QString version = context.plugin().version();
    if (QVersionNumber::fromString(version, &end).isNull() || end == 0)
        fail(QStringLiteral("version() is %1, which does not begin like 1.0.0").arg(quoted(version)));
}

void checkApiVersion(CheckContext &context)
{
    const int version = context.plugin().apiVersion();
    if (version != operationCoreApiVersion)
        fail(QStringLiteral("apiVersion() is %1, this host knows %2")
                 .arg(version)
                 .arg(operationCoreApiVersion));
}

struct Identity
{
    QString id;
    QString name;
    QString version;
    int apiVersion;
    QStringList capabilities;
    PluginManifest manifest;
};

Identity identityOf(const IOperationPlugin &plugin)
{
    return {plugin.pluginId(),
            plugin.name(),
            plugin.version(),
            plugin.apiVersion(),
            plugin.requiredCapabilities(),
            plugin.manifest()};
}

void checkStable(CheckContext &context)
{
    const Identity first = identityOf(context.plugin());
    context.newSteps();
    for (int call = 2; call <= 4; ++call) {
        const Identity later = identityOf(context.plugin());
        const auto expectSame = [call](bool same, const char *member) {
            if (!same)
                fail(QStringLiteral("%1 answers call %2 differently than the first one")
                         .arg(QLatin1String(member))
                         .arg(call));
        };
        expectSame(later.id == first.id, "pluginId()");
        expectSame(later.name == first.name, "name()");
        expectSame(later.version == first.version, "version()");
        expectSame(later.apiVersion == first.apiVersion, "apiVersion()");
        expectSame(later.capabilities == first.capabilities, "requiredCapabilities()");
        expectSame(later.manifest.typeIdPrefix == first.manifest.typeIdPrefix, "manifest().typeIdPrefix");
        expectSame(later.manifest.categoryOrder == first.manifest.categoryOrder, "manifest().categoryOrder");
        expectSame(later.manifest.typeOrder == first.manifest.typeOrder, "manifest().typeOrder");
    }
}

void checkManifestAgrees(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    const PluginManifest manifest = plugin.manifest();
    expectText("manifest().pluginId", manifest.pluginId, plugin.pluginId(), "pluginId()");
    expectText("manifest().name", manifest.name, plugin.name(), "name()");
    expectText("manifest().version", manifest.version, plugin.version(), "version()");
    if (manifest.apiVersion != plugin.apiVersion())
        fail(QStringLiteral("manifest().apiVersion is %1, apiVersion() is %2")
                 .arg(manifest.apiVersion)
                 .arg(plugin.apiVersion()));
    if (manifest.requiredCapabilities != plugin.requiredCapabilities())
        fail(QStringLiteral("manifest().requiredCapabilities is %1, requiredCapabilities() is %2")
                 .arg(listText(manifest.requiredCapabilities), listText(plugin.requiredCapabilities())));
}

void checkCapabilities(CheckContext &context)
{
    const QStringList capabilities = context.plugin().requiredCapabilities();
    for (const QString &capability : capabilities) {
        if (capabilities.count(capability) > 1)
            fail(QStringLiteral("requiredCapabilities() has %1 twice").arg(quoted(capability)));
        if (!knownCapabilities().contains(capability))
            fail(QStringLiteral("requiredCapabilities() has %1, this host has %2")
                     .arg(quoted(capability), listText(knownCapabilities())));
    }
}

void checkPrefix(CheckContext &context)
{
    const QString prefix = context.plugin().manifest().typeIdPrefix;
    if (prefix.isEmpty())
        fail(QStringLiteral("manifest().typeIdPrefix is empty"));
    context.forEachStep([&prefix](const Operation &step) {
        if (!step.typeId().startsWith(prefix))
            fail(QStringLiteral("the type id %1 does not begin with the manifest's prefix %2")
                     .arg(quoted(step.typeId()), quoted(prefix)));
    });
}

QSet<QString> typeIds(CheckContext &context)
{
    QSet<QString> ids;
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        ids.insert(step->typeId());
    return ids;
}

QSet<QString> categories(CheckContext &context)
{
    QSet<QString> texts;
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        texts.insert(step->root());
    return texts;
}

// Fails for the first key of `weights` that is not in `known`.
void expectKeysKnown(const char *member, const QMap<QString, int> &weights, const QSet<QString> &known,
                     const char *what)
{
    for (auto it = weights.begin(); it != weights.end(); ++it) {
        if (!known.contains(it.key()))
            fail(QStringLiteral("%1 has a weight for %2, which is no %3")
                     .arg(QLatin1String(member), quoted(it.key()), QLatin1String(what)));
    }
}

void checkTypeWeightsKnown(CheckContext &context)
{
    expectKeysKnown("manifest().typeOrder", context.plugin().manifest().typeOrder, typeIds(context),
                    "type id of a step");
}

void checkTypeWeightsComplete(CheckContext &context)
{
    const PluginManifest manifest = context.plugin().manifest();
    context.forEachStep([&manifest](const Operation &step) {
        if (!manifest.typeOrder.contains(step.typeId()))
            fail(QStringLiteral("manifest().typeOrder has no weight for %1").arg(quoted(step.typeId())));
    });
}

void checkCategoryWeightsKnown(CheckContext &context)
{
    expectKeysKnown("manifest().categoryOrder", context.plugin().manifest().categoryOrder,
                    categories(context), "root() of a step");
}

void checkCategoryWeightsComplete(CheckContext &context)
{
    const PluginManifest manifest = context.plugin().manifest();
    context.forEachStep([&manifest](const Operation &step) {
        if (!manifest.categoryOrder.contains(step.root()))
            fail(QStringLiteral("manifest().categoryOrder has no weight for root(), %1")
                     .arg(quoted(step.root())));
    });
}
} // namespace

QVector<PluginCheck> identityChecks()
{
    return {
        {"identity.non-empty", "The plug-in has an id, a name and a version.", checkNonEmpty},
        {"identity.id-form", "The plug-in's id has the reverse domain form, so that no other one has it.",
         checkIdForm},
        {"identity.version-form", "The plug-in's version can be compared with another one.",
         checkVersionForm},
        {"identity.api-version", "The plug-in is built for a version of the contract that the host knows.",
         checkApiVersion},
        {"identity.stable", "The plug-in answers every call as it answered the first one.", checkStable},
        {"identity.manifest-agrees", "The manifest tells the same as the single calls.", checkManifestAgrees},
        {"identity.capabilities", "The host has every capability that the plug-in needs.", checkCapabilities},
        {"identity.prefix", "All type ids begin with the manifest's prefix.", checkPrefix},
        {"identity.type-weights-known", "Every type weight is the weight of a real step.",
         checkTypeWeightsKnown},
        {"identity.type-weights-complete", "Every step has a weight, and so a place in the palette.",
         checkTypeWeightsComplete},
        {"identity.category-weights-known", "Every category weight is the weight of a real category.",
         checkCategoryWeightsKnown},
        {"identity.category-weights-complete", "Every category has a weight, and so a place in the palette.",
         checkCategoryWeightsComplete},
    };
}
} // namespace StepHost
