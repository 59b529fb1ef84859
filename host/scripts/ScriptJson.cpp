#include "ScriptJson.h"

#include "ScriptTree.h"
#include "host/plugins/StepSettings.h"
#include "host/values/JsonTree.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

#include <QMetaEnum>
#include <QScopeGuard>

#include <set>

#include <algorithm>

namespace StepHost
{
namespace
{
bool refuseChoice(JsonError &error, const char *what, const QString &name, const QStringList &choices)
{
    return refuseJson(error, notAmong(what, name, choices));
}

bool checkKeys(const Json &object, const QStringList &known, JsonError &error)
{
    if (!object.is_object())
        return refuseKind(error, object, "an object");
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = textOf(it.key());
        if (!known.contains(key))
            return refuseChoice(error, "key", key, known);
    }
    return true;
}

// The member `key` of `object`, which has to be there.
const Json *requireMember(const Json &object, const char *key, JsonError &error)
{
    const auto member = object.find(key);
    if (member != object.end())
        return &*member;
    refuseJson(error, QStringLiteral("the key \"%1\" is missing").arg(QLatin1String(key)));
    return nullptr;
}

bool readMemberText(const Json &object, const char *key, QString &text, JsonError &error)
{
    const Json *member = requireMember(object, key, error);
    return member && (readTextValue(*member, text, error) || refuseBelow(error, QLatin1String(key)));
}

bool readVariable(const Json &json, ScriptVariable &variable, JsonError &error)
{
    QString name;
    QString typeName;
    if (!checkKeys(json, {QStringLiteral("name"), QStringLiteral("type"), QStringLiteral("value")}, error)
        || !readMemberText(json, "name", name, error) || !readMemberText(json, "type", typeName, error))
        return false;
    const QString nameError = variableNameError(name);
    if (!nameError.isEmpty()) {
        refuseJson(error, nameError);
        return refuseBelow(error, QStringLiteral("name"));
    }
    variable.name = withoutMark(name);
    const std::optional<VarType> type = varTypeFromName(typeName);
    if (!type) {
        refuseChoice(error, "variable type", typeName, declarableTypeNames());
        return refuseBelow(error, QStringLiteral("type"));
    }
    variable.type = *type;
    const auto value = json.find("value");
    if (value == json.end()) {
        variable.value = emptyValueOf(variable.type);
        return true;
    }
    return readVariableValue(*value, variable.type, variable.value, error)
        || refuseBelow(error, QStringLiteral("value"));
}

bool isKeyOfEveryStep(const QString &key)
{
    return key == QLatin1String("type") || key == QLatin1String("enabled");
}

// The settings of a step that a script can give.
QVector<QMetaProperty> scriptSettingsOf(const Operation &step)
{
    QVector<QMetaProperty> settings = settingsOf(step);
    const auto isOutOfReach = [](const QMetaProperty &setting) {
        return !setting.isWritable() || isKeyOfEveryStep(QString::fromUtf8(setting.name()));
    };
    settings.erase(std::remove_if(settings.begin(), settings.end(), isOutOfReach), settings.end());
    return settings;
}

QStringList namesOf(const QVector<QMetaProperty> &settings)
{
    QStringList names;
    for (const QMetaProperty &setting : settings)
        names.append(QString::fromUtf8(setting.name()));
    return names;
}

// Gives `value` the property's type when that loses nothing.
bool adaptTo(const QMetaProperty &property, const Json &json, QVariant &value)
{
    const int wanted = property.userType();
    if (wanted == QMetaType::QVariant)
        return true;
    if (value.userType() == wanted) {
        // New steps hold null texts, which records tell from empty ones; those have the typed form.
        if (json.is_string() && value.toString().isEmpty())
            value = QString();
        return true;
    }
    if (property.isEnumType()) {
        bool isKnown = value.userType() == QMetaType::Int;
        if (value.userType() == QMetaType::QString)
            value = property.enumerator().keysToValue(value.toString().toUtf8().constData(), &isKnown);
        return isKnown;
    }
    const bool isInteger = hasShapeOf(value, VarType::Int);
    if (wanted == QMetaType::Double && isInteger) {
        JsonError notExact;
        if (json.is_number())
            return readVariableValue(json, VarType::Double, value, notExact);
        value = value.toDouble();
        return true;
    }
    if (wanted == QMetaType::LongLong && value.userType() == QMetaType::Int) {
        value = value.toLongLong();
        return true;
    }
    return false;
}

bool readSetting(Operation &step, const QMetaProperty &setting, const Json &json, JsonError &error)
{
    QVariant value;
    if (!readValue(json, value, error))
        return false;
    if (!adaptTo(setting, json, value) || !setting.write(&step, value)) {
        return refuseJson(
            error,
            QStringLiteral("this is %1, the property \"%2\" takes a value of type %3")
                .arg(kindName(json), QString::fromUtf8(setting.name()), QLatin1String(setting.typeName())));
    }
    return true;
}

bool readStep(const Json &json, ScriptStep &step, const StepCatalogue &catalogue, JsonError &error)
{
    if (!json.is_object())
        return refuseKind(error, json, "an object");
    QString typeId;
    if (!readMemberText(json, "type", typeId, error))
        return false;
    if (!catalogue.prototype(typeId)) {
        refuseChoice(error, "step type", typeId, catalogue.typeIds());
        return refuseBelow(error, QStringLiteral("type"));
    }
    step.operation.reset(catalogue.create(typeId, nullptr));
    if (!step.operation) {
        refuseJson(error, QStringLiteral("the step cannot be created: its prototype gives no clone"));
        return refuseBelow(error, QStringLiteral("type"));
    }
    const auto enabled = json.find("enabled");
    if (enabled != json.end() && !enabled->is_boolean()) {
        refuseKind(error, *enabled, "true or false");
        return refuseBelow(error, QStringLiteral("enabled"));
    }
    step.enabled = enabled == json.end() || enabled->get<bool>();
    const QVector<QMetaProperty> settings = scriptSettingsOf(*step.operation);
    const QStringList names = namesOf(settings);
    for (auto it = json.begin(); it != json.end(); ++it) {
        const QString key = textOf(it.key());
        if (isKeyOfEveryStep(key))
            continue;
        const int index = names.lastIndexOf(key); // Of one that is declared anew the last one counts.
        if (index < 0)
            return refuseChoice(error, "property", key, names);
        if (!readSetting(*step.operation, settings.at(index), *it, error))
            return refuseBelow(error, key);
    }
    return true;
}

bool readSteps(const Json &json, Script &script, const StepCatalogue &catalogue, JsonError &error)
{
    if (!json.is_array())
        return refuseKind(error, json, "an array");
    for (std::size_t i = 0; i < json.size(); ++i) {
        ScriptStep step;
        if (!readStep(json[i], step, catalogue, error))
            return refuseBelow(error, QString::number(i));
        script.steps.push_back(std::move(step));
    }
    return true;
}

bool readDocument(const QByteArray &text, Script &script, const StepCatalogue &catalogue, JsonError &error)
{
    Json document;
    const auto cleanup = qScopeGuard([&document] { takeApart(document); });
    if (!parseJson(text, document, error)
        || !checkKeys(document, {QStringLiteral("variables"), QStringLiteral("steps")}, error))
        return false;
    const auto variables = document.find("variables");
    if (variables != document.end() && !readVariables(*variables, script, error))
        return refuseBelow(error, QStringLiteral("variables"));
    const auto steps = document.find("steps");
    if (steps != document.end() && !readSteps(*steps, script, catalogue, error))
        return refuseBelow(error, QStringLiteral("steps"));
    return true;
}

// Whether it is a text that is empty, and not null.
bool isEmptyText(const QVariant &value)
{
    const QString text = value.userType() == QMetaType::QString ? value.toString() : QString();
    return text.isEmpty() && !text.isNull();
}

Result<void> writeStep(JsonWriter &json, const ScriptStep &step)
{
    json.openObject(JsonWriter::InLine).key("type");
    writeText(json, step.operation->typeId());
    if (!step.enabled)
        json.key("enabled").raw("false");
    const QVector<QMetaProperty> settings = scriptSettingsOf(*step.operation);
    for (const QMetaProperty &setting : settings) {
        const QString name = QString::fromUtf8(setting.name());
        QVariant value = setting.read(step.operation.get());
        if (setting.isEnumType())
            value = QString::fromLatin1(setting.enumerator().valueToKeys(value.toInt()));
        json.key(name);
        if (isEmptyText(value)) {
            json.raw(R"({"$QString": ""})");
            continue;
        }
        const Result<void> written = writeValue(json, value);
        if (!written)
            return failure(QStringLiteral("the property \"%1\" %2").arg(name, written.error()));
    }
    json.close();
    return {};
}
} // namespace

