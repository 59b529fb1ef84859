/// Any bytes as a step's record, then everything that a host does with a loaded step.
///
/// The first byte chooses the step and the second what the variables hold that the step names; the rest is
/// the record.

#include "FuzzInput.h"
#include "StepRun.h"
#include "tests/support/StepFamily.h"

#include <QDataStream>

namespace
{
QByteArray recordOf(const Operation &step)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    step.saveOperation(stream);
    require(stream.status() == QDataStream::Ok, "a step does not save");
    return record;
}

// The variables that the step's settings name, declared with types that follow from the seed.
void declareNamed(VariableScope &scope, const Operation &step, int seed)
{
    const QVariantMap settings = settingsOf(step);
    for (const QVariant &name : settings) {
        scope.declare(name.toString(), seed % 3 == 0 ? VarType(1 + seed % 6) : VarType::List);
        if (scope.typeOf(name.toString()) == VarType::List)
            scope.set(name.toString(), QVariantList{seed, name, "", 1.5, true});
        seed /= 3;
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray record =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data) + 2, static_cast<int>(size) - 2);
    const std::unique_ptr<Operation> step = cloneOf(data[0]);
    QDataStream stream(record);
    step->loadOperation(stream);

    const QByteArray saved = recordOf(*step);
    // A bool may be any byte in a record and is written as 0 or 1; all other fields have one form.
    if (stream.status() == QDataStream::Ok && step->typeId() != "list.sort")
        require(record.startsWith(saved), "a step saves another record than it has loaded");

    const std::unique_ptr<Operation> copy(step->clone(nullptr));
    require(recordOf(*copy) == saved, "a clone saves another record");
    require(copy->toString() == step->toString(), "a clone has another line");
    require(copy->description() == step->description(), "a clone has another description");

    const std::unique_ptr<Operation> reloaded = cloneOf(data[0]);
    QDataStream savedStream(saved);
    reloaded->loadOperation(savedStream);
    require(savedStream.status() == QDataStream::Ok && savedStream.atEnd(), "a saved record does not load");
    require(recordOf(*reloaded) == saved, "a saved record loads as another step");

    VariableScope scope = scopeWith(QVariantList{1, "x"}, QVariantList{"x"});
    declareNamed(scope, *step, data[1]);
    requireRunsLikeReference(*step, scope);
    return 0;
}
