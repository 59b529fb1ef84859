#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/checks/trial/SettingValues.h"
#include "host/checks/trial/Trials.h"
#include "host/running/Breadcrumb.h"
#include "host/running/WarningCapture.h"
#include "host/values/QuotedText.h"

#include <QPointer>

#include <memory>

namespace StepHost
{
namespace
{
// Calls `check` with every step, its settings changed, and a clone of it.
void forEachClone(CheckContext &context, const std::function<void(Operation &step, Operation &copy)> &check)
{
    context.forEachStep([&](Operation &step) {
        changeSettings(step);
        check(step, context.cloneOf(step));
    });
}

void checkNewObject(CheckContext &context)
{
    forEachClone(context, [](const Operation &step, const Operation &copy) {
        if (&copy == &step)
            fail(QStringLiteral("clone() gives the step itself"));
    });
}

void checkClass(CheckContext &context)
{
    forEachClone(context, [](const Operation &step, const Operation &copy) {
        if (copy.metaObject() != step.metaObject())
            fail(QStringLiteral("the clone is a %1").arg(QString::fromUtf8(copy.metaObject()->className())));
        if (copy.typeId() != step.typeId())
            fail(QStringLiteral("the clone's type id is %1 instead of %2")
                     .arg(quoted(copy.typeId()), quoted(step.typeId())));
    });
}

void checkSettings(CheckContext &context)
{
    forEachClone(context, [](const Operation &step, const Operation &copy) {
        expectSettings(copy, readSettings(step), QStringLiteral("in the clone"));
    });
}

void checkBaseState(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        const quint32 state = 0xc0ffee12;
        setBaseState(step, state);
        const quint32 copied = baseStateOf(context.cloneOf(step));
        if (copied != state)
            fail(QStringLiteral("the clone's base state is %1 instead of %2").arg(copied).arg(state));
    });
}

void checkParent(CheckContext &context)
{
    context.forEachStep([&context](const Operation &step) {
        QObject parent;
        const QPointer<Operation> owned(step.clone(&parent));
        if (!owned || owned->parent() != &parent)
            fail(QStringLiteral("clone(parent) does not belong to its parent"));
        if (context.cloneOf(step).parent())
            fail(QStringLiteral("clone(nullptr) has a parent"));
    });
}

void checkNoScope(CheckContext &context)
{
    VariableScope scope;
    context.forEachStep([&](Operation &step) {
        step.setVariableScope(&scope);
        bool isCopied = scopeOf(context.cloneOf(step));
        {
            const WarningCapture log(WarningCapture::AllLevels);
            noteCall("doOperation()", &step);
            step.doOperation();
        }
        isCopied = isCopied || scopeOf(context.cloneOf(step));
        step.setVariableScope(nullptr);
        if (isCopied)
            fail(QStringLiteral("the clone has its source's scope; it has to start without one"));
    });
}

void checkIndependent(CheckContext &context)
{
    forEachClone(context, [](Operation &step, Operation &copy) {
        const QVariantList settings = readSettings(step);
        changeSettings(copy);
        expectSettings(step, settings, QStringLiteral("after a change of the clone"));
        const QVariantList copySettings = readSettings(copy);
        changeSettings(step);
        expectSettings(copy, copySettings, QStringLiteral("after a change of the source"));
    });
}

void checkOutlivesSource(CheckContext &context)
{
    context.forEachStep([&context](const Operation &prototype) {
        Operation &source = context.cloneOf(prototype);
        Operation &copy = context.cloneOf(source);
        const QPointer<Operation> watched(&copy);
        const QVariantList settings = readSettings(copy);
        delete &source;
        if (!watched)
            fail(QStringLiteral("the clone is deleted together with its source"));
        expectSettings(copy, settings, QStringLiteral("after the source was deleted"));
    });
}

void checkObjectName(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        step.setObjectName(QStringLiteral("a name"));
        if (!context.cloneOf(step).objectName().isEmpty())
            fail(QStringLiteral("the clone has its source's object name"));
    });
}

void checkDynamicProperties(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        step.setProperty("dynamic", 1);
        if (!context.cloneOf(step).dynamicPropertyNames().isEmpty())
            fail(QStringLiteral("the clone has its source's dynamic properties"));
    });
}

void checkNoRelatives(CheckContext &context)
{
    context.forEachTwins([&context](Operation &step, Operation &relative) {
        step.setParentOperation(&relative);
        step.children().append(&relative);
        Operation &copy = context.cloneOf(step);
        step.setParentOperation(nullptr);
        step.children().clear();
        if (copy.parentOperation())
            fail(QStringLiteral("the clone has its source's parent operation"));
        if (!copy.children().isEmpty())
            fail(QStringLiteral("the clone has its source's child operations"));
    });
}
// Calls `check` with every step, whose settings have each value that they have to be able to hold, one setting after
// the other.
void forEachValue(CheckContext &context, const std::function<void(Operation &)> &check)
{
    context.forEachStep([&check](Operation &step) {
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (const QMetaProperty &setting : settings) {
            const QVariant byDefault = setting.read(&step);
            const QVariantList values = storableValues(setting);
            for (const QVariant &value : values) {
                setting.write(&step, value);
                check(step);
            }
            setting.write(&step, byDefault);
        }
    });
}

void checkValues(CheckContext &context)
{
    forEachValue(context, [](const Operation &step) {
        noteCall("clone()", &step);
        const std::unique_ptr<Operation> copy(step.clone(nullptr));
        if (!copy)
            fail(QStringLiteral("clone() gives null"));
        expectSettings(*copy, readSettings(step), QStringLiteral("in the clone"));
    });
}

