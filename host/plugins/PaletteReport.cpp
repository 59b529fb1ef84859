#include "PaletteReport.h"

#include "EditorSchema.h"
#include "Palette.h"
#include "StepTexts.h"
#include "host/values/JsonValue.h"
#include "host/values/JsonWriter.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"

#include <QRegularExpression>

namespace StepHost
{
namespace
{
QVector<PaletteEntry> orderedSteps(const StepCatalogue &catalogue)
{
    QVector<PaletteSource> sources;
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins())
        sources.append({plugin->manifest(), plugin->prototypes()});
    return paletteOrder(sources);
}

// The value that a new step has; an invalid one when it cannot be written.
QVariant defaultOf(const Operation &prototype, const SettingSchema &setting)
{
    const QVariant value = prototype.property(setting.property.toUtf8().constData());
    return valueToJson(value) ? value : QVariant();
}

QString defaultText(const Operation &prototype, const SettingSchema &setting)
{
    return QString::fromUtf8(valueToJson(defaultOf(prototype, setting)).value_or(QByteArray()));
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
            parts.append(QStringLiteral("%1 = %2").arg(i).arg(setting.choices.at(i)));
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
        ? setting.showWhen->property + QStringLiteral(" = ") + QString::number(setting.showWhen->value)
        : QString();
}

void writeTexts(JsonWriter &json, const QStringList &texts)
{
    json.openArray();
    for (const QString &text : texts)
        json.text(text);
    json.close();
}

void writeSetting(JsonWriter &json, const Operation &prototype, const SettingSchema &setting)
{
    json.openObject();
    json.key("property").text(setting.property);
    json.key("type").text(typeName(setting));
    json.key("label").text(setting.label);
    json.key("editor");
    if (setting.editor == EditorKind::Default)
        json.raw("null");
    else
        json.text(editorWord(setting.editor));
    if (setting.variableKind != VariableKind::Any)
        json.key("variableKind").text(variableKindWord(setting.variableKind));
    if (setting.literalType != VarType::Undeclared)
        json.key("literalType").text(varTypeName(setting.literalType));
    if (!setting.valueTypes.isEmpty())
        writeTexts(json.key("valueTypes"), valueTypeWords(setting));
    if (!setting.choices.isEmpty())
        writeTexts(json.key("choices"), setting.choices);
    if (setting.showWhen) {
        json.key("showWhen").openObject();
        json.key("property").text(setting.showWhen->property);
        json.key("value").number(setting.showWhen->value);
        json.close();
    }
    writeValue(json.key("default"), defaultOf(prototype, setting));
    json.close();
}

// The members of a step, in an object that is open.
void writeStep(JsonWriter &json, const Operation &prototype, const EditorSchema &schema,
               const PluginManifest &manifest)
{
    json.key("category").text(takenText(prototype.root()));
    json.key("typeId").text(prototype.typeId());
    json.key("name").text(takenText(prototype.typeName()));
    json.key("icon").text(takenText(prototype.icon()));
    json.key("plugin").text(manifest.pluginId);
    json.key("settings").openArray();
    for (const SettingSchema &setting : schema.settings)
        writeSetting(json, prototype, setting);
    json.close();
}

QString row(const QStringList &cells)
{
    return QLatin1String("| ") + cells.join(QLatin1String(" | ")) + QLatin1String(" |\n");
}

// In a table the mark of a cell's end is read before the code is.
QString codeCell(const QString &text)
{
    return markdownCode(text).replace(QLatin1Char('|'), QLatin1String("\\|"));
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
    QStringList parts{setting.label, typeName(setting), editorText(setting)};
    if (setting.showWhen)
        parts.append(QStringLiteral("shown when ") + ruleText(setting));
    parts.append(QStringLiteral("default ") + defaultText(prototype, setting));
    return QLatin1String("    ") + inOneLine(setting.property).leftJustified(10) + QLatin1String("  ")
        + inOneLine(parts.join(QLatin1String("; "))) + QLatin1Char('\n');
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
        text +=
            QStringLiteral("  %1  %2  %3\n")
                .arg(inOneLine(entry.prototype->typeId()), inOneLine(takenText(entry.prototype->typeName())),
                     inOneLine(takenText(entry.prototype->icon())));
        const EditorSchema schema = readEditorSchema(*entry.prototype->metaObject());
        for (const SettingSchema &setting : schema.settings)
            text += settingText(*entry.prototype, setting);
    }
    return text.toUtf8();
}

