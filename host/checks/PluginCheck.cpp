#include "PluginCheck.h"

#include "CheckContext.h"
#include "host/running/Breadcrumb.h"
#include "host/values/QuotedText.h"

#include <QElapsedTimer>

#include <algorithm>
#include <exception>
#include <new>

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
    } catch (const std::bad_alloc &) {
        return {CheckOutcome::Failed,
                QStringLiteral("the plug-in asks for more memory than the %1 MiB that a check has, in %2")
                    .arg(memoryOfCheck >> 20)
                    .arg(presentCall())};
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

/// How a check ended for each of several steps.
class StepFindings
{
public:
    void add(const Operation &step, const CheckEnd &end);

    /// Ends the check with the worst that was found, and with all steps where it was.
    void end() const;

private:
    struct Finding
    {
        CheckEnd end;
        QStringList classes;
    };

    int m_steps = 0;
    QVector<Finding> m_findings;
};

void StepFindings::add(const Operation &step, const CheckEnd &end)
{
    ++m_steps;
    if (end.outcome == CheckOutcome::Passed)
        return;
    for (Finding &finding : m_findings) {
        if (finding.end.outcome == end.outcome && finding.end.reason == end.reason) {
            finding.classes.append(className(step));
            return;
        }
    }
    m_findings.append({end, {className(step)}});
}

void StepFindings::end() const
{
    constexpr int shownFindings = 3;
    for (const CheckOutcome outcome : {CheckOutcome::Failed, CheckOutcome::Warning, CheckOutcome::Skipped}) {
        QStringList texts;
        for (const Finding &finding : m_findings) {
            if (finding.end.outcome != outcome)
                continue;
            // What could not be looked at is rarely a matter of the step.
            if (outcome == CheckOutcome::Skipped && finding.classes.size() == m_steps) {
                texts.append(finding.end.reason);
                continue;
            }
            QString classes = finding.classes.first();
            if (finding.classes.size() > 1)
                classes += QStringLiteral(" and %1 more").arg(finding.classes.size() - 1);
            texts.append(classes + QLatin1String(": ") + finding.end.reason);
        }
        const int hidden = texts.size() - shownFindings;
        if (hidden > 0)
            texts = texts.mid(0, shownFindings) << QStringLiteral("and %1 more").arg(hidden);
        if (!texts.isEmpty())
            throw CheckEnd{outcome, texts.join(QLatin1String("; "))};
    }
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
    static const QVector<PluginCheck> checks = libraryChecks() + fileChecks() + identityChecks()
        + nameChecks() + prototypeChecks() + cloneChecks() + settingsChecks() + schemaChecks() + textChecks()
        + iconChecks() + persistenceChecks() + recordChecks() + runningChecks() + resultChecks()
        + mannerChecks() + baselineChecks();
    return checks;
}

const PluginCheck *findPluginCheck(const QString &id)
{
    const QVector<PluginCheck> &checks = pluginChecks();
    const auto *const it = std::find_if(checks.begin(), checks.end(),
                                        [&id](const PluginCheck &check) { return check.id == id; });
    return it == checks.end() ? nullptr : &*it;
}

CheckResult runPluginCheck(const PluginCheck &check, const QString &fileName, const CheckSetup &setup,
                           const std::function<void(const CheckResult &)> &done)
{
    QElapsedTimer timer;
    timer.start();
    // Outlives what the check throws, which may be of a class that only the plug-in knows.
    CheckContext context(fileName, setup);
    const CheckEnd end = endOf([&] { check.run(context); });
    // Much of a reason may be what the plug-in says.
    CheckResult result{check.id, end.outcome, messageLine(end.reason), timer.elapsed(), context.facts()};
    if (done)
        done(result);
    if (!check.introduce || end.outcome != CheckOutcome::Passed)
        return result;
    noteCall(introducingCall);
    endOf([&] { check.introduce(context); });
    result.facts = context.facts();
    if (done)
        done(result);
    return result;
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

CheckContext::CheckContext(const QString &fileName, const CheckSetup &setup)
    : m_fileName(fileName), m_setup(setup), m_loader(fileName)
{
    m_loader.setLoadHints({}); // The default would keep the library in memory for good.
}

CheckContext::~CheckContext()
{
    deleteSteps();
    noteCall(unloadingCall);
    m_loader.unload();
}

void CheckContext::deleteSteps()
{
    noteCall("destructors of the steps");
    for (const QPointer<Operation> &step : qAsConst(m_steps))
        delete step.data();
    m_steps.clear();
}

bool CheckContext::unload()
{
    deleteSteps();
    noteCall(unloadingCall);
    return m_loader.unload();
}

QObject &CheckContext::instance()
{
    if (!m_loader.isLoaded())
        noteCall("loading of the library");
    QObject *root = m_loader.instance();
    const QString reason = root ? QString() : m_loader.errorString();
    if (reason.contains(QLatin1String("symbol: __asan_"))
        || reason.contains(QLatin1String("symbol: __tsan_")))
        fail(QStringLiteral(
                 "the library does not load: it was built with a sanitizer, and does not say whose; Clang "
                 "does with -shared-libsan (%1)")
                 .arg(reason));
    if (!root)
        fail(QStringLiteral("the library does not load: %1").arg(reason));
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
    IOperationPlugin &contract = plugin();
    noteCall("createPrototypes()");
    QList<Operation *> steps = contract.createPrototypes();
    steps.removeAll(nullptr);
    if (steps.isEmpty())
        fail(QStringLiteral("the plug-in has no prototypes"));
    for (Operation *step : qAsConst(steps))
        keep(step);
    return steps;
}

Operation &CheckContext::cloneOf(const Operation &step)
{
    noteCall("clone()", &step);
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
    StepFindings findings;
    const QList<Operation *> steps = newSteps();
    for (Operation *step : steps) {
        noteCall("a call", step);
        findings.add(*step, endOf([&] { check(*step); }));
    }
    findings.end();
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
