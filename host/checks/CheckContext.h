#pragma once

#include "PluginCheck.h"
#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"

#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>

#include <functional>

namespace StepHost
{
/// Thrown to end a check with something else than "passed".
struct CheckEnd
{
    CheckOutcome outcome;
    QString reason;
};

/// The memory that a check may have in a process of its own, in bytes: many times of what a sound plug-in takes.
constexpr qint64 memoryOfCheck = qint64(1) << 30;

/// Ends the check. \a reason is one line that says what was found and what would be right.
/// @{
[[noreturn]] void fail(const QString &reason);
[[noreturn]] void warn(const QString &reason);
[[noreturn]] void skip(const QString &reason);
/// @}

/// What noteCall() is told after a check: before the plug-in is asked for its name, before its library is unloaded, and
/// before the process ends.
/// @{
constexpr char unloadingCall[] = "unloading of the library";
constexpr char endingCall[] = "end of the process";
constexpr char introducingCall[] = "the calls for the report";
/// @}

/// The check that is done on the older release, where all others of its family are done on the newer one.
constexpr char baselineLoadsId[] = "baseline.loads";

/// What `library.loads` tells of the plug-in, for the report.
/// @{
constexpr char pluginIdFact[] = "id";
constexpr char versionFact[] = "version";
/// @}

/// A plug-in under check.
///
/// The plug-in is loaded when it is first needed, and unloaded again by the destructor. Texts and values that
/// came from it may lie in its memory.
class CheckContext
{
public:
    CheckContext(const QString &fileName, const CheckSetup &setup);
    ~CheckContext();

    const QString &fileName() const
    {
        return m_fileName;
    }
    const IconRenderer &renderer() const
    {
        return m_setup.renderer;
    }
    const CheckSetup &setup() const
    {
        return m_setup;
    }
    unsigned seed() const
    {
        return m_setup.seed;
    }

    /// Notes that \a what is \a value, which has to be so in every process.
    void tell(const QString &what, const QString &value)
    {
        // A copy: the text may lie in the library's memory, which facts outlive.
        m_facts.append({what, QString(value.constData(), value.size())});
    }
    const QVector<CheckFact> &facts() const
    {
        return m_facts;
    }

    /// What the library's file tells of the plug-in; nothing of it is run. Another QPluginLoader would keep the library in
    /// memory for good, unless told not to.
    QJsonObject metaData() const
    {
        return m_loader.metaData();
    }
    bool isLoaded() const
    {
        return m_loader.isLoaded();
    }

    /// The root object's contract. Fails the check when the plug-in does not load or has none.
    IOperationPlugin &plugin();

    /// The root object itself. Fails like plugin().
    QObject &instance();

    /// A new set of prototypes without null pointers. They belong to this object. Fails the check when
    /// there are none.
    QList<Operation *> newSteps();

    /// Calls \a check with every step of a new set. Ends the check with the failures of all steps
    /// together, each with the step's class in front; without failures with the warnings, then with what was skipped.
    void forEachStep(const std::function<void(Operation &)> &check);

    /// The same for two new sets: \a check gets both steps of a class.
    void forEachTwins(const std::function<void(Operation &step, Operation &twin)> &check);

    /// A clone of \a step without parent. It belongs to this object. Fails the check when there is none.
    Operation &cloneOf(const Operation &step);

    /// Takes \a step, which the plug-in made, so that it is deleted at the end.
    void keep(Operation *step);

    /// Deletes all steps, and unloads the library. Returns whether that could be done.
    bool unload();

private:
    Q_DISABLE_COPY(CheckContext)

    void deleteSteps();

    QString m_fileName;
    CheckSetup m_setup;
    QPluginLoader m_loader;
    QVector<CheckFact> m_facts;
    QList<QPointer<Operation>> m_steps;
};

/// The checks of each family, for the table.
/// @{
QVector<PluginCheck> libraryChecks();
QVector<PluginCheck> fileChecks();
QVector<PluginCheck> mannerChecks();
QVector<PluginCheck> identityChecks();
QVector<PluginCheck> nameChecks();
QVector<PluginCheck> prototypeChecks();
QVector<PluginCheck> cloneChecks();
QVector<PluginCheck> settingsChecks();
QVector<PluginCheck> schemaChecks();
QVector<PluginCheck> textChecks();
QVector<PluginCheck> iconChecks();
QVector<PluginCheck> persistenceChecks();
QVector<PluginCheck> recordChecks();
QVector<PluginCheck> runningChecks();
QVector<PluginCheck> resultChecks();
QVector<PluginCheck> baselineChecks();
/// @}
} // namespace StepHost
