#include "CheckContext.h"
#include "host/plugins/EditorSchema.h"

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
    };
}
} // namespace StepHost
