#include "PluginCheck.h"

#include "CheckContext.h"
#include "host/values/QuotedText.h"

#include <QElapsedTimer>

#include <algorithm>
#include <exception>

namespace StepHost
{
namespace
{
// What a plug-in throws must not end the host.
CheckEnd endOf(const std::function<void()> &check)
{
    try {
        check();
    } catch (const CheckEnd &end) {
        return end;
    } catch (const std::exception &error) {
        return {CheckOutcome::Failed,
                QStringLiteral("the plug-in threw %1").arg(quoted(QString::fromUtf8(error.what())))};
    } catch (...) {
        return {CheckOutcome::Failed, QStringLiteral("the plug-in threw an exception")};
    }
    return {CheckOutcome::Passed, QString()};
}

QString className(const Operation &step)
{
    return QString::fromUtf8(step.metaObject()->className());
}
} // namespace

QString outcomeWord(CheckOutcome outcome)
{
    switch (outcome) {
    case CheckOutcome::Passed:
        return QStringLiteral("passed");
    case CheckOutcome::Warning:
        return QStringLiteral("warning");
    case CheckOutcome::Skipped:
        return QStringLiteral("skipped");
    case CheckOutcome::Failed:
        return QStringLiteral("failed");
    case CheckOutcome::Crashed:
        return QStringLiteral("crashed");
    case CheckOutcome::TimedOut:
        return QStringLiteral("timed out");
    }
    return QString();
}

const QVector<PluginCheck> &pluginChecks()
{
    static const QVector<PluginCheck> checks = libraryChecks() + identityChecks() + prototypeChecks()
        + cloneChecks() + settingsChecks() + schemaChecks() + textChecks() + iconChecks()
        + persistenceChecks() + runningChecks();
    return checks;
}

const PluginCheck *findPluginCheck(const QString &id)
{
    const QVector<PluginCheck> &checks = pluginChecks();
    const auto *const it = std::find_if(checks.begin(), checks.end(),
                                        [&id](const PluginCheck &check) { return check.id == id; });
    return it == checks.end() ? nullptr : &*it;
}

CheckResult runPluginCheck(const PluginCheck &check, const QString &fileName, const IconRenderer &renderer)
{
    QElapsedTimer timer;
    timer.start();
    // Outlives what the check throws, which may be of a class that only the plug-in knows.
    CheckContext context(fileName, renderer);
    const CheckEnd end = endOf([&] { check.run(context); });
    // Much of a reason may be what the plug-in says.
    return {check.id, end.outcome, messageLine(end.reason), timer.elapsed()};
}

void fail(const QString &reason)
{
    throw CheckEnd{CheckOutcome::Failed, reason};
}

void warn(const QString &reason)
{
    throw CheckEnd{CheckOutcome::Warning, reason};
}

void skip(const QString &reason)
{
    throw CheckEnd{CheckOutcome::Skipped, reason};
}

CheckContext::CheckContext(const QString &fileName, const IconRenderer &renderer)
    : m_fileName(fileName), m_renderer(renderer), m_loader(fileName)
{
    m_loader.setLoadHints({}); // The default would keep the library in memory for good.
}

CheckContext::~CheckContext()
{
    for (const QPointer<Operation> &step : qAsConst(m_steps))
        delete step.data();
    m_loader.unload();
}

QObject &CheckContext::instance()
{
    QObject *root = m_loader.instance();
    if (!root)
        fail(QStringLiteral("the library does not load: %1").arg(m_loader.errorString()));
    return *root;
}

IOperationPlugin &CheckContext::plugin()
{
    IOperationPlugin *contract = qobject_cast<IOperationPlugin *>(&instance());
    if (!contract)
        fail(QStringLiteral("the root object, a %1, does not implement IOperationPlugin; it needs "
                            "Q_INTERFACES(IOperationPlugin)")
                 .arg(QString::fromUtf8(instance().metaObject()->className())));
    return *contract;
}

QList<Operation *> CheckContext::newSteps()
{
    QList<Operation *> steps = plugin().createPrototypes();
    steps.removeAll(nullptr);
    if (steps.isEmpty())
        fail(QStringLiteral("the plug-in has no prototypes"));
    for (Operation *step : qAsConst(steps))
        keep(step);
    return steps;
}

Operation &CheckContext::cloneOf(const Operation &step)
{
    Operation *copy = step.clone(nullptr);
    if (!copy)
        fail(QStringLiteral("clone() gives null"));
    keep(copy);
    return *copy;
}

void CheckContext::keep(Operation *step)
{
    m_steps.append(step);
}

void CheckContext::forEachStep(const std::function<void(Operation &)> &check)
{
    constexpr int shownFailures = 3;
    QStringList failures;
    const QList<Operation *> steps = newSteps();
    for (Operation *step : steps) {
        const CheckEnd end = endOf([&] { check(*step); });
        if (end.outcome == CheckOutcome::Failed)
            failures.append(className(*step) + QLatin1String(": ") + end.reason);
        else if (end.outcome != CheckOutcome::Passed)
            throw CheckEnd(end);
    }
    const int hidden = failures.size() - shownFailures;
    if (hidden > 0)
        failures = failures.mid(0, shownFailures) << QStringLiteral("and %1 more").arg(hidden);
    if (!failures.isEmpty())
        fail(failures.join(QLatin1String("; ")));
}

void CheckContext::forEachTwins(const std::function<void(Operation &, Operation &)> &check)
{
    const QList<Operation *> twins = newSteps();
    int position = 0;
    forEachStep([&](Operation &step) {
        Operation *twin = twins.value(position++);
        if (!twin || twin->metaObject() != step.metaObject())
            fail(QStringLiteral("two sets of prototypes are not of the same classes in the same order"));
        check(step, *twin);
    });
}
} // namespace StepHost