void checkCombinations(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        const StepTrials trials = findTrials(step, context.seed());
        const QVector<Trial> all = trials.writing + trials.skipping;
        for (const Trial &trial : all) {
            applySettings(step, trial.settings);
            changeTexts(step);
            expectSettings(context.cloneOf(step), readSettings(step), QStringLiteral("in the clone"));
        }
    });
}

void checkCloneOfClone(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        changeSettings(step);
        const Operation *copy = &step;
        for (int generation = 2; generation <= 4; ++generation) {
            copy = &context.cloneOf(*copy);
            const QString where = QStringLiteral("in clone number %1 of a row of clones").arg(generation);
            expectSettings(*copy, readSettings(step), where);
            if (recordOf(*copy) != recordOf(step))
                fail(QStringLiteral("%1, the record is another one").arg(where));
        }
    });
}

void checkSourceKept(CheckContext &context)
{
    context.forEachStep([&context](Operation &step) {
        changeSettings(step);
        const QVariantList settings = readSettings(step);
        const QByteArray record = recordOf(step);
        context.cloneOf(step);
        expectSettings(step, settings, QStringLiteral("in the source, after a clone was made"));
        if (recordOf(step) != record)
            fail(QStringLiteral("the source saves another record after a clone was made"));
    });
}

// A field that is saved and is no setting can only be reached through a record: bytes are changed until the step
// keeps the change.
void checkRecord(CheckContext &context)
{
    constexpr int mostBytes = 400;
    context.forEachStep([&context](Operation &step) {
        changeSettings(step);
        Operation &source = context.cloneOf(step);
        const QByteArray record = recordOf(step);
        for (int at = qMax(0, record.size() - mostBytes); at < record.size(); ++at) {
            QByteArray changed = record;
            changed[at] = char(changed.at(at) ^ 1);
            const LoadEnd end = loadRecord(source, changed);
            if (end.status != QDataStream::Ok || end.position != changed.size()
                || recordOf(source) != changed)
                continue;
            noteCall("clone()", &source);
            const std::unique_ptr<Operation> copy(source.clone(nullptr));
            if (copy && recordOf(*copy) != changed)
                fail(QStringLiteral("the clone of a step that was loaded saves another record; byte %1 of "
                                    "%2, counted from 0, "
                                    "is of something that clone() leaves out")
                         .arg(at)
                         .arg(record.size()));
        }
    });
}

void checkOften(CheckContext &context)
{
    constexpr int clones = 1000;
    context.forEachStep([](const Operation &step) {
        for (int i = 0; i < clones; ++i) {
            const std::unique_ptr<Operation> copy(step.clone(nullptr));
            if (!copy)
                fail(QStringLiteral("clone() gives null in call %1").arg(i + 1));
        }
    });
}

void checkIdentity(CheckContext &context)
{
    forEachClone(context, [](const Operation &step, const Operation &copy) {
        const auto expectSame = [](const char *member, const QString &actual, const QString &expected) {
            if (actual != expected)
                fail(QStringLiteral("%1 of the clone is %2 instead of %3")
                         .arg(QLatin1String(member), quoted(actual), quoted(expected)));
        };
        expectSame("root()", copy.root(), step.root());
        expectSame("typeName()", copy.typeName(), step.typeName());
        expectSame("icon()", copy.icon(), step.icon());
        expectSame("toString()", copy.toString(), step.toString());
        expectSame("description()", copy.description(), step.description());
        if (copy.thread() != step.thread())
            fail(QStringLiteral("the clone belongs to another thread"));
        if (copy.signalsBlocked())
            fail(QStringLiteral("the clone's signals are blocked"));
        if (copy.isContainer() != step.isContainer()
            || copy.QObject::children().size() != step.QObject::children().size())
            fail(QStringLiteral("the clone has %1 objects as children, its source %2")
                     .arg(copy.QObject::children().size())
                     .arg(step.QObject::children().size()));
    });
}
} // namespace

QVector<PluginCheck> cloneChecks()
{
    return {
        {"clone.new-object", "A clone is an object of its own.", checkNewObject},
        {"clone.class", "A clone is of its source's class.", checkClass},
        {"clone.settings", "A clone has its source's settings.", checkSettings},
        {"clone.base-state", "A clone has its source's base state.", checkBaseState},
        {"clone.parent", "A clone belongs to the parent that it is given, or to the caller.", checkParent},
        {"clone.no-scope", "A clone starts without a scope.", checkNoScope},
        {"clone.independent", "Changing a clone does not change its source, nor the other way round.",
         checkIndependent},
        {"clone.outlives-source", "A clone needs its source no more.", checkOutlivesSource},
        {"clone.object-name", "The object name is not copied.", checkObjectName},
        {"clone.dynamic-properties", "Dynamic properties are not copied.", checkDynamicProperties},
        {"clone.values", "A clone has every value that a setting can hold.", checkValues},
        {"clone.combinations", "A clone has its source's settings, whichever of them are shown.",
         checkCombinations},
        {"clone.record", "A clone saves the record that its source saves.", checkRecord},
        {"clone.of-clone", "A clone of a clone is a clone.", checkCloneOfClone},
        {"clone.source-kept", "Making a clone does not change its source.", checkSourceKept},
        {"clone.often", "A step can be cloned as often as a host likes.", checkOften},
        {"clone.identity", "A clone looks like its source, and belongs to the same thread.", checkIdentity},
        {"clone.no-relatives", "Parent operation and child operations are not copied.", checkNoRelatives},
    };
}
} // namespace StepHost
