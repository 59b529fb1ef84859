#pragma once

#include "TextEditor.h"

namespace Workbench
{
/// Edits an integer that may also be a reference to a variable. Any other text is pointed out and let
/// through: what it means is up to the step.
class IntegerEditor : public TextEditor
{
    Q_OBJECT

public:
    explicit IntegerEditor(int type, QWidget *parent = nullptr);
};
} // namespace Workbench
