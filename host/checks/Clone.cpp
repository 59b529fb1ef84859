#include "CheckContext.h"
#include "CheckSteps.h"
#include "host/values/QuotedText.h"

#include <QPointer>

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
        const VariableScope *copied = scopeOf(context.cloneOf(step));
        step.setVariableScope(nullptr);
        if (copied)
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
        const QPointer<Operation> copy(&context.cloneOf(source));
        const QVariantList settings = readSettings(*copy);
        delete &source;
        if (!copy)
            fail(QStringLiteral("the clone is deleted together with its source"));
        expectSettings(*copy, settings, QStringLiteral("after the source was deleted"));
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
        {"clone.no-relatives", "Parent operation and child operations are not copied.", checkNoRelatives},
    };
}
} // namespace StepHost
