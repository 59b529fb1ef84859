#include "host/checks/CheckContext.h"
#include "host/checks/TextFlaws.h"
#include "host/plugins/EditorSchema.h"
#include "host/plugins/StepSettings.h"
#include "host/values/QuotedText.h"

#include <QHash>
#include <QSet>

namespace StepHost
{
namespace
{
// One check for each kind of fault.
template<SchemaFault fault>
void checkSchema(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        QStringList texts;
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        for (const SchemaProblem &problem : schema.problems) {
            if (problem.fault == fault)
                texts.append(problem.text);
        }
        if (!texts.isEmpty())
            fail(texts.join(QLatin1String(", ")));
    });
}
// Calls `check` with every setting of every step.
void forEachSetting(
    CheckContext &context,
    const std::function<void(const Operation &, const QMetaProperty &, const SettingSchema &)> &check)
{
    context.forEachStep([&check](const Operation &step) {
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        const QVector<QMetaProperty> settings = settingsOf(step);
        for (int i = 0; i < settings.size(); ++i)
            check(step, settings.at(i), schema.settings.at(i));
    });
}

void checkLabelTexts(CheckContext &context)
{
    forEachSetting(context, [](const Operation &, const QMetaProperty &, const SettingSchema &setting) {
        const QString what = QStringLiteral("the label %1 of the setting %2")
                                 .arg(quoted(setting.label), quoted(setting.property));
        if (setting.label.trimmed().isEmpty() && !setting.label.isEmpty())
            fail(what + QStringLiteral(" is blank"));
        const QString flaw = flawOf(setting.label);
        if (!flaw.isEmpty())
            fail(QStringLiteral("%1 %2").arg(what, flaw));
    });
}

void checkUniqueLabels(CheckContext &context)
{
    context.forEachStep([](const Operation &step) {
        QHash<QString, QString> known;
        const EditorSchema schema = readEditorSchema(*step.metaObject());
        for (const SettingSchema &setting : schema.settings) {
            // Of settings that depend on others, only one may be shown at a time.
            if (setting.label.isEmpty() || setting.showWhen)
                continue;
            if (known.contains(setting.label))
                fail(QStringLiteral("the settings %1 and %2 have the same label, %3")
                         .arg(quoted(known.value(setting.label)), quoted(setting.property),
                              quoted(setting.label)));
            known.insert(setting.label, setting.property);
        }
    });
}

void checkChoiceTexts(CheckContext &context)
{
    forEachSetting(context, [](const Operation &, const QMetaProperty &, const SettingSchema &setting) {
        QSet<QString> known;
        for (const QString &choice : setting.choices) {
            const QString what = QStringLiteral("the choice %1 of the setting %2")
                                     .arg(quoted(choice), quoted(setting.property));
            if (choice.trimmed().isEmpty() && !choice.isEmpty())
                fail(what + QStringLiteral(" is blank"));
            if (known.contains(choice))
                fail(what + QStringLiteral(" is there twice"));
            const QString flaw = flawOf(choice);
            if (!flaw.isEmpty())
                fail(QStringLiteral("%1 %2").arg(what, flaw));
            known.insert(choice);
        }
    });
}

void checkDefaultChoice(CheckContext &context)
{
    forEachSetting(
        context, [](const Operation &step, const QMetaProperty &property, const SettingSchema &setting) {
            if (setting.editor != EditorKind::Choice || setting.choices.isEmpty()
                || property.userType() != QMetaType::Int)
                return;
            const int index = property.read(&step).toInt();
            if (index < 0 || index >= setting.choices.size())
                fail(QStringLiteral(
                         "the setting %1 is %2 at first, which is none of its %3 choices, counted from 0")
                         .arg(quoted(setting.property), QString::number(index),
                              QString::number(setting.choices.size())));
        });
}

void checkEditorType(CheckContext &context)
{
    forEachSetting(
        context, [](const Operation &, const QMetaProperty &property, const SettingSchema &setting) {
            const int type = property.userType();
            const bool isText =
                type == QMetaType::QString || type == QMetaType::QVariant || type == QMetaType::QStringList;
            const bool isNumber =
                type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::UInt;
            const bool fits =
                setting.editor == EditorKind::VariableName || setting.editor == EditorKind::VariableReference
                ? isText
                : setting.editor == EditorKind::IntegerOrVariable ? isText || isNumber
                                                                  : true;
            if (!fits)
                fail(QStringLiteral(
                         "the setting %1 has the editor %2 and the type %3; what that editor gives is a text")
                         .arg(quoted(setting.property), editorWord(setting.editor),
                              QString::fromUtf8(property.typeName())));
        });
}
} // namespace

QVector<PluginCheck> schemaChecks()
{
    return {
        {"schema.prefixes", "Every class-info key begins with a prefix that the host knows.",
         checkSchema<SchemaFault::UnknownPrefix>},
        {"schema.properties", "Every class-info key names a real property.",
         checkSchema<SchemaFault::UnknownProperty>},
        {"schema.duplicate-keys", "No class-info key is declared twice.",
         checkSchema<SchemaFault::DuplicateKey>},
        {"schema.labels", "Every setting has a label.", checkSchema<SchemaFault::MissingLabel>},
        {"schema.editors", "Every editor is one that the host knows.",
         checkSchema<SchemaFault::UnknownEditor>},
        {"schema.kinds", "Variable kinds and value types are ones that the host knows.",
         checkSchema<SchemaFault::UnknownKind>},
        {"schema.unused-keys", "No class-info key is for another editor than the setting has.",
         checkSchema<SchemaFault::UnusedKey>},
        {"schema.choices", "Every choice editor has choices, and none of them is empty.",
         checkSchema<SchemaFault::MissingChoices>},
        {"schema.choice-type", "Every choice editor stands on an int, which holds the choice's index.",
         checkSchema<SchemaFault::ChoiceNotInteger>},
        {"schema.rule-form", "Every visibility rule is a property name, \"=\" and an integer.",
         checkSchema<SchemaFault::UnreadableRule>},
        {"schema.rule-property", "Every visibility rule names a real property.",
         checkSchema<SchemaFault::RuleUnknownProperty>},
        {"schema.rule-value", "Every visibility rule waits for a value that its property can have.",
         checkSchema<SchemaFault::RuleImpossibleValue>},
        {"schema.rule-cycle", "Visibility rules do not depend on each other in a circle.",
         checkSchema<SchemaFault::RuleCycle>},
        {"schema.label-texts", "Labels are valid text of one line.", checkLabelTexts},
        {"schema.label-unique", "No two settings that are always shown have the same label.",
         checkUniqueLabels},
        {"schema.choice-texts", "Choices are valid texts, and no two are the same.", checkChoiceTexts},
        {"schema.default-choice", "A new step's choice is one of the choices.", checkDefaultChoice},
        {"schema.editor-type", "An editor's values are of its property's type.", checkEditorType},
    };
}
} // namespace StepHost
