#pragma once

#include "TextEditor.h"

#include <QVector>

namespace Workbench
{
class ReferenceCompleter;

/// Edits a value that is written literally or as a "$" reference to a variable or to a member of one.
class ReferenceEditor : public TextEditor
{
    Q_OBJECT

public:
    /// \param types the types of variables to offer; empty for all
    explicit ReferenceEditor(const QVector<VarType> &types, QWidget *parent = nullptr);

    void setVariables(const VariableScope &variables) override;

private:
    ReferenceCompleter *m_completer;
    QVector<VarType> m_types;
};
} // namespace Workbench
