#include "PropertyEditor.h"

#include "BoolEditor.h"
#include "ChoiceEditor.h"
#include "IntegerEditor.h"
#include "ReferenceEditor.h"
#include "TextEditor.h"
#include "VariableNameEditor.h"
#include "host/plugins/EditorSchema.h"
#include "host/values/QuotedText.h"

namespace Workbench
{
PropertyEditor::PropertyEditor(QWidget *parent) : QWidget(parent) { }

void PropertyEditor::setVariables(const VariableScope &) { }

QString PropertyEditor::hint() const
{
    return QString();
}

QString PropertyEditor::hintOfUnseen(const QString &text)
{
    return StepHost::inOneLine(text) == text
        ? QString()
        : tr("Some characters are not seen in the field: %1").arg(StepHost::quoted(text));
}

namespace
{
PropertyEditor *newEditor(const StepHost::SettingSchema &setting, QWidget *parent)
{
    switch (setting.editor) {
    case StepHost::EditorKind::VariableName:
        return new VariableNameEditor(setting.variableKind, parent);
    case StepHost::EditorKind::VariableReference:
        return new ReferenceEditor(setting.valueTypes, parent);
    case StepHost::EditorKind::IntegerOrVariable:
        return new IntegerEditor(setting.type, parent);
    case StepHost::EditorKind::Choice:
        return new ChoiceEditor(setting.choices, parent);
    case StepHost::EditorKind::Default:
        break;
    }
    if (setting.type == QMetaType::Bool)
        return new BoolEditor(parent);
    return new TextEditor(setting.type, parent);
}
} // namespace

PropertyEditor *createPropertyEditor(const StepHost::SettingSchema &setting, const QVariant &value,
                                     QWidget *parent)
{
    PropertyEditor *editor = newEditor(setting, parent);
    editor->setObjectName(setting.property);
    editor->setValue(value);
    return editor;
}
} // namespace Workbench
