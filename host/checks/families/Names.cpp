// Checks of what a plug-in and its steps are called by, elsewhere than in one process and one language.

#include "host/checks/CheckContext.h"
#include "host/checks/TextFlaws.h"
#include "host/values/QuotedText.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QTranslator>

namespace StepHost
{
namespace
{
// What the plug-in and its steps are called by.
QVector<CheckFact> namesOf(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    const PluginManifest manifest = plugin.manifest();
    QVector<CheckFact> names{
        {QStringLiteral("pluginId()"), plugin.pluginId()},
        {QStringLiteral("version()"), plugin.version()},
        {QStringLiteral("apiVersion()"), QString::number(plugin.apiVersion())},
        {QStringLiteral("requiredCapabilities()"), plugin.requiredCapabilities().join(QLatin1Char(' '))},
        {QStringLiteral("manifest().pluginId"), manifest.pluginId},
        {QStringLiteral("manifest().typeIdPrefix"), manifest.typeIdPrefix}};
    const QStringList weighed = manifest.typeOrder.keys();
    names.append({QStringLiteral("what has a weight"), weighed.join(QLatin1Char(' '))});
    for (auto it = manifest.typeOrder.begin(); it != manifest.typeOrder.end(); ++it)
        names.append({QStringLiteral("the weight of %1").arg(quoted(it.key())), QString::number(it.value())});
    const QList<Operation *> steps = context.newSteps();
    names.append({QStringLiteral("the number of prototypes"), QString::number(steps.size())});
    for (int i = 0; i < steps.size(); ++i) {
        const QString which = QStringLiteral(" of prototype %1").arg(i + 1);
        names.append({QStringLiteral("typeId()") + which, steps.at(i)->typeId()});
        names.append({QStringLiteral("icon()") + which, steps.at(i)->icon()});
    }
    return names;
}

void checkEverywhere(CheckContext &context)
{
    const QVector<CheckFact> names = namesOf(context);
    for (const CheckFact &name : names)
        context.tell(name.what, quoted(name.value));
}

// The comparison is done where all plug-ins are known.
void checkCompany(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    context.tell(QStringLiteral("plug-in id"), plugin.pluginId());
    context.tell(QStringLiteral("prefix of type ids"), plugin.manifest().typeIdPrefix);
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        context.tell(QStringLiteral("type id"), step->typeId());
    for (const Operation *step : steps)
        context.tell(QStringLiteral("icon path"), step->icon());
}

/// Translates every text into another one.
class PseudoTranslator : public QTranslator
{
public:
    QString translate(const char *, const char *source, const char *, int) const override
    {
        return QLatin1String("[!") + QString::fromUtf8(source) + QLatin1String("!]");
    }
    bool isEmpty() const override
    {
        return false;
    }
};

// What `ask` gives in a host that is translated. What is said of it is not.
template<typename Ask>
auto inTranslatedHost(const Ask &ask)
{
    PseudoTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const auto uninstall = qScopeGuard([&translator] { QCoreApplication::removeTranslator(&translator); });
    return ask();
}

void checkTranslated(CheckContext &context)
{
    const QVector<CheckFact> before = namesOf(context);
    const QVector<CheckFact> after = inTranslatedHost([&context] { return namesOf(context); });
    for (int i = 0; i < qMin(before.size(), after.size()); ++i) {
        if (before.at(i).value != after.at(i).value)
            fail(QStringLiteral(
                     "%1 becomes %2 when the host is translated; a name that is kept in files is no text")
                     .arg(before.at(i).what, quoted(after.at(i).value)));
    }
}

// Categories without a weight that have one while nothing is translated.
void checkTranslatedWeights(CheckContext &context)
{
    const QMap<QString, int> before = context.plugin().manifest().categoryOrder;
    QVector<bool> hadWeight;
    const QList<Operation *> steps = context.newSteps();
    for (const Operation *step : steps)
        hadWeight.append(before.contains(step->root()));
    struct Weighed
    {
        QStringList categories;
        QStringList roots;
    };
    const Weighed after = inTranslatedHost([&] {
        Weighed weighed{context.plugin().manifest().categoryOrder.keys(), {}};
        for (const Operation *step : steps)
            weighed.roots.append(step->root());
        return weighed;
    });
    for (int i = 0; i < steps.size(); ++i) {
        if (hadWeight.at(i) && !after.categories.contains(after.roots.at(i)))
            warn(QStringLiteral(
                     "the category %1 has no weight when the host is translated: categoryOrder has %2")
                     .arg(quoted(after.roots.at(i)), quoted(after.categories.join(QLatin1Char('|')))));
    }
}

void expectValid(const char *member, const QString &text)
{
    const QString flaw = flawOf(text);
    if (!flaw.isEmpty())
        fail(QStringLiteral("%1, %2, %3").arg(QLatin1String(member), quoted(text), flaw));
    if (text != text.trimmed())
        fail(QStringLiteral("%1, %2, begins or ends with a blank").arg(QLatin1String(member), quoted(text)));
}

void checkTexts(CheckContext &context)
{
    const IOperationPlugin &plugin = context.plugin();
    expectValid("pluginId()", plugin.pluginId());
    expectValid("name()", plugin.name());
    expectValid("version()", plugin.version());
    context.forEachStep([](const Operation &step) {
        expectValid("root()", step.root());
        expectValid("typeName()", step.typeName());
    });
}
} // namespace

QVector<PluginCheck> nameChecks()
{
    return {
        {"identity.texts", "Names are valid text of one line.", checkTexts},
        {"identity.translated", "What is kept in files does not change with the language of the host.",
         checkTranslated},
        {"identity.translated-weights", "A category keeps its weight when the host is translated.",
         checkTranslatedWeights},
        {"identity.company",
         "No other plug-in that is checked in the same call has the same ids, prefix and icons.",
         checkCompany},
        {"identity.everywhere", "The plug-in has the same ids, weights and steps in every process.",
         checkEverywhere, CheckWorlds::Elsewhere},
    };
}
} // namespace StepHost
