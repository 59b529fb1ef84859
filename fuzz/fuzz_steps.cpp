/// Any settings and lists through each of the ten steps, compared with the reference.
///
/// The input is a type id, the step's settings in the order of its properties, the elements of list `a`, a
/// line "]" and the elements of list `b`.

#include "FuzzInput.h"
#include "StepRun.h"

#include <QMetaProperty>

namespace
{
QVariant setting(int type, FuzzInput &input)
{
    if (type == QMetaType::Int)
        return static_cast<int>(input.line().toLongLong());
    if (type == QMetaType::Bool)
        return input.line() != "0";
    return input.text();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QByteArray typeId = input.line();
    std::unique_ptr<Operation> step = cloneOf(typeId);
    if (!step)
        step = cloneOf(typeId.isEmpty() ? 0 : typeId.front());
    const QMetaObject *type = step->metaObject();
    for (int i = type->propertyOffset(); i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        const QVariant value = setting(property.userType(), input);
        require(property.write(step.get(), value), "a property refuses a value of its type");
        require(property.read(step.get()) == value, "a property does not keep its value");
    }
    const QVariantList listA = input.elements();
    const QVariantList listB = input.elements();
    requireRunsLikeReference(*step, scopeWith(listA, listB));
    return 0;
}
