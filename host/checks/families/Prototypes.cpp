#include "host/checks/CheckContext.h"
#include "host/checks/CheckSteps.h"
#include "host/running/Breadcrumb.h"
#include "host/values/QuotedText.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QThread>

namespace StepHost
{
namespace
{
void checkNotNull(CheckContext &context)
{
    const QList<Operation *> steps = context.plugin().createPrototypes();
    for (Operation *step : steps)
        context.keep(step);
    if (steps.isEmpty())
        fail(QStringLiteral("createPrototypes() returns an empty list"));
    if (steps.contains(nullptr))
        fail(QStringLiteral("prototype %1 is null").arg(steps.indexOf(nullptr) + 1));
}

void checkFresh(CheckContext &context)
{
    const QList<Operation *> first = context.newSteps();
    const QList<Operation *> second = context.newSteps();
    QSet<const Operation *> known;
    const QList<Operation *> both = first + second;
    for (const Operation *step : both) {
        if (known.contains(step))
            fail(QStringLiteral("two calls of createPrototypes() hand out the same %1; each call has to make "
                                "new ones")
                     .arg(QString::fromUtf8(step->metaObject()->className())));
        known.insert(step);
    }
}

void checkSameSet(CheckContext &context)
{
    const auto classNames = [&context] {
        QStringList names;
        const QList<Operation *> steps = context.newSteps();
        for (const Operation *step : steps)
            names.append(QString::fromUtf8(step->metaObject()->className()));
        return names;
    };
    constexpr int calls = 12;
    const QStringList first = classNames();
    for (int call = 1; call < calls; ++call) {
        const QStringList later = classNames();
        if (first != later)
            fail(QStringLiteral("two calls of createPrototypes() give different steps: %1 and %2")
                     .arg(quoted(first.join(QLatin1Char(' '))), quoted(later.join(QLatin1Char(' ')))));
    }
}

void checkHandedOver(CheckContext &context)
{
    QList<QPointer<Operation>> first;
    const QList<Operation *> steps = context.newSteps();
    for (Operation *step : steps)
        first.append(step);
    context.newSteps();
    if (first.contains(nullptr))
        fail(
            QStringLiteral("the plug-in deleted prototypes that it had handed out; they belong to the host"));
}

void checkNoParent(CheckContext &context)
{
    // Once more, after others.
    context.newSteps();
    context.forEachStep([](const Operation &step) {
        if (step.parent())
            fail(QStringLiteral("the prototype has a parent, a %1; the host has to own it")
                     .arg(QString::fromUtf8(step.parent()->metaObject()->className())));
    });
}

void checkUntouched(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        if (scopeOf(step))
            fail(QStringLiteral("the prototype has a scope; only the host attaches one"));
        if (step.parentOperation())
            fail(QStringLiteral("the prototype has a parent operation"));
        if (step.childCount() != 0)
            fail(QStringLiteral("the prototype has %1 child operations").arg(step.childCount()));
        if (!const_cast<Operation &>(step).children().isEmpty())
            fail(QStringLiteral("the prototype has %1 child operations")
                     .arg(const_cast<Operation &>(step).children().size()));
        if (baseStateOf(step) != 0)
            fail(QStringLiteral("the prototype's base state is %1; only the host sets it")
                     .arg(baseStateOf(step)));
        if (step.thread() != QThread::currentThread())
            fail(QStringLiteral("the prototype belongs to another thread"));
        if (!step.objectName().isEmpty())
            fail(QStringLiteral("the prototype has the object name %1; only the host gives one")
                     .arg(quoted(step.objectName())));
    });
}

void checkOutliveRoot(CheckContext &context)
{
    QList<QPointer<Operation>> steps;
    const QList<Operation *> made = context.newSteps();
    for (Operation *step : made)
        steps.append(step);
    noteCall("the destructor of the root object");
    delete &context.instance();
    for (const QPointer<Operation> &step : qAsConst(steps)) {
        if (!step)
            fail(QStringLiteral(
                "the root object deletes prototypes that it has handed out; they belong to the host"));
        noteCall("a call after the root object was deleted", step.data());
        step->typeId();
        step->toString();
        context.cloneOf(*step);
    }
}

void checkUniqueTypeIds(CheckContext &context)
{
    QHash<QString, QString> known;
    context.forEachStep([&known](const Operation &step) {
        const QString id = step.typeId();
        const QString other = known.value(id.toLower());
        if (other == id)
            fail(QStringLiteral("another step has the type id %1 too").arg(quoted(id)));
        if (!other.isEmpty())
            fail(QStringLiteral("the type id %1 differs from %2 of another step in its case only")
                     .arg(quoted(id), quoted(other)));
        known.insert(id.toLower(), id);
    });
}

void checkTypeIdForm(CheckContext &context)
{
    static const QRegularExpression form(QStringLiteral("\\A[!-~]+\\z"));
    context.forEachStep([](const Operation &step) {
        if (!form.match(step.typeId()).hasMatch())
            fail(QStringLiteral("the type id %1 is not made of visible ASCII characters")
                     .arg(quoted(step.typeId())));
    });
}

