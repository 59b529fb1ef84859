#include "PropertyPane.h"

#include "PropertyEditor.h"
#include "host/plugins/StepTexts.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ColoredLabel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"
#include "tools/workbench/look/TypeNames.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
constexpr int headerIconSize = 32;

QLabel *newTextLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}
} // namespace

PropertyPane::PropertyPane(QWidget *parent) : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    // Its editors have the keyboard; the pane itself would be a stop that nobody sees.
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    build();
}

void PropertyPane::setStep(const Operation *step)
{
    if (step == m_step)
        return;
    m_step = step;
    build();
}

void PropertyPane::build()
{
    m_rows.clear();
    m_description = nullptr;
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    if (m_step) {
        addHeader(layout);
        const StepHost::EditorSchema schema = StepHost::readEditorSchema(*m_step->metaObject());
        for (const StepHost::SettingSchema &setting : schema.settings)
            addRow(setting, layout);
    } else {
        QLabel *label = newTextLabel(tr("Select a step to see its settings."));
        label->setAlignment(Qt::AlignCenter);
        label->setEnabled(false);
        layout->addWidget(label);
    }
    layout->addStretch();
    setWidget(content);
    // New widgets stand at the end of the window's tab order; these belong behind the pane.
    QWidget *previous = this;
    for (const Row &row : qAsConst(m_rows)) {
        setTabOrder(previous, row.editor);
        setTabOrder(row.editor, row.create);
        previous = row.create;
    }
    updateRows();
}

void PropertyPane::addHeader(QVBoxLayout *layout)
{
    auto *icon = new QLabel;
    icon->setPixmap(
        stepIcon(StepHost::stepText(*m_step, &Operation::icon)).pixmap(headerIconSize, headerIconSize));
    QLabel *name = newTextLabel(StepHost::shownStepText(*m_step, &Operation::typeName));
    QFont font = name->font();
    font.setBold(true);
    name->setFont(font);
    auto *line = new QHBoxLayout;
    line->addWidget(icon);
    line->addWidget(name, 1);
    layout->addLayout(line);

    m_description = newTextLabel(QString());
    m_description->setObjectName(QStringLiteral("description"));
    m_description->setMinimumWidth(1);
    layout->addWidget(m_description);
    layout->addSpacing(8);
}

void PropertyPane::addRow(const StepHost::SettingSchema &setting, QVBoxLayout *layout)
{
    Row row;
    row.setting = setting;
    row.widget = new QWidget;
    row.editor =
        createPropertyEditor(setting, m_step->property(setting.property.toUtf8().constData()), row.widget);
    row.editor->setVariables(m_variables);
    row.hint = new ColoredLabel(Colors::subdued);
    row.hint->setObjectName(QStringLiteral("hint"));
    row.hint->setMinimumWidth(1);
    const QString labelText = menuText(setting.label.isEmpty() ? setting.property : setting.label);
    auto *label = newTextLabel(labelText);
    label->setToolTip(toolTipText(setting.property));
    label->setBuddy(row.editor);
    row.editor->focusProxy()->setAccessibleName(labelText);

    auto *rowLayout = new QVBoxLayout(row.widget);
    rowLayout->setContentsMargins(0, 0, 0, 6);
    rowLayout->setSpacing(3);
    rowLayout->addWidget(label);
    rowLayout->addWidget(row.editor);
    rowLayout->addWidget(row.hint);
    addCreateButton(row, rowLayout);
    layout->addWidget(row.widget);

    connect(row.editor, &PropertyEditor::edited, this, [this, editor = row.editor, name = setting.property] {
        const QVariant value = editor->value();
        if (value.isValid())
            emit settingEdited(name, value);
        updateRows();
    });
    m_rows.append(row);
}

void PropertyPane::refresh()
{
    for (const Row &row : qAsConst(m_rows))
        row.editor->setValue(m_step->property(row.setting.property.toUtf8().constData()));
    updateRows();
}

void PropertyPane::setVariables(const VariableScope &variables)
{
    m_variables = variables;
    for (const Row &row : qAsConst(m_rows))
        row.editor->setVariables(variables);
    updateRows();
}

void PropertyPane::addCreateButton(Row &row, QVBoxLayout *layout)
{
    row.create = new QPushButton;
    row.create->setObjectName(QStringLiteral("createVariable"));
    layout->addWidget(row.create, 0, Qt::AlignLeft);
    connect(row.create, &QPushButton::clicked, this, [this, setting = row.setting.property] {
        for (const Row &each : qAsConst(m_rows)) {
            const std::optional<StepHost::StepProblem> problem = problemOf(each);
            if (each.setting.property == setting && problem)
                emit variableWanted(problem->missing, problem->missingType);
        }
    });
}

std::optional<StepHost::StepProblem> PropertyPane::problemOf(const Row &row) const
{
    const QVariant value = row.editor->value();
    return value.isValid() ? StepHost::StepProblems::ofSetting(row.setting, value, m_variables)
                           : std::nullopt;
}

QString PropertyPane::hintFor(const Row &row) const
{
    const std::optional<StepHost::StepProblem> problem = problemOf(row);
    return problem ? problem->text : row.editor->hint();
}

void PropertyPane::updateRows()
{
    if (m_description)
        m_description->setText(shortened(StepHost::shownStepText(*m_step, &Operation::description)));
    for (const Row &row : qAsConst(m_rows)) {
        row.widget->setVisible(StepHost::isVisible(row.setting, *m_step));
        const QString hint = StepHost::inLines(shortened(hintFor(row)));
        row.hint->setText(hint);
        row.hint->setVisible(!hint.isEmpty());
        const std::optional<StepHost::StepProblem> problem = problemOf(row);
        const bool isMissing = problem && !problem->missing.isEmpty();
        if (isMissing)
            row.create->setText(menuText(TypeNames::creationOf(problem->missingType, problem->missing)));
        row.create->setVisible(isMissing);
        row.editor->focusProxy()->setAccessibleDescription(hint);
    }
}

void PropertyPane::focusInEvent(QFocusEvent *event)
{
    QScrollArea::focusInEvent(event);
    if (event->reason() == Qt::ShortcutFocusReason && !m_rows.isEmpty())
        m_rows.first().editor->setFocus(event->reason());
}

void PropertyPane::focusSetting(const QString &property)
{
    PropertyEditor *found = editor(property);
    if (!found)
        return;
    ensureWidgetVisible(found);
    found->setFocus(Qt::OtherFocusReason);
}

QString PropertyPane::hint(const QString &property) const
{
    for (const Row &row : m_rows) {
        if (row.setting.property == property)
            return hintFor(row);
    }
    return QString();
}

PropertyEditor *PropertyPane::editor(const QString &property) const
{
    for (const Row &row : m_rows) {
        if (row.setting.property == property)
            return row.editor;
    }
    return nullptr;
}
} // namespace Workbench
