#include "PaletteReport.h"

#include "EditorSchema.h"
#include "Palette.h"
#include "host/values/JsonValue.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"

#include <QMetaProperty>
#include <QRegularExpression>

#include <nlohmann/json.hpp>

namespace StepHost
{
namespace
{
using Json = nlohmann::ordered_json;

QVector<PaletteEntry> orderedSteps(const StepCatalogue &catalogue)
{
    QVector<PaletteSource> sources;
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins())
        sources.append({plugin->manifest(), plugin->prototypes()});
    return paletteOrder(sources);
}

QByteArray defaultAsJson(const Operation &prototype, const SettingSchema &setting)
{
    const QVariant value = prototype.property(setting.property.toUtf8().constData());
    QByteArray json;
    return appendAsJson(json, value).isEmpty() ? json : QByteArray("null");
}

QString typeName(const SettingSchema &setting)
{
    return QString::fromLatin1(QMetaType::typeName(setting.type));
}

QStringList valueTypeWords(const SettingSchema &setting)
{
    QStringList words;
    for (const VarType type : setting.valueTypes)
        words.append(varTypeName(type));
    return words;
}

// The editor and what the class info says about it, such as "COMBO 0 = by index, 1 = by value".
QString editorText(const SettingSchema &setting)
{
    QStringList parts;
    switch (setting.editor) {
    case EditorKind::Default:
        return QStringLiteral("default editor");
    case EditorKind::VariableName:
        parts.append(variableKindWord(setting.variableKind));
        break;
    case EditorKind::VariableReference:
        if (setting.literalType != VarType::Undeclared)
            parts.append(varTypeName(setting.literalType));
        parts.append(valueTypeWords(setting).join(QLatin1String(", ")));
        break;
    case EditorKind::Choice:
        for (int i = 0; i < setting.choices.size(); ++i)
            parts.append(QStringLiteral("%1 = %2").arg(i).arg(inOneLine(setting.choices.at(i))));
        break;
    case EditorKind::IntegerOrVariable:
        break;
    }
    parts.removeAll(QString());
    const QString detail = parts.join(QLatin1String(", "));
    return detail.isEmpty() ? editorWord(setting.editor)
                            : editorWord(setting.editor) + QLatin1Char(' ') + detail;
}

QString ruleText(const SettingSchema &setting)
{
    return setting.showWhen
        ? QStringLiteral("%1 = %2").arg(setting.showWhen->property).arg(setting.showWhen->value)
        : QString();
}

Json toJson(const QString &text)
{
    return text.toStdString();
}

Json toJson(const QStringList &texts)
{
    Json json = Json::array();
    for (const QString &text : texts)
        json.push_back(toJson(text));
    return json;
}

Json settingJson(const Operation &prototype, const SettingSchema &setting)
{
    Json json;
    json["property"] = toJson(setting.property);
    json["type"] = toJson(typeName(setting));
    json["label"] = toJson(setting.label);
    json["editor"] = setting.editor == EditorKind::Default ? Json() : toJson(editorWord(setting.editor));
    if (setting.variableKind != VariableKind::Any)
        json["variableKind"] = toJson(variableKindWord(setting.variableKind));
    if (setting.literalType != VarType::Undeclared)
        json["literalType"] = toJson(varTypeName(setting.literalType));
    if (!setting.valueTypes.isEmpty())
        json["valueTypes"] = toJson(valueTypeWords(setting));
    if (!setting.choices.isEmpty())
        json["choices"] = toJson(setting.choices);
    if (setting.showWhen)
        json["showWhen"] = {{"property", toJson(setting.showWhen->property)},
                            {"value", setting.showWhen->value}};
    json["default"] = Json::parse(defaultAsJson(prototype, setting).toStdString());
    return json;
}

Json stepJson(const Operation &prototype, const PluginManifest &manifest)
{
    Json json;
    json["category"] = toJson(prototype.root());
    json["typeId"] = toJson(prototype.typeId());
    json["name"] = toJson(prototype.typeName());
    json["icon"] = toJson(prototype.icon());
    json["plugin"] = toJson(manifest.pluginId);
    json["settings"] = Json::array();
    const EditorSchema schema = readEditorSchema(*prototype.metaObject());
    for (const SettingSchema &setting : schema.settings)
        json["settings"].push_back(settingJson(prototype, setting));
    return json;
}

// In UTF-8 whatever the texts hold.
QByteArray written(const Json &json)
{
    return QByteArray::fromStdString(json.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n';
}

QString cell(const QString &text)
{
    return inOneLine(text).replace(QLatin1Char('|'), QLatin1String("\\|"));
}

QString row(const QStringList &cells)
{
    return QLatin1String("| ") + cells.join(QLatin1String(" | ")) + QLatin1String(" |\n");
}

QString code(const QString &text)
{
    return text.isEmpty() ? text : QLatin1Char('`') + cell(text) + QLatin1Char('`');
}

QString headOf(const QStringList &titles)
{
    return row(titles)
        + row(QStringList(titles).replaceInStrings(QRegularExpression(QStringLiteral(".+")),
                                                   QStringLiteral("---")));
}

// A line "name  value" with the values in one column.
QString field(const char *name, const QString &value)
{
    return QStringLiteral("  %1  %2\n").arg(QLatin1String(name), -12).arg(inOneLine(value));
}

QString pluginText(const Plugin &plugin)
{
    const PluginManifest &manifest = plugin.manifest();
    return QStringLiteral("plug-in %1\n").arg(inOneLine(manifest.pluginId)) + field("name", manifest.name)
        + field("version", manifest.version) + field("api version", QString::number(manifest.apiVersion))
        + field("capabilities", manifest.requiredCapabilities.join(QLatin1String(", ")))
        + field("file", plugin.fileName()) + QLatin1Char('\n');
}

QString settingText(const Operation &prototype, const SettingSchema &setting)
{
    QStringList parts{inOneLine(setting.label), typeName(setting), editorText(setting)};
    if (setting.showWhen)
        parts.append(QStringLiteral("shown when ") + ruleText(setting));
    parts.append(QStringLiteral("default ") + QString::fromUtf8(defaultAsJson(prototype, setting)));
    return QStringLiteral("    %1  %2\n").arg(setting.property, -10).arg(parts.join(QLatin1String("; ")));
}
} // namespace

QByteArray paletteToText(const StepCatalogue &catalogue)
{
    QString text;
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins())
        text += pluginText(*plugin);
    QString category;
    const QVector<PaletteEntry> steps = orderedSteps(catalogue);
    for (int i = 0; i < steps.size(); ++i) {
        const PaletteEntry &entry = steps.at(i);
        if (i == 0 || entry.category != category)
            text += inOneLine(entry.category) + QLatin1Char('\n');
        category = entry.category;
        text += QStringLiteral("  %1  %2  %3\n")
                    .arg(inOneLine(entry.prototype->typeId()), inOneLine(entry.prototype->typeName()),
                         inOneLine(entry.prototype->icon()));
        const EditorSchema schema = readEditorSchema(*entry.prototype->metaObject());
        for (const SettingSchema &setting : schema.settings)
            text += settingText(*entry.prototype, setting);
    }
    return text.toUtf8();
}

