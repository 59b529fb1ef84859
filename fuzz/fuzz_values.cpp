/// Value texts and index texts through add and remove, compared with the reference.
///
/// The input is a value text, an index text and the elements of the list.

#include "FuzzInput.h"
#include "StepRun.h"
#include "operations/ListAddOperation.h"
#include "operations/ListRemoveOperation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QString value = input.text();
    const QString index = input.text();
    const VariableScope scope = scopeWith(input.elements(), QVariantList{1.0, "x"});

    ListAddOperation add;
    add.setTargetVar("a");
    add.setValue(value);
    add.setIndex(index);
    requireRunsLikeReference(add, scope);

    ListRemoveOperation remove;
    remove.setTargetVar("$a");
    remove.setValue(value);
    remove.setIndex(index);
    requireRunsLikeReference(remove, scope);
    remove.setMode(1);
    requireRunsLikeReference(remove, scope);
    return 0;
}
