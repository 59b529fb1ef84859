#include "StepRun.h"

#include "FuzzInput.h"
#include "tests/support/ReferenceSteps.h"
#include "tests/support/StepFamily.h"

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
    const QString difference = differenceFromReference(step, scope);
    require(difference.isEmpty(), difference.toUtf8());
}
