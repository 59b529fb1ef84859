#include "VariableInput.h"

#include "host/files/ValueImport.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"
#include "host/values/ValueReader.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

namespace StepHost
{
namespace
{
Result<QVariant> valueForDeclared(const QString &text, VarType type)
{
    if (type == VarType::String)
        return text;
    const Result<QByteArray, JsonError> cbor = cborFromJson(text.toUtf8());
    if (!cbor && !cbor.error().isJson) {
        return failure(ErrorTexts::tr("%1 is no JSON value; a variable of type %2 takes %3")
                           .arg(quoted(text), varTypeName(type), expectedForm(type)));
    }
    if (!cbor)
        return failure(cbor.error().toString());
    CborReader at(*cbor);
    return readVariableValue(at, type).map_error([](const JsonError &error) { return error.toString(); });
}

Result<QVariant> valueForNew(const QString &text)
{
    const Result<QByteArray, JsonError> cbor = cborFromJson(text.toUtf8());
    if (!cbor && !cbor.error().isJson)
        return text;
    if (!cbor)
        return failure(cbor.error().toString());
    CborReader at(*cbor);
    const Result<QVariant, JsonError> value = readValue(at);
    if (!value)
        return failure(value.error().toString());
    if (typeOfValue(*value) == VarType::Undeclared)
        return failure(
            ErrorTexts::tr("%1 gives a new variable no type; declare it in the script").arg(quoted(text)));
    return *value;
}
} // namespace

Result<void> assignText(Script &script, const QString &name, const QString &text)
{
    const QString nameError = variableNameError(name);
    if (!nameError.isEmpty())
        return failure(nameError);
    ScriptVariable *declared = script.findVariable(name);
    const Result<QVariant> value = declared ? valueForDeclared(text, declared->type) : valueForNew(text);
    if (!value)
        return failure(value.error());
    if (declared)
        declared->value = *value;
    else
        script.variables.push_back({withoutMark(name), typeOfValue(*value), *value});
    return {};
}

Result<void> assignList(Script &script, const QString &name, const QVariantList &list)
{
    const QString nameError = variableNameError(name);
    if (!nameError.isEmpty())
        return failure(nameError);
    ScriptVariable *declared = script.findVariable(name);
    if (!declared) {
        script.variables.push_back({withoutMark(name), VarType::List, list});
        return {};
    }
    if (declared->type != VarType::List) {
        return failure(ErrorTexts::tr("the script declares %1 with the type %2, not as a list")
                           .arg(quoted(declared->name), varTypeName(declared->type)));
    }
    declared->value = list;
    return {};
}

Result<void> assignFile(Script &script, const QString &name, const QString &fileName, const QString &options)
{
    ScriptVariable *declared = script.findVariable(name);
    const QVariantList present = declared ? declared->value.toList() : QVariantList();
    // Lines are no rows, unless somebody says so.
    if (declared && declared->type == VarType::Table && (holdsRows(fileName) || !options.isEmpty()))
        return importFile(fileName, VarType::Table, options, present).map([&](const QVariantList &rows) {
            declared->value = rows;
        });
    const Result<QVariantList> list = importFile(fileName, VarType::List, options, present);
    if (!list)
        return failure(list.error());
    return assignList(script, name, *list);
}
} // namespace StepHost
