#include "ScriptJson.h"

#include "host/plugins/StepSettings.h"
#include "host/values/ErrorTexts.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/ValueReader.h"
#include "host/values/VarTypes.h"
#include "host/values/VariableName.h"

#include <QMetaEnum>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <type_traits>

namespace StepHost
{
namespace
{
using Members = std::map<QByteArray, CborReader>;

Result<Members, JsonError> readObject(CborReader &at)
{
    if (at.kind() != CborReader::Map)
        return refuseKind(at, ErrorTexts::tr("an object"));
    return at.readMembers();
}

// Reads an object whose keys are all among `known`.
Result<Members, JsonError> readObject(CborReader &at, const QStringList &known)
{
    Result<Members, JsonError> members = readObject(at);
    if (!members)
        return members;
    for (const auto &member : *members) {
        const QString key = textOf(member.first);
        if (!known.contains(key))
            return refuseJson(notAmong(ErrorTexts::tr("key"), key, known));
    }
    return members;
}

// Reads with `read` what stands under `key`. What is not there is empty.
template<typename Read>
auto readMember(const Members &members, const char *key, const Read &read)
    -> std::invoke_result_t<Read, CborReader &>
{
    const auto member = members.find(key);
    if (member == members.end())
        return {};
    CborReader at = member->second;
    auto value = read(at);
    if (!value)
        return failureBelow(QLatin1String(key), value.error());
    return value;
}

// Reads the text under `key`, which has to be there.
Result<QString, JsonError> readMemberText(const Members &members, const char *key)
{
    if (members.count(key) == 0)
        return refuseJson(ErrorTexts::tr("the key \"%1\" is missing").arg(QLatin1String(key)));
    return readMember(members, key, readTextValue);
}

Result<ScriptVariable, JsonError> readVariable(CborReader &at)
{
    const auto members =
        readObject(at, {QStringLiteral("name"), QStringLiteral("type"), QStringLiteral("value")});
    if (!members)
        return failure(members.error());
    const Result<QString, JsonError> name = readMemberText(*members, "name");
    if (!name)
        return failure(name.error());
    const Result<QString, JsonError> typeName = readMemberText(*members, "type");
    if (!typeName)
        return failure(typeName.error());
    const QString nameError = variableNameError(*name);
    if (!nameError.isEmpty())
        return refuseBelow(QStringLiteral("name"), nameError);
    const std::optional<VarType> type = varTypeFromName(*typeName);
    if (!type) {
        return refuseBelow(QStringLiteral("type"),
                           notAmong(ErrorTexts::tr("variable type"), *typeName, declarableTypeNames()));
    }
    if (members->count("value") == 0)
        return ScriptVariable{withoutMark(*name), *type, emptyValueOf(*type)};
    return readMember(*members, "value",
                      [&type](CborReader &value) { return readVariableValue(value, *type); })
        .map([&](const QVariant &value) {
            return ScriptVariable{withoutMark(*name), *type, value};
        });
}

bool isKeyOfEveryStep(const QString &key)
{
    return key == QLatin1String("type") || key == QLatin1String("enabled");
}

QStringList namesOf(const QVector<QMetaProperty> &settings)
{
    QStringList names;
    for (const QMetaProperty &setting : settings)
        names.append(QString::fromUtf8(setting.name()));
    return names;
}

// Gives `value`, which was read at `at`, the property's type when that loses nothing.
bool adaptTo(const QMetaProperty &property, CborReader at, QVariant &value)
{
    const int wanted = property.userType();
    if (wanted == QMetaType::QVariant)
        return true;
    if (value.userType() == wanted) {
        // New steps hold null texts, which records tell from empty ones; those have the typed form.
        if (at.kind() == CborReader::Text && value.toString().isEmpty())
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
        const bool isPlain = at.kind() == CborReader::Integer;
        const Result<QVariant, JsonError> number =
            isPlain ? readVariableValue(at, VarType::Double) : QVariant(value.toDouble());
        value = number.value_or(value);
        return number.has_value();
    }
    if (wanted == QMetaType::LongLong && value.userType() == QMetaType::Int) {
        value = value.toLongLong();
        return true;
    }
    return false;
}

Result<void, JsonError> readSetting(Operation &step, const QMetaProperty &setting, CborReader at)
{
    const CborReader start = at;
    Result<QVariant, JsonError> value = readValue(at);
    if (!value)
        return failure(value.error());
    if (!adaptTo(setting, start, *value) || !setting.write(&step, *value)) {
        return refuseJson(
            ErrorTexts::tr("this is %1, the property \"%2\" takes a value of type %3")
                .arg(kindName(start), QString::fromUtf8(setting.name()), QLatin1String(setting.typeName())));
    }
    return {};
}

Result<void, JsonError> readSettings(Operation &step, const Members &members)
{
    const QVector<QMetaProperty> settings = scriptSettingsOf(step);
    const QStringList names = namesOf(settings);
    for (const auto &member : members) {
        const QString key = textOf(member.first);
        if (isKeyOfEveryStep(key))
            continue;
        const int index = names.lastIndexOf(key); // Of one that is declared anew the last one counts.
        if (index < 0)
            return refuseJson(notAmong(ErrorTexts::tr("property"), key, names));
        const Result<void, JsonError> read = readSetting(step, settings.at(index), member.second);
        if (!read)
            return failureBelow(key, read.error());
    }
    return {};
}

Result<bool, JsonError> readFlag(CborReader &at)
{
    if (at.kind() != CborReader::Bool)
        return refuseKind(at, ErrorTexts::tr("true or false"));
    return at.readBool();
}

Result<ScriptStep, JsonError> readStep(CborReader &at, const StepCatalogue &catalogue, int number,
                                       const StepReading &reading)
{
    const Result<Members, JsonError> members = readObject(at);
    if (!members)
        return failure(members.error());
    const Result<QString, JsonError> typeId = readMemberText(*members, "type");
    if (!typeId)
        return failure(typeId.error());
    const QString typeKey = QStringLiteral("type");
    if (!catalogue.prototype(*typeId))
        return refuseBelow(typeKey, catalogue.noSuchType(*typeId));
    if (reading)
        reading(number, *typeId);
    ScriptStep step;
    step.operation.reset(catalogue.create(*typeId, nullptr));
    if (!step.operation) {
        return refuseBelow(typeKey,
                           ErrorTexts::tr("the step cannot be created: its prototype gives no clone"));
    }
    const Result<bool, JsonError> enabled = readMember(*members, "enabled", readFlag);
    if (!enabled)
        return failure(enabled.error());
    step.enabled = *enabled || members->count("enabled") == 0;
    const Result<void, JsonError> settings = readSettings(*step.operation, *members);
    if (!settings)
        return failure(settings.error());
    return step;
}

// Reads an array with `readItem`.
template<typename Item, typename ReadItem>
Result<std::vector<Item>, JsonError> readArray(CborReader &at, const ReadItem &readItem)
{
    if (at.kind() != CborReader::Array)
        return refuseKind(at, ErrorTexts::tr("an array"));
    std::vector<Item> items;
    const int size = at.enter();
    items.reserve(std::size_t(size));
    for (int i = 0; i < size; ++i) {
        Result<Item, JsonError> item = readItem(at);
        if (!item)
            return failureBelow(QString::number(i), item.error());
        items.push_back(std::move(*item));
    }
    return items;
}

Result<Script, JsonError> readDocument(const QByteArray &text, const StepCatalogue &catalogue,
                                       const StepReading &reading)
{
    const Result<QByteArray, JsonError> cbor = cborFromJson(text);
    if (!cbor)
        return failure(cbor.error());
    CborReader at(*cbor);
    const auto members = readObject(at, {QStringLiteral("variables"), QStringLiteral("steps")});
    if (!members)
        return failure(members.error());
    auto variables = readMember(*members, "variables", readVariables);
    if (!variables)
        return failure(variables.error());
    int number = 0;
    auto steps = readMember(*members, "steps", [&](CborReader &list) {
        return readArray<ScriptStep>(
            list, [&](CborReader &step) { return readStep(step, catalogue, ++number, reading); });
    });
    if (!steps)
        return failure(steps.error());
    return Script{std::move(*variables), std::move(*steps)};
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
        const Result<void> written = writeSetting(json.key(name), *step.operation, setting);
        if (!written)
            return failure(ErrorTexts::tr("the property \"%1\" %2").arg(name, written.error()));
    }
    json.close();
    return {};
}
} // namespace

