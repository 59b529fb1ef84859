#pragma once

#include "host/scripts/StepProblems.h"

#include <QScrollArea>
#include <QVector>

#include <optional>

class Operation;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Workbench
{
class PropertyEditor;

/// The settings of one step, made from its properties and class info alone.
class PropertyPane : public QScrollArea
{
    Q_OBJECT

public:
    explicit PropertyPane(QWidget *parent = nullptr);

    /// Shows the settings of \a step; null shows none. The step has to live until another one is shown.
    void setStep(const Operation *step);

    /// Shows the present settings of the step, in the editors that are there.
    void refresh();

    /// The variables that the editors offer.
    void setVariables(const VariableScope &variables);

    /// The editor of the setting \a property; null when the step has none.
    PropertyEditor *editor(const QString &property) const;

    /// Has the keys go to the editor of the setting \a property. Does nothing when the step has none.
    void focusSetting(const QString &property);

    /// What the user is told about the setting \a property; empty when there is nothing to say.
    QString hint(const QString &property) const;

signals:
    /// The user gave the setting \a property the value \a value.
    void settingEdited(const QString &property, const QVariant &value);
    /// The user wants a variable \a name of the type \a type, which a setting is about.
    void variableWanted(const QString &name, VarType type);

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    struct Row
    {
        StepHost::SettingSchema setting;
        QWidget *widget;
        PropertyEditor *editor;
        QLabel *hint;
        QPushButton *create; ///< Creates the variable that the setting names and that there is not.
    };

    QString hintFor(const Row &row) const;
    std::optional<StepHost::StepProblem> problemOf(const Row &row) const;
    void build();
    void addRow(const StepHost::SettingSchema &setting, QVBoxLayout *layout);
    void addHeader(QVBoxLayout *layout);
    void addCreateButton(Row &row, QVBoxLayout *layout);
    void updateRows();

    const Operation *m_step = nullptr;
    VariableScope m_variables;
    QVector<Row> m_rows;
    QLabel *m_description = nullptr;
};
} // namespace Workbench
