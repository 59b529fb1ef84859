#include "VariableInput.h"

#include "host/values/JsonTree.h"
#include "host/values/QuotedText.h"
#include "host/values/ValueFile.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

namespace StepHost
{
namespace
{
QString valueForDeclared(const QString &text, VarType type, QVariant &value)
{
    if (type == VarType::String) {
        value = text;
        return QString();
    }
    Json json;
    JsonError error;
    if (!parseJson(text.toUtf8(), json, error)) {
        if (error.isJson)
            return error.toString();
        return QStringLiteral("%1 is no JSON value; a variable of type %2 takes %3")
            .arg(quoted(text), varTypeName(type), expectedForm(type));
    }
    return readVariableValue(json, type, value, error) ? QString() : error.toString();
}

QString valueForNew(const QString &text, ScriptVariable &variable)
{
    Json json;
    JsonError error;
    if (parseJson(text.toUtf8(), json, error)) {
        if (!readValue(json, variable.value, error))
            return error.toString();
    } else if (error.isJson) {
        return error.toString();
    } else {
        variable.value = text;
    }
    variable.type = typeOfValue(variable.value);
    if (variable.type == VarType::Undeclared)
        return QStringLiteral("%1 gives a new variable no type; declare it in the script").arg(quoted(text));
    return QString();
}
} // namespace

QString assignText(Script &script, const QString &name, const QString &text)
{
    QString error = variableNameError(name);
    if (!error.isEmpty())
        return error;
    if (ScriptVariable *declared = script.findVariable(name)) {
        QVariant value;
        error = valueForDeclared(text, declared->type, value);
        if (error.isEmpty())
            declared->value = value;
        return error;
    }
    ScriptVariable added;
    added.name = withoutMark(name);
    error = valueForNew(text, added);
    if (error.isEmpty())
        script.variables.push_back(added);
    return error;
}

QString assignList(Script &script, const QString &name, const QVariantList &list)
{
    const QString error = variableNameError(name);
    if (!error.isEmpty())
        return error;
    ScriptVariable *declared = script.findVariable(name);
    if (!declared) {
        script.variables.push_back({withoutMark(name), VarType::List, list});
        return QString();
    }
    if (declared->type != VarType::List) {
        return QStringLiteral("the script declares %1 with the type %2, not as a list")
            .arg(quoted(declared->name), varTypeName(declared->type));
    }
    declared->value = list;
    return QString();
}

Result<void> assignFile(Script &script, const QString &name, const QString &fileName)
{
    ScriptVariable *declared = script.findVariable(name);
    const bool isCsv = ValueFile::formOf(fileName) == ValueFile::Form::Csv;
    if (isCsv && declared && declared->type == VarType::Table)
        return ValueFile::readTable(fileName).map([&](const QVariantList &rows) { declared->value = rows; });
    const Result<QVariantList> list = ValueFile::readList(fileName);
    const QString error = list ? assignList(script, name, *list) : list.error();
    return error.isEmpty() ? Result<void>() : failure(error);
}
} // namespace StepHost
