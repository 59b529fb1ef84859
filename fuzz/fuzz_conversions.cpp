/// List texts, table JSON, bool texts and number texts through get, against every type of destination.
///
/// The whole input is the text of the list's one element.

#include "FuzzInput.h"
#include "StepRun.h"
#include "operations/ListGetOperation.h"

#include <utility>

namespace
{
const std::pair<const char *, VarType> destinations[] = {
    {"int", VarType::Int},   {"double", VarType::Double}, {"text", VarType::String},
    {"bool", VarType::Bool}, {"list", VarType::List},     {"table", VarType::Table}};

VariableScope declared()
{
    VariableScope scope;
    for (const auto &[name, type] : destinations)
        scope.declare(name, type);
    return scope;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const VariableScope empty = declared();
    VariableScope scope = empty;
    scope.set("source",
              QVariantList{QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size))});
    ListGetOperation get;
    get.setSourceVar("source");
    get.setIndex("0");
    for (const auto &destination : destinations) {
        get.setTargetVar(destination.first);
        requireRunsLikeReference(get, scope);
    }
    return 0;
}