void checkClass(CheckContext &context)
{
    QHash<const QMetaObject *, QString> known;
    context.forEachStep([&known](const Operation &step) {
        const QMetaObject *metaObject = step.metaObject();
        if (!metaObject->inherits(&Operation::staticMetaObject))
            fail(QStringLiteral("the class does not derive from this host's Operation"));
        if (metaObject == &Operation::staticMetaObject || known.contains(metaObject))
            fail(QStringLiteral("the class of %1 has no meta-object of its own; it needs Q_OBJECT")
                     .arg(quoted(step.typeId())));
        known.insert(metaObject, step.typeId());
    });
}

void checkCasts(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const char *className = step.metaObject()->className();
        if (step.qt_metacast(className) != static_cast<void *>(&step))
            fail(QStringLiteral("qt_metacast() does not know the class's own name"));
        if (!step.qt_metacast("Operation"))
            fail(QStringLiteral("qt_metacast(\"Operation\") gives null"));
        if (step.qt_metacast("NoSuchClass"))
            fail(QStringLiteral("qt_metacast(\"NoSuchClass\") gives an object"));
    });
}

void checkDisplayNames(CheckContext &context)
{
    QHash<QString, QString> known;
    context.forEachStep([&known](const Operation &step) {
        if (step.typeName().trimmed().isEmpty())
            fail(QStringLiteral("typeName() is empty"));
        const QString shown = step.root() + QLatin1Char('\n') + step.typeName();
        if (known.contains(shown))
            fail(QStringLiteral("%1 has the display name %2 too, in the same category")
                     .arg(known.value(shown), quoted(step.typeName())));
        known.insert(shown, step.typeId());
    });
}

void checkCategory(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        if (step.root().trimmed().isEmpty())
            fail(QStringLiteral("root() is empty; the host would list the step under no category"));
    });
}

QStringList identityOf(const Operation &step)
{
    return {step.root(), step.typeId(), step.typeName(), step.icon()};
}

void expectIdentity(const Operation &step, const QStringList &expected, const char *when)
{
    static const char *const members[] = {"root()", "typeId()", "typeName()", "icon()"};
    const QStringList actual = identityOf(step);
    for (int i = 0; i < actual.size(); ++i) {
        if (actual.at(i) != expected.at(i))
            fail(QStringLiteral("%1 changes from %2 to %3 %4")
                     .arg(QLatin1String(members[i]), quoted(expected.at(i)), quoted(actual.at(i)),
                          QLatin1String(when)));
    }
}

void checkIdentityAndSettings(CheckContext &context)
{
    context.forEachStep([](Operation &step) {
        const QStringList identity = identityOf(step);
        changeSettings(step);
        expectIdentity(step, identity, "when settings change");
        setTexts(step, QString());
        setIntegers(step, -1);
        expectIdentity(step, identity, "when settings change");
    });
}

void checkIdentityAndScope(CheckContext &context)
{
    VariableScope scope;
    fillScope(scope);
    context.forEachStep([&scope](Operation &step) {
        const QStringList identity = identityOf(step);
        step.setVariableScope(&scope);
        expectIdentity(step, identity, "when a scope is attached");
        step.setVariableScope(nullptr);
    });
}

void checkDefaults(CheckContext &context)
{
    QVector<QVariantList> first;
    const QList<Operation *> steps = context.newSteps();
    for (Operation *step : steps) {
        first.append(readSettings(*step));
        changeSettings(*step); // What users do with one set is not to be seen in another.
    }
    int position = 0;
    context.forEachStep([&](const Operation &step) {
        const QVariantList expected = first.value(position++, readSettings(step));
        expectSettings(step, expected, QStringLiteral("in another set of prototypes"));
    });
}
} // namespace

QVector<PluginCheck> prototypeChecks()
{
    return {
        {"prototypes.not-null", "There is at least one prototype, and none is null.", checkNotNull},
        {"prototypes.fresh", "Every call of createPrototypes() makes new objects.", checkFresh},
        {"prototypes.same-set", "Every call of createPrototypes() offers the same steps in the same order.",
         checkSameSet},
        {"prototypes.handed-over", "Prototypes belong to the host; the plug-in does not delete them.",
         checkHandedOver},
        {"prototypes.outlive-root", "Prototypes do without the plug-in's root object.", checkOutliveRoot},
        {"prototypes.no-parent", "Prototypes have no parent that would delete them.", checkNoParent},
        {"prototypes.untouched",
         "Prototypes are as the contract's base makes them: without scope, relatives, name and state.",
         checkUntouched},
        {"prototypes.defaults", "Every new prototype has the same default settings.", checkDefaults},
        {"prototypes.unique-type-ids", "No two steps have the same type id.", checkUniqueTypeIds},
        {"prototypes.type-id-form", "Type ids can be written in files and on command lines.",
         checkTypeIdForm},
        {"prototypes.class", "Every step has a class of its own that derives from Operation.", checkClass},
        {"prototypes.casts", "A step can be cast to its class and to Operation by name.", checkCasts},
        {"prototypes.display-names", "Every step has a display name that tells it from its neighbours.",
         checkDisplayNames},
        {"prototypes.category", "Every step stands in a category.", checkCategory},
        {"prototypes.identity-and-settings", "Category, type, name and icon do not depend on settings.",
         checkIdentityAndSettings},
        {"prototypes.identity-and-scope", "Category, type, name and icon do not depend on the scope.",
         checkIdentityAndScope},
    };
}
} // namespace StepHost
