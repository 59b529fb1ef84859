#include "StepRun.h"

#include "FuzzInput.h"
#include "ReferenceSteps.h"
#include "tests/support/StepFamily.h"
#include "tests/support/WarningLog.h"

namespace
{
const std::vector<StepPointer> &prototypes()
{
    static const std::vector<StepPointer> steps = newStepOfEachKind();
    return steps;
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

std::unique_ptr<Operation> cloneOf(int position)
{
    const auto place = static_cast<unsigned>(position) % prototypes().size();
    return StepPointer(prototypes()[place]->clone(nullptr));
}

std::unique_ptr<Operation> cloneOf(const QByteArray &typeId)
{
    for (const StepPointer &prototype : prototypes()) {
        if (prototype->typeId() == QLatin1String(typeId))
            return StepPointer(prototype->clone(nullptr));
    }
    return nullptr;
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

    VariableScope after = scope;
    step.setVariableScope(&after);
    const WarningLog log;
    step.doOperation();
    step.setVariableScope(nullptr);

    require(log.take() == expected.warnings, "the warnings differ from the reference");
    require(settingsOf(step) == settings, "a run changed the step's settings");
    VariableScope wanted = scope;
    if (!expected.written.isEmpty())
        wanted.set(expected.written, expected.value);
    requireSameVariables(after, wanted, expected.anyOrder);
}