QVector<QMetaProperty> scriptSettingsOf(const Operation &step)
{
    QVector<QMetaProperty> settings = settingsOf(step);
    const auto isOutOfReach = [](const QMetaProperty &setting) {
        return !setting.isWritable() || isKeyOfEveryStep(QString::fromUtf8(setting.name()));
    };
    settings.erase(std::remove_if(settings.begin(), settings.end(), isOutOfReach), settings.end());
    return settings;
}

Result<std::vector<ScriptVariable>, JsonError> readVariables(CborReader &at)
{
    std::set<QString> names; // By order: names can be chosen to have one hash value.
    return readArray<ScriptVariable>(at, [&names](CborReader &item) {
        Result<ScriptVariable, JsonError> variable = readVariable(item);
        if (variable && !names.insert(variable->name).second) {
            variable =
                refuseJson(ErrorTexts::tr("the variable %1 is declared already").arg(quoted(variable->name)));
        }
        return variable;
    });
}

Result<Script> readScript(const QByteArray &json, const StepCatalogue &catalogue, const StepReading &reading)
{
    return readDocument(json, catalogue, reading).map_error([](const JsonError &error) {
        return error.toString();
    });
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
            return failure(ErrorTexts::tr("the value of %1 %2").arg(quoted(variable.name), written.error()));
        json.close();
    }
    json.close();
    return {};
}

Result<void> writeSetting(JsonWriter &json, const Operation &step, const QMetaProperty &setting)
{
    QVariant value = setting.read(&step);
    if (setting.isEnumType())
        value = QString::fromLatin1(setting.enumerator().valueToKeys(value.toInt()));
    if (!isEmptyText(value))
        return writeValue(json, value);
    json.raw(R"({"$QString": ""})");
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