QByteArray paletteToJson(const StepCatalogue &catalogue)
{
    Json json;
    json["plugins"] = Json::array();
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins()) {
        const PluginManifest &manifest = plugin->manifest();
        json["plugins"].push_back({{"id", toJson(manifest.pluginId)},
                                   {"name", toJson(manifest.name)},
                                   {"version", toJson(manifest.version)},
                                   {"apiVersion", manifest.apiVersion},
                                   {"capabilities", toJson(manifest.requiredCapabilities)},
                                   {"file", toJson(plugin->fileName())}});
    }
    json["steps"] = Json::array();
    const QVector<PaletteEntry> steps = orderedSteps(catalogue);
    for (const PaletteEntry &entry : steps) {
        const Plugin &plugin = *catalogue.plugins().at(std::size_t(entry.source));
        json["steps"].push_back(stepJson(*entry.prototype, plugin.manifest()));
    }
    return written(json);
}

QByteArray paletteToMarkdown(const StepCatalogue &catalogue)
{
    QString text = QStringLiteral("# Plug-ins\n\n")
        + headOf({QStringLiteral("id"), QStringLiteral("name"), QStringLiteral("version"),
                  QStringLiteral("api version"), QStringLiteral("capabilities"), QStringLiteral("file")});
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins()) {
        const PluginManifest &manifest = plugin->manifest();
        text +=
            row({code(manifest.pluginId), cell(manifest.name), cell(manifest.version),
                 QString::number(manifest.apiVersion),
                 cell(manifest.requiredCapabilities.join(QLatin1String(", "))), code(plugin->fileName())});
    }
    QString category;
    const QVector<PaletteEntry> steps = orderedSteps(catalogue);
    for (int i = 0; i < steps.size(); ++i) {
        const PaletteEntry &entry = steps.at(i);
        if (i == 0 || entry.category != category)
            text += QStringLiteral("\n# %1\n").arg(inOneLine(entry.category));
        category = entry.category;
        text += QStringLiteral("\n## %1 (%2)\n\nIcon: %3\n\n")
                    .arg(inOneLine(entry.prototype->typeName()), code(entry.prototype->typeId()),
                         code(entry.prototype->icon()))
            + headOf({QStringLiteral("setting"), QStringLiteral("label"), QStringLiteral("type"),
                      QStringLiteral("editor"), QStringLiteral("shown when"), QStringLiteral("default")});
        const EditorSchema schema = readEditorSchema(*entry.prototype->metaObject());
        for (const SettingSchema &setting : schema.settings)
            text += row({code(setting.property), cell(setting.label), code(typeName(setting)),
                         cell(editorText(setting)), cell(ruleText(setting)),
                         code(QString::fromUtf8(defaultAsJson(*entry.prototype, setting)))});
    }
    return text.toUtf8();
}

