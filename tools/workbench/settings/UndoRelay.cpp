#include "UndoRelay.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace Workbench
{
UndoRelay::UndoRelay(QObject *parent) : QObject(parent) { }

void UndoRelay::install(QLineEdit *edit)
{
    edit->installEventFilter(new UndoRelay(edit));
}

bool UndoRelay::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto *keyEvent = static_cast<QKeyEvent *>(event);
        if (keyEvent->matches(QKeySequence::Undo) || keyEvent->matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
} // namespace Workbench