QByteArray paletteToJson(const StepCatalogue &catalogue)
{
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject().key("plugins").openArray();
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins()) {
        const PluginManifest &manifest = plugin->manifest();
        json.openObject();
        json.key("id").text(manifest.pluginId);
        json.key("name").text(manifest.name);
        json.key("version").text(manifest.version);
        json.key("apiVersion").number(manifest.apiVersion);
        writeTexts(json.key("capabilities"), manifest.requiredCapabilities);
        json.key("file").text(plugin->fileName());
        json.close();
    }
    json.close().key("steps").openArray();
    const QVector<PaletteEntry> steps = orderedSteps(catalogue);
    for (const PaletteEntry &entry : steps) {
        const Plugin &plugin = *catalogue.plugins().at(std::size_t(entry.source));
        json.openObject();
        writeStep(json, *entry.prototype, readEditorSchema(*entry.prototype->metaObject()),
                  plugin.manifest());
        json.close();
    }
    json.close().close();
    return bytes + '\n';
}

QByteArray paletteToMarkdown(const StepCatalogue &catalogue)
{
    QString text = QStringLiteral("# Plug-ins\n\n")
        + headOf({QStringLiteral("id"), QStringLiteral("name"), QStringLiteral("version"),
                  QStringLiteral("api version"), QStringLiteral("capabilities"), QStringLiteral("file")});
    for (const std::unique_ptr<Plugin> &plugin : catalogue.plugins()) {
        const PluginManifest &manifest = plugin->manifest();
        text += row({codeCell(manifest.pluginId), inMarkdown(manifest.name), inMarkdown(manifest.version),
                     QString::number(manifest.apiVersion),
                     inMarkdown(manifest.requiredCapabilities.join(QLatin1String(", "))),
                     codeCell(plugin->fileName())});
    }
    QString category;
    const QVector<PaletteEntry> steps = orderedSteps(catalogue);
    for (int i = 0; i < steps.size(); ++i) {
        const PaletteEntry &entry = steps.at(i);
        if (i == 0 || entry.category != category)
            text += QStringLiteral("\n# %1\n").arg(inMarkdown(entry.category));
        category = entry.category;
        text += QStringLiteral("\n## %1 (%2)\n\nIcon: %3\n\n")
                    .arg(inMarkdown(takenText(entry.prototype->typeName())),
                         markdownCode(entry.prototype->typeId()),
                         markdownCode(takenText(entry.prototype->icon())))
            + headOf({QStringLiteral("setting"), QStringLiteral("label"), QStringLiteral("type"),
                      QStringLiteral("editor"), QStringLiteral("shown when"), QStringLiteral("default")});
        const EditorSchema schema = readEditorSchema(*entry.prototype->metaObject());
        for (const SettingSchema &setting : schema.settings)
            text += row({codeCell(setting.property), inMarkdown(setting.label), codeCell(typeName(setting)),
                         inMarkdown(editorText(setting)), inMarkdown(ruleText(setting)),
                         codeCell(defaultText(*entry.prototype, setting))});
    }
    return text.toUtf8();
}

QByteArray stepToText(const StepCatalogue &catalogue, const QString &typeId)
{
    const Operation &prototype = *catalogue.prototype(typeId);
    const Plugin &plugin = *catalogue.pluginOf(typeId);
    QString text = QStringLiteral("step %1\n").arg(inOneLine(prototype.typeId()))
        + field("name", takenText(takenText(prototype.typeName())))
        + field("category", takenText(takenText(prototype.root())))
        + field("icon", takenText(takenText(prototype.icon())))
        + field("class", QString::fromUtf8(prototype.metaObject()->className()))
        + field("plug-in", plugin.manifest().pluginId) + field("file", plugin.fileName())
        + field("summary", takenText(takenText(prototype.toString())))
        + field("description", takenText(takenText(prototype.description())));
    const EditorSchema schema = readEditorSchema(*prototype.metaObject());
    for (const SettingSchema &setting : schema.settings) {
        text += QStringLiteral("\nsetting %1\n").arg(inOneLine(setting.property))
            + field("label", setting.label) + field("type", typeName(setting))
            + field("editor", editorText(setting))
            + field("shown",
                    setting.showWhen ? QStringLiteral("when ") + ruleText(setting) : QStringLiteral("always"))
            + field("default", defaultText(prototype, setting));
    }
    for (const SchemaProblem &problem : schema.problems)
        text += QStringLiteral("\nproblem: %1\n").arg(inOneLine(problem.text));
    return text.toUtf8();
}

QByteArray stepToJson(const StepCatalogue &catalogue, const QString &typeId)
{
    const Operation &prototype = *catalogue.prototype(typeId);
    const Plugin &plugin = *catalogue.pluginOf(typeId);
    const EditorSchema schema = readEditorSchema(*prototype.metaObject());
    QByteArray bytes;
    JsonWriter json(bytes);
    json.openObject();
    writeStep(json, prototype, schema, plugin.manifest());
    json.key("class").text(QString::fromUtf8(prototype.metaObject()->className()));
    json.key("file").text(plugin.fileName());
    json.key("summary").text(takenText(prototype.toString()));
    json.key("description").text(takenText(prototype.description()));
    json.key("problems").openArray();
    for (const SchemaProblem &problem : schema.problems)
        json.text(problem.text);
    json.close().close();
    return bytes + '\n';
}
} // namespace StepHost
