#include "TrialSettings.h"

#include "SettingValues.h"
#include "host/values/VarTypes.h"

#include <limits>

namespace StepHost
{
namespace
{
QVariantList textsOf(std::initializer_list<const char *> texts)
{
    QVariantList values;
    for (const char *text : texts)
        values.append(QString::fromUtf8(text));
    return values;
}

TrialValues namesOfKind(VariableKind kind)
{
    const QVariantList lists = textsOf({"items", "more", "others", "$items"});
    const QVariantList scalars =
        textsOf({"text", "number", "real", "flag", "word", "counter", "share", "state", "$text"});
    const QVariantList tables = textsOf({"table"});
    const QVariantList none = textsOf({"", "missing", "odd", "$", "a b"});
    switch (kind) {
    case VariableKind::List:
        return {lists, scalars + tables + none, {}};
    case VariableKind::Scalar:
        return {scalars, lists + tables + none, {}};
    case VariableKind::Any:
        break;
    }
    return {lists + scalars + tables, none, {}};
}

QVariantList literalsOf(VarType type)
{
    switch (type) {
    case VarType::Int:
        return textsOf({"1", "2", "0", "$number", "number"});
    case VarType::Double:
        return textsOf({"1.5", "0.5", "2", "$real", "real"});
    case VarType::String:
        return textsOf({"a", "b", ",", "$text", "text"});
    case VarType::Bool:
        return textsOf({"true", "false", "$flag", "flag"});
    case VarType::List:
        return textsOf({"$items", "items", "[1, 2]", "$more"});
    case VarType::Table:
        return textsOf({"$table", "table", "[[1, 2], [3, 4]]"});
    case VarType::Undeclared:
        break;
    }
    return {};
}

TrialValues references(const SettingSchema &schema)
{
    QVector<VarType> types = schema.valueTypes;
    if (types.isEmpty() && schema.literalType != VarType::Undeclared)
        types = {schema.literalType};
    if (types.isEmpty())
        types = declarableTypes();
    TrialValues values;
    for (const VarType type : qAsConst(types))
        values.fitting += literalsOf(type);
    values.other = textsOf({"", "$items.Count", "$items.First", "$missing", "$missing.Rows", "99999999999",
                            "-1", "$", "$$items", "a text", "$items", "$table", "$number", "$text", "b"});
    return values;
}

TrialValues plainTexts()
{
    return {textsOf({"a",          ",",   "1",          " ",     "items",  "text", "$items", "$text",
                     "b",          "0",   "2",          "true",  "[1, 2]", ".*",   "%1",     "2020-01-31",
                     "yyyy-MM-dd", "a;b", "{\"a\": 1}", "x = 1", "1.5",    "utf-8"}),
            textsOf({"", "\n", "missing", "-1", "99999999999", "(", "$missing"}),
            {}};
}

QVariantList choices(const QMetaProperty &setting, const SettingSchema &schema)
{
    QVariantList values;
    for (int i = 0; i < schema.choices.size(); ++i)
        values.append(setting.userType() == QMetaType::QString ? QVariant(schema.choices.at(i))
                                                               : QVariant(i));
    return values;
}

TrialValues textValues(const SettingSchema &schema)
{
    switch (schema.editor) {
    case EditorKind::VariableName:
        return namesOfKind(schema.variableKind);
    case EditorKind::VariableReference:
        return references(schema);
    case EditorKind::IntegerOrVariable:
        return {textsOf({"1", "0", "2", "$number", "number", "3"}),
                textsOf({"", "-1", "99", "a", "$text", "$items", "$missing", "-2147483648", "99999999999"}),
                {}};
    case EditorKind::Choice:
    case EditorKind::Default:
        break;
    }
    return plainTexts();
}
} // namespace

bool namesList(const SettingSchema &setting)
{
    return setting.editor == EditorKind::VariableName && setting.variableKind == VariableKind::List;
}

TrialValues trialValues(const QMetaProperty &setting, const SettingSchema &schema, const QVariant &byDefault)
{
    TrialValues values;
    if (schema.editor == EditorKind::Choice) {
        values.branches = choices(setting, schema);
        values.fitting = values.branches;
    } else if (setting.isEnumType() || setting.userType() == QMetaType::Bool) {
        values.branches = storableValues(setting);
        values.fitting = values.branches;
    } else if (setting.userType() == QMetaType::QString) {
        values = textValues(schema);
    } else if (setting.userType() == QMetaType::Int) {
        values.fitting = {byDefault, 1, 0, 2, 3, 5, 10};
        // Not the largest one: a step may be told by it how much to make.
        values.other = {-1, 100, std::numeric_limits<int>::min()};
    } else {
        values.fitting = {byDefault};
        values.other = storableValues(setting);
    }
    if (values.fitting.isEmpty())
        values.fitting = {byDefault};
    return values;
}
} // namespace StepHost