QByteArray stepToText(const StepCatalogue &catalogue, const QString &typeId)
{
    const Operation &prototype = *catalogue.prototype(typeId);
    const Plugin &plugin = *catalogue.pluginOf(typeId);
    QString text = QStringLiteral("step %1\n").arg(inOneLine(prototype.typeId()))
        + field("name", prototype.typeName()) + field("category", prototype.root())
        + field("icon", prototype.icon())
        + field("class", QString::fromUtf8(prototype.metaObject()->className()))
        + field("plug-in", plugin.manifest().pluginId) + field("file", plugin.fileName())
        + field("summary", prototype.toString()) + field("description", prototype.description());
    const EditorSchema schema = readEditorSchema(*prototype.metaObject());
    for (const SettingSchema &setting : schema.settings) {
        text += QStringLiteral("\nsetting %1\n").arg(setting.property) + field("label", setting.label)
            + field("type", typeName(setting)) + field("editor", editorText(setting))
            + field("shown",
                    setting.showWhen ? QStringLiteral("when ") + ruleText(setting) : QStringLiteral("always"))
            + field("default", QString::fromUtf8(defaultAsJson(prototype, setting)));
    }
    for (const SchemaProblem &problem : schema.problems)
        text += QStringLiteral("\nproblem: %1\n").arg(problem.text);
    return text.toUtf8();
}

QByteArray stepToJson(const StepCatalogue &catalogue, const QString &typeId)
{
    const Operation &prototype = *catalogue.prototype(typeId);
    const Plugin &plugin = *catalogue.pluginOf(typeId);
    Json json = stepJson(prototype, plugin.manifest());
    json["class"] = prototype.metaObject()->className();
    json["file"] = toJson(plugin.fileName());
    json["summary"] = toJson(prototype.toString());
    json["description"] = toJson(prototype.description());
    json["problems"] = Json::array();
    const EditorSchema schema = readEditorSchema(*prototype.metaObject());
    for (const SchemaProblem &problem : schema.problems)
        json["problems"].push_back(toJson(problem.text));
    return written(json);
}
} // namespace StepHost