bool readVariables(const Json &json, Script &script, JsonError &error)
{
    if (!json.is_array())
        return refuseKind(error, json, "an array");
    std::set<QString> names; // By order: names can be chosen to have one hash value.
    for (std::size_t i = 0; i < json.size(); ++i) {
        ScriptVariable variable;
        if (!readVariable(json[i], variable, error))
            return refuseBelow(error, QString::number(i));
        if (!names.insert(variable.name).second) {
            refuseJson(error,
                       QStringLiteral("the variable %1 is declared already").arg(quoted(variable.name)));
            return refuseBelow(error, QString::number(i));
        }
        script.variables.push_back(variable);
    }
    return true;
}

Result<Script> readScript(const QByteArray &json, const StepCatalogue &catalogue)
{
    Script script;
    JsonError error;
    if (!readDocument(json, script, catalogue, error))
        return failure(error.toString());
    return script;
}

Result<void> writeVariables(JsonWriter &json, const std::vector<ScriptVariable> &variables)
{
    json.openArray();
    for (const ScriptVariable &variable : variables) {
        json.openObject(JsonWriter::InLine).key("name");
        // A script cannot declare a name that begins with "$"; with the mark in front it says so.
        writeText(json, hasMark(variable.name) ? referenceTo(variable.name) : variable.name);
        json.key("type").text(varTypeName(variable.type));
        const Result<void> written = writeVariableValue(json.key("value"), variable.value, variable.type);
        if (!written)
            return failure(QStringLiteral("the value of %1 %2").arg(quoted(variable.name), written.error()));
        json.close();
    }
    json.close();
    return {};
}

Result<QByteArray> writeScript(const Script &script)
{
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    Result<void> written = writeVariables(json.key("variables"), script.variables);
    json.key("steps").openArray();
    for (std::size_t i = 0; written && i < script.steps.size(); ++i)
        written = writeStep(json, script.steps[i]);
    if (!written)
        return failure(written.error());
    json.close().close();
    return bytes + '\n';
}
} // namespace StepHost
