/// The class info of a hostile plug-in through the reader of editor schemas.
///
/// The input is a list of properties, one on a line with a letter for its type in front ("i", "b" or "s"), a
/// line "]", and the entries, a key and a value on a line each.

#include "FuzzInput.h"
#include "host/plugins/EditorSchema.h"

namespace
{
int propertyType(const QByteArray &line)
{
    return line.startsWith('i') ? QMetaType::Int
        : line.startsWith('b')  ? QMetaType::Bool
                                : QMetaType::QString;
}

bool hasCircle(const StepHost::EditorSchema &schema, const StepHost::SettingSchema &setting)
{
    const StepHost::SettingSchema *at = &setting;
    for (int walked = 0; at && at->showWhen; ++walked) {
        if (walked > schema.settings.size())
            return true;
        at = schema.find(at->showWhen->property);
    }
    return false;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    QVector<StepHost::PropertyDeclaration> properties;
    for (QByteArray line = input.line(); !line.startsWith(']') && !line.isEmpty(); line = input.line())
        properties.append({QString::fromUtf8(line.mid(1)), propertyType(line)});
    QVector<StepHost::ClassInfoDeclaration> entries;
    while (!input.atEnd()) {
        const QString key = input.text();
        entries.append({key, input.text()});
    }

    const StepHost::EditorSchema schema = StepHost::readEditorSchema(properties, entries);
    require(schema.settings.size() == properties.size(), "a property has no setting");
    QObject step;
    for (int i = 0; i < properties.size(); ++i) {
        const StepHost::SettingSchema &setting = schema.settings[i];
        require(setting.property == properties[i].name, "a setting has another name than its property");
        require(!setting.showWhen || schema.find(setting.showWhen->property),
                "a setting is shown for a property that is not there");
        require(!hasCircle(schema, setting), "a setting is shown when it is shown");
        isVisible(setting, step);
    }
    for (const StepHost::SchemaProblem &problem : schema.problems) {
        require(!problem.text.isEmpty() && !problem.text.contains('\n'), "a problem is not told in one line");
        require(problem.text.size() < 1000, "a problem is told at too great length");
    }
    return 0;
}
