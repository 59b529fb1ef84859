#include "StepRun.h"

#include "FuzzInput.h"
#include "ReferenceSteps.h"
#include "operations/ListAddOperation.h"
#include "operations/ListClearOperation.h"
#include "operations/ListDedupOperation.h"
#include "operations/ListGetOperation.h"
#include "operations/ListIntersectOperation.h"
#include "operations/ListMergeOperation.h"
#include "operations/ListRemoveOperation.h"
#include "operations/ListReverseOperation.h"
#include "operations/ListSortOperation.h"
#include "operations/ListSubtractOperation.h"

#include <QMetaProperty>

namespace
{
template<typename Step>
std::unique_ptr<Operation> make()
{
    return std::make_unique<Step>();
}

using StepFactory = std::unique_ptr<Operation> (*)();

const StepFactory factories[] = {make<ListAddOperation>,       make<ListRemoveOperation>,
                                 make<ListGetOperation>,       make<ListClearOperation>,
                                 make<ListSortOperation>,      make<ListMergeOperation>,
                                 make<ListReverseOperation>,   make<ListDedupOperation>,
                                 make<ListIntersectOperation>, make<ListSubtractOperation>};

QStringList &warnings()
{
    static QStringList lines;
    return lines;
}

void keepWarning(QtMsgType, const QMessageLogContext &context, const QString &line)
{
    require(!context.file && !context.function && context.line == 0, "a warning carries a source position");
    warnings().append(line);
}

VariableScope standardScope()
{
    VariableScope scope;
    scope.set("a", QVariantList());
    scope.set("b", QVariantList());
    scope.set("c", QVariantList());
    scope.set("i", 7);
    scope.set("d", 2.5);
    scope.set("s", "text");
    scope.set("t", true);
    scope.declare("table", VarType::Table);
    scope.set("table", QVariantList{QVariantList{1, 2}, QVariantList{3}});
    scope.declare("k", VarType::List);
    scope.set("k", 5);
    scope.set("q", QStringList{"x", "y"});
    scope.set("o", QVariant::fromValue(FuzzInput::object()));
    scope.set("m", QVariantMap{{"x", 1}});
    scope.set("n", QVariant());
    return scope;
}

void requireSameVariables(const VariableScope &scope, const VariableScope &wanted, bool anyOrder)
{
    const QStringList names = wanted.names();
    require(scope.names() == names, "the variables differ from the reference");
    for (const QString &name : names) {
        const QString reference = name.startsWith('$') ? '$' + name : name;
        require(scope.typeOf(reference) == wanted.typeOf(reference), "a run changed a variable's type");
        const QVariant value = scope.get(reference);
        const QVariant wantedValue = wanted.get(reference);
        require(isSameValue(value, wantedValue)
                    || (anyOrder && isSamePermuted(value.toList(), wantedValue.toList())),
                "a variable's value differs from the reference");
    }
}
} // namespace

std::unique_ptr<Operation> newStep(int position)
{
    return factories[static_cast<unsigned>(position) % std::size(factories)]();
}

std::unique_ptr<Operation> newStep(const QByteArray &typeId)
{
    for (const StepFactory factory : factories) {
        std::unique_ptr<Operation> step = factory();
        if (step->typeId() == QLatin1String(typeId))
            return step;
    }
    return nullptr;
}

QVariantMap settingsOf(const Operation &step)
{
    QVariantMap settings;
    const QMetaObject *type = step.metaObject();
    for (int i = type->propertyOffset(); i < type->propertyCount(); ++i)
        settings.insert(type->property(i).name(), type->property(i).read(&step));
    return settings;
}

VariableScope scopeWith(const QVariantList &a, const QVariantList &b)
{
    static const VariableScope standard = standardScope();
    VariableScope scope = standard;
    scope.set("a", a);
    scope.set("b", b);
    return scope;
}

void requireRunsLikeReference(Operation &step, const VariableScope &scope)
{
    const QVariantMap settings = settingsOf(step);
    const ReferenceOutcome expected = referenceOutcome(step.typeId(), settings, scope);

    warnings().clear();
    VariableScope after = scope;
    step.setVariableScope(&after);
    const QtMessageHandler former = qInstallMessageHandler(keepWarning);
    step.doOperation();
    qInstallMessageHandler(former);
    step.setVariableScope(nullptr);

    require(warnings() == expected.warnings, "the warnings differ from the reference");
    require(settingsOf(step) == settings, "a run changed the step's settings");
    VariableScope wanted = scope;
    if (!expected.written.isEmpty())
        wanted.set(expected.written, expected.value);
    requireSameVariables(after, wanted, expected.anyOrder);
}
