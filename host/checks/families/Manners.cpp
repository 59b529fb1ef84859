// Checks of what a plug-in does to the process that it is loaded into.

#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/snapshot/MemoryUse.h"
#include "host/checks/snapshot/OutputWatch.h"
#include "host/checks/snapshot/OwnTerminal.h"
#include "host/checks/snapshot/ProcessSnapshot.h"
#include "host/checks/trial/Trials.h"
#include "host/plugins/StepRecord.h"
#include "host/running/Breadcrumb.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

#include <QThreadPool>

#include <optional>

namespace StepHost
{
namespace
{
constexpr qint64 allowedLeak = 1024;

/// Does something, told what it is.
using Observer = std::function<void(const QString &call, const std::function<void()> &action)>;

QString callOf(const char *call, const Operation &step)
{
    return QStringLiteral("%1 of %2")
        .arg(QLatin1String(call), QString::fromUtf8(step.metaObject()->className()));
}

void editAll(Operation &step)
{
    changeSettings(step);
    for (const QString &text : hostileTexts())
        setTexts(step, text);
}

void describe(const Operation &step)
{
    step.root();
    step.typeId();
    step.typeName();
    step.icon();
    step.toString();
    step.description();
}

// Everything that a host asks of a step, each call on its own.
void observeStep(CheckContext &context, Operation &step, const Observer &observe)
{
    const QVariantList byDefault = readSettings(step);
    observe(callOf("clone()", step), [&] { context.cloneOf(step); });
    observe(callOf("the setters", step), [&] { editAll(step); });
    observe(callOf("the getters", step), [&] { readSettings(step); });
    observe(callOf("the texts", step), [&] { describe(step); });
    QByteArray record;
    observe(callOf("saveOperation()", step), [&] { record = recordOf(step); });
    observe(callOf("loadOperation()", step), [&] { loadRecord(step, record); });
    observe(callOf("loadOperation() for a damaged record", step), [&] {
        loadRecord(step, record.left(record.size() / 2));
        loadRecord(step, QByteArray(record.size(), '\xff'));
    });
    observe(callOf("doOperation() without a scope", step), [&] { step.doOperation(); });
    applySettings(step, byDefault);
    StepTrials trials;
    observe(callOf("doOperation()", step), [&] { trials = findTrials(step, context.seed()); });
    const QVector<Trial> some = trials.writing.mid(0, 3) + trials.skipping.mid(0, 3);
    for (const Trial &trial : some)
        observe(callOf("doOperation()", step), [&] { run(step, trial); });
    observe(callOf("the destructor", step), [&] { delete &step; });
}

// Everything that a host asks of a plug-in.
void observePlugin(CheckContext &context, const Observer &observe)
{
    observe(QStringLiteral("loading"), [&] { context.plugin(); });
    IOperationPlugin &plugin = context.plugin();
    observe(QStringLiteral("the identity calls"), [&] {
        plugin.pluginId();
        plugin.name();
        plugin.version();
        plugin.apiVersion();
        plugin.requiredCapabilities();
        plugin.manifest();
    });
    QList<Operation *> steps;
    observe(QStringLiteral("createPrototypes()"), [&] { steps = context.newSteps(); });
    for (Operation *step : qAsConst(steps))
        observeStep(context, *step, observe);
    observe(QStringLiteral("unloading"), [&] { context.unload(); });
}

/// What was found, with the calls that it was found in. The first two are enough: what differs after each call would
/// take its time after each call.
class MannerFindings
{
public:
    void add(const QString &call, const QString &difference)
    {
        if (!isEnough() && !difference.isEmpty())
            m_texts.append(QStringLiteral("after %1: %2").arg(call, difference));
    }

    bool isEnough() const
    {
        constexpr int shown = 2;
        return m_texts.size() >= shown;
    }

    void end() const
    {
        if (!m_texts.isEmpty())
            fail(m_texts.join(QLatin1String("; ")));
    }

private:
    QStringList m_texts;
};

void checkFacet(CheckContext &context, const ProcessFacet &facet)
{
    if (!facet.facts)
        skip(QStringLiteral("this system does not tell"));
    if (facet.id == QLatin1String("files") && !qEnvironmentVariableIsSet(checkFolderVariable))
        skip(QStringLiteral("this process has no folders of its own"));
    std::optional<OwnTerminal> terminal;
    if (facet.id == QLatin1String("terminal") && !terminal.emplace().isThere())
        skip(QStringLiteral("no terminal can be made here"));
    warmUp();
    const WarningCapture log(WarningCapture::AllLevels);
    MannerFindings findings;
    observePlugin(context, [&](const QString &call, const std::function<void()> &action) {
        const ProcessSnapshot before(facet);
        action();
        if (!findings.isEnough())
            findings.add(call, before.differenceNow());
    });
    QThreadPool::globalInstance()->waitForDone();
    findings.end();
}

void checkOutput(CheckContext &context)
{
    warmUp();
    MannerFindings findings;
    {
        const OutputWatch watch;
        if (!watch.isPossible())
            skip(QStringLiteral("this system does not tell what a process writes"));
        const WarningCapture log(WarningCapture::AllLevels);
        observePlugin(context, [&](const QString &call, const std::function<void()> &action) {
            const qint64 before = watch.written();
            action();
            const qint64 written = watch.written() - before;
            if (written > 0)
                findings.add(call,
                             QStringLiteral("%1 bytes on standard output or standard error").arg(written));
        });
    }
    findings.end();
}

// Calls `check` with the calls of `step` that may be repeated without end.
void forEachRepeatable(CheckContext &context, Operation &step, const Observer &check)
{
    step.setParent(nullptr);
    check(callOf("clone()", step), [&] { delete step.clone(nullptr); });
    check(callOf("the setters", step), [&] { changeSettings(step); });
    check(callOf("the texts", step), [&] { describe(step); });
    const QByteArray record = recordOf(step);
    check(callOf("saveOperation()", step), [&] { recordOf(step); });
    check(callOf("loadOperation()", step), [&] { loadRecord(step, record); });
    const StepTrials trials = findTrials(step, context.seed());
    const QVector<Trial> some = trials.writing.mid(0, 2) + trials.skipping.mid(0, 2);
    for (const Trial &trial : some)
        check(callOf("doOperation()", step), [&] { run(step, trial); });
}

void checkMemory(CheckContext &context)
{
    if (!allocatedMemory())
        skip(QStringLiteral("this system does not tell how much memory is allocated"));
    const auto expectNone = [](const QString &call, const std::function<void()> &action) {
        const qint64 bytes = bytesLeftByEach(action);
        if (bytes > allowedLeak)
            fail(QStringLiteral("each %1 leaves %2 bytes allocated").arg(call).arg(bytes));
    };
    IOperationPlugin &plugin = context.plugin();
    expectNone(QStringLiteral("manifest()"), [&] { plugin.manifest(); });
    expectNone(QStringLiteral("createPrototypes()"), [&] { qDeleteAll(plugin.createPrototypes()); });
    context.forEachStep([&](Operation &step) { forEachRepeatable(context, step, expectNone); });
}

} // namespace

QVector<PluginCheck> mannerChecks()
{
    QVector<PluginCheck> checks;
    for (const ProcessFacet &facet : processFacets()) {
        checks.append({QLatin1String("manners.") + facet.id, facet.protects,
                       [&facet](CheckContext &context) { checkFacet(context, facet); }});
    }
    checks.append(
        {"manners.output", "Nothing is written to standard output or standard error.", checkOutput});
    checks.append({"manners.memory", "No call leaves memory behind each time.", checkMemory});
    return checks;
}
} // namespace StepHost
