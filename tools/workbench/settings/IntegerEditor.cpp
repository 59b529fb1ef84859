#include "IntegerEditor.h"

#include <QLineEdit>

namespace Workbench
{
IntegerEditor::IntegerEditor(int type, QWidget *parent) : TextEditor(type, parent)
{
    lineEdit()->setPlaceholderText(tr("An integer"));
}
} // namespace Workbench
